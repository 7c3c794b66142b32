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
