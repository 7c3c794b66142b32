# Slow programs, kept out of the default run: ctest -L slow runs them.
# lex_slow_tests round-trips the whole American English list and checks the
# dictionary built in share/orth/en_US against it.
if(TARGET dict_en_US)
  add_executable(lex_slow_tests ${CMAKE_CURRENT_SOURCE_DIR}/lex_slow/roundtrip_full_test.cpp)
  target_link_libraries(lex_slow_tests PRIVATE orth_test_support GTest::gtest_main)
  target_compile_definitions(lex_slow_tests PRIVATE
    ORTH_SOURCE_DIR="${PROJECT_SOURCE_DIR}" ORTH_BINARY_DIR="${PROJECT_BINARY_DIR}")
  add_dependencies(lex_slow_tests dict_en_US)
  gtest_discover_tests(lex_slow_tests DISCOVERY_TIMEOUT 60 PROPERTIES LABELS slow TIMEOUT 600)
endif()

# check_slow_tests compares the fast paths with the defined walks over the
# whole dictionary built in share/orth/en_US, and checks every word of both
# source lists against the built dictionaries.
if(TARGET dict_en_US AND TARGET dict_en_GB)
  add_executable(check_slow_tests ${CMAKE_CURRENT_SOURCE_DIR}/check_slow/equivalence_test.cpp)
  target_link_libraries(check_slow_tests PRIVATE orth_test_support GTest::gtest_main)
  target_compile_definitions(check_slow_tests PRIVATE
    ORTH_SOURCE_DIR="${PROJECT_SOURCE_DIR}" ORTH_BINARY_DIR="${PROJECT_BINARY_DIR}")
  add_dependencies(check_slow_tests dict_en_US dict_en_GB)
  gtest_discover_tests(check_slow_tests DISCOVERY_TIMEOUT 60 PROPERTIES LABELS slow TIMEOUT 900)
endif()
