# tests/include/headers.cmake — the public headers compiled strictly as C and
# C++ and called through, as a host program would (tests/include/headers.c).
add_executable(include_headers ${CMAKE_CURRENT_LIST_DIR}/headers.c ${CMAKE_CURRENT_LIST_DIR}/headers.cpp)
target_link_libraries(include_headers PRIVATE orth)
set_target_properties(include_headers PROPERTIES C_STANDARD 99 C_EXTENSIONS OFF LINKER_LANGUAGE CXX)
if(NOT MSVC)
  target_compile_options(include_headers PRIVATE -Werror -pedantic)
endif()
add_test(NAME include_headers COMMAND include_headers)
set_tests_properties(include_headers PROPERTIES LABELS include)
