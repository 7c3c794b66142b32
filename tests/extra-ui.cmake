# tests/extra-ui.cmake — the dialogs beyond their unit tests: the resource
# script the generator writes.
if(TARGET ui_tests)
  add_dependencies(ui_tests orth_rcgen)
  target_compile_definitions(ui_tests PRIVATE ORTH_RCGEN="$<TARGET_FILE:orth_rcgen>")
endif()
