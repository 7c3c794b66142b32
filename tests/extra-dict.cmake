# tests/extra-dict.cmake — tests of the dictionary library as a shared
# library, of the orth command and of the installed tree.

# The exported symbols, and a C host that loads the library with dlopen.
if(UNIX AND NOT APPLE)
  add_test(NAME dict_exports
    COMMAND sh ${CMAKE_CURRENT_SOURCE_DIR}/dict/exports.sh $<TARGET_FILE:tmspl32>)
  add_executable(dict_dlopen_host dict/dlopen_host.c)
  target_link_libraries(dict_dlopen_host PRIVATE ${CMAKE_DL_LIBS})
  add_dependencies(dict_dlopen_host tmspl32)
  set(ORTH_DLOPEN_WORK ${CMAKE_CURRENT_BINARY_DIR}/dlopen_host_work)
  file(MAKE_DIRECTORY ${ORTH_DLOPEN_WORK})
  add_test(NAME dict_dlopen_host
    COMMAND dict_dlopen_host $<TARGET_FILE:tmspl32> ${ORTH_DLOPEN_WORK})
  set_tests_properties(dict_exports dict_dlopen_host PROPERTIES LABELS dict)
endif()

# The command's tests run the built program; its text conversion is also
# tested directly.
if(TARGET tools_tests)
  target_sources(tools_tests PRIVATE ${PROJECT_SOURCE_DIR}/tools/cli_text.cpp)
  add_dependencies(tools_tests orth_cli)
endif()
