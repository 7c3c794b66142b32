# cmake/frontends.cmake — the Linux front ends beyond the orth command's
# core: the shared library with only the C interface exported, the Enchant
# provider, the installation (headers, libraries, program, provider,
# dictionaries, pkg-config and CMake package files, man page) and their tests.
include(GNUInstallDirs)

# The front-end rule and dictionary finding (tools/front*.cpp) are part of
# orth_cli through its glob; the tests and the provider compile them too.
set(ORTH_FRONT_SOURCES ${PROJECT_SOURCE_DIR}/tools/front.cpp ${PROJECT_SOURCE_DIR}/tools/front_dicts.cpp)
set(ORTH_DATA_DIR_DEFINE ORTH_DATA_DIR="${CMAKE_INSTALL_FULL_DATADIR}/orth")
target_compile_definitions(orth_cli PRIVATE ${ORTH_DATA_DIR_DEFINE})
if(TARGET tools_tests)
  target_sources(tools_tests PRIVATE ${ORTH_FRONT_SOURCES})
  target_compile_definitions(tools_tests PRIVATE ${ORTH_DATA_DIR_DEFINE})
endif()

# Beside each built-in dictionary folder <tag>, a small <tag>.aff naming the
# characters that join words: editors that look for Hunspell dictionaries
# (Emacs, through orth -D) read it; orth itself does not.
foreach(tag en_US en_GB)
  if(TARGET dict_${tag})
    set(aff ${PROJECT_BINARY_DIR}/share/orth/${tag}.aff)
    file(WRITE ${aff} "# Word characters for editors; the dictionary is the folder ${tag}.\nSET UTF-8\nWORDCHARS '’\n")
    install(FILES ${aff} DESTINATION ${CMAKE_INSTALL_DATADIR}/orth)
  endif()
endforeach()

# Emacs's ispell and flyspell against the built program: with the documented
# configuration, and finding the dictionaries itself through orth -D.
if(ORTH_BUILD_TESTS AND UNIX)
  foreach(mode preset probe)
    add_test(NAME emacs_${mode}
      COMMAND sh ${PROJECT_SOURCE_DIR}/tests/integration/emacs_test.sh $<TARGET_FILE:orth_cli> ${mode})
    set_tests_properties(emacs_${mode} PROPERTIES LABELS integration SKIP_RETURN_CODE 77 TIMEOUT 180)
  endforeach()
endif()
