# tests/extra-ui.cmake — the dialogs beyond their unit tests: the terminal
# front end end to end in tmux (skipped where tmux is missing), and the
# resource script the generator writes.
if(UNIX)
  add_executable(ui_term_demo ${CMAKE_CURRENT_SOURCE_DIR}/ui/term_demo.cpp)
  target_link_libraries(ui_term_demo PRIVATE orth)
  add_test(NAME ui_terminal
    COMMAND sh ${CMAKE_CURRENT_SOURCE_DIR}/ui/term_tmux_test.sh $<TARGET_FILE:ui_term_demo>)
  set_tests_properties(ui_terminal PROPERTIES LABELS ui SKIP_RETURN_CODE 77 TIMEOUT 300)
  add_test(NAME ui_check_terminal
    COMMAND sh ${CMAKE_CURRENT_SOURCE_DIR}/ui/check_tmux_test.sh $<TARGET_FILE:orth_cli>)
  set_tests_properties(ui_check_terminal PROPERTIES LABELS ui SKIP_RETURN_CODE 77 TIMEOUT 300)
endif()
if(TARGET ui_tests)
  add_dependencies(ui_tests orth_rcgen)
  target_compile_definitions(ui_tests PRIVATE ORTH_RCGEN="$<TARGET_FILE:orth_rcgen>")
endif()
# The check command's document model, beside the text conversion it uses.
if(TARGET tools_tests)
  target_sources(tools_tests PRIVATE ${PROJECT_SOURCE_DIR}/tools/checkdoc.cpp)
endif()
