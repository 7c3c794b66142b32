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
    file(WRITE ${aff}
         "# Word characters for editors; the dictionary is the folder ${tag}.\nSET UTF-8\nWORDCHARS '’\n")
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

# The Enchant 2 provider, built when libenchant-2-dev is present. It carries
# the engine statically and exports only init_enchant_provider.
find_package(PkgConfig QUIET)
if(PKG_CONFIG_FOUND AND UNIX AND NOT APPLE)
  pkg_check_modules(ENCHANT IMPORTED_TARGET enchant-2)
endif()
if(ENCHANT_FOUND)
  add_library(enchant_orth MODULE ${PROJECT_SOURCE_DIR}/enchant/provider.cpp ${ORTH_FRONT_SOURCES}
                                  ${PROJECT_SOURCE_DIR}/tools/cli_text.cpp)
  set_target_properties(enchant_orth PROPERTIES PREFIX ""
    LINK_DEPENDS ${PROJECT_SOURCE_DIR}/enchant/provider.map)
  target_compile_definitions(enchant_orth PRIVATE ${ORTH_DATA_DIR_DEFINE})
  target_link_libraries(enchant_orth PRIVATE orth PkgConfig::ENCHANT ${CMAKE_DL_LIBS})
  target_link_options(enchant_orth PRIVATE -Wl,--version-script=${PROJECT_SOURCE_DIR}/enchant/provider.map)
  pkg_get_variable(ENCHANT_LIBDIR enchant-2 libdir)
  # Enchant loads providers from its own folder only: the default is where
  # Debian's enchant looks when the prefix is /usr.
  set(ORTH_ENCHANT_MODULE_DIR ${CMAKE_INSTALL_LIBDIR}/enchant-2 CACHE STRING
      "Where the Enchant provider is installed (Enchant reads $(pkg-config --variable=libdir enchant-2)/enchant-2)")
  install(TARGETS enchant_orth LIBRARY DESTINATION ${ORTH_ENCHANT_MODULE_DIR})
else()
  message(STATUS "enchant-2 not found: the Enchant provider is not built")
endif()

# The provider through enchant-2 and Enchant's C API, loaded from the build
# tree (tests/integration/enchant_test.sh).
if(ENCHANT_FOUND AND ORTH_BUILD_TESTS)
  pkg_check_modules(GMODULE IMPORTED_TARGET gmodule-2.0)
  add_library(orth_enchant_shim MODULE ${PROJECT_SOURCE_DIR}/tests/integration/enchant_shim.c)
  set_target_properties(orth_enchant_shim PROPERTIES PREFIX "" C_VISIBILITY_PRESET default)
  target_link_libraries(orth_enchant_shim PRIVATE PkgConfig::GMODULE ${CMAKE_DL_LIBS})
  add_executable(orth_enchant_host ${PROJECT_SOURCE_DIR}/tests/integration/enchant_host.c)
  target_link_libraries(orth_enchant_host PRIVATE PkgConfig::ENCHANT PkgConfig::GMODULE ${CMAKE_DL_LIBS})
  set(ORTH_SANITIZER_RUNTIME "")
  if(ORTH_SANITIZE)
    # enchant-2 is not instrumented: the runtime must be loaded before the provider.
    execute_process(COMMAND ${CMAKE_C_COMPILER} -print-file-name=libasan.so
                    OUTPUT_VARIABLE ORTH_SANITIZER_RUNTIME OUTPUT_STRIP_TRAILING_WHITESPACE)
  endif()
  add_test(NAME enchant_provider
    COMMAND sh ${PROJECT_SOURCE_DIR}/tests/integration/enchant_test.sh $<TARGET_FILE:enchant_orth>
            $<TARGET_FILE:orth_enchant_shim> $<TARGET_FILE:orth_enchant_host> $<TARGET_FILE:orth_cli>
            "${ORTH_SANITIZER_RUNTIME}")
  set_tests_properties(enchant_provider PROPERTIES LABELS integration SKIP_RETURN_CODE 77 TIMEOUT 120)
endif()

# The shared engine library liborth.so.MAJOR: the objects of the static
# library, exporting only the functions the public headers mark ORTH_API
# (the build's default visibility is hidden, and a version script keeps the
# C++ library's template code local). Both libraries carry a SONAME.
if(UNIX AND NOT APPLE)
  # The version script lists every function the public headers declare with
  # a calling-convention macro; everything else stays local, template code
  # of the C++ library included.
  file(GLOB ORTH_PUBLIC_HEADERS ${PROJECT_SOURCE_DIR}/include/*.h)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${ORTH_PUBLIC_HEADERS})
  set(ORTH_EXPORTS "")
  foreach(header ${ORTH_PUBLIC_HEADERS})
    file(STRINGS ${header} lines REGEX "_CALL \\**[A-Za-z_0-9]+\\(")
    foreach(line ${lines})
      string(REGEX MATCH "_CALL \\**([A-Za-z_0-9]+)\\(" match "${line}")
      list(APPEND ORTH_EXPORTS ${CMAKE_MATCH_1})
    endforeach()
  endforeach()
  list(JOIN ORTH_EXPORTS ";\n    " ORTH_EXPORT_LINES)
  file(WRITE ${PROJECT_BINARY_DIR}/liborth.map
       "/* Generated from include/*.h: the C interface, nothing else. */\n"
       "{\n  global:\n    ${ORTH_EXPORT_LINES};\n  local:\n    *;\n};\n")

  add_library(orth_shared SHARED $<TARGET_OBJECTS:orth>)
  target_link_options(orth_shared PRIVATE -Wl,--version-script=${PROJECT_BINARY_DIR}/liborth.map)
  target_link_libraries(orth_shared PRIVATE ${CMAKE_DL_LIBS})
  set_target_properties(orth_shared PROPERTIES LINK_DEPENDS ${PROJECT_BINARY_DIR}/liborth.map)
  set_target_properties(orth_shared PROPERTIES OUTPUT_NAME orth EXPORT_NAME orth
    VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
  target_include_directories(orth_shared PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>)
  set_target_properties(tmspl32 PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
  set_target_properties(orth PROPERTIES EXPORT_NAME orth_static)

  include(CMakePackageConfigHelpers)
  set(ORTH_CMAKE_INSTALL_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/orth)
  set(ORTH_DICT_INSTALL_DIR ${CMAKE_INSTALL_DATADIR}/orth)
  install(TARGETS orth orth_shared tmspl32 EXPORT orthTargets
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/orth)
  install(EXPORT orthTargets NAMESPACE orth:: DESTINATION ${ORTH_CMAKE_INSTALL_DIR})
  configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/orthConfig.cmake.in
    ${PROJECT_BINARY_DIR}/orthConfig.cmake INSTALL_DESTINATION ${ORTH_CMAKE_INSTALL_DIR}
    PATH_VARS ORTH_DICT_INSTALL_DIR)
  write_basic_package_version_file(${PROJECT_BINARY_DIR}/orthConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
  install(FILES ${PROJECT_BINARY_DIR}/orthConfig.cmake ${PROJECT_BINARY_DIR}/orthConfigVersion.cmake
    DESTINATION ${ORTH_CMAKE_INSTALL_DIR})

  # orth.pc finds its prefix from its own folder, so the installed tree can move.
  file(RELATIVE_PATH ORTH_PC_TO_PREFIX ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
  string(REGEX REPLACE "/$" "" ORTH_PC_TO_PREFIX "${ORTH_PC_TO_PREFIX}")
  configure_file(${PROJECT_SOURCE_DIR}/cmake/orth.pc.in ${PROJECT_BINARY_DIR}/orth.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/orth.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
  install(FILES ${PROJECT_SOURCE_DIR}/man/orth.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
  install(FILES ${PROJECT_SOURCE_DIR}/include/orth_client.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/orth)
endif()

# The installed tree, and programs built against it with pkg-config and CMake.
if(ORTH_BUILD_TESTS AND UNIX AND NOT APPLE)
  set(ORTH_CONSUMER_FLAGS "")
  if(ORTH_SANITIZE)
    set(ORTH_CONSUMER_FLAGS "-fsanitize=address,undefined")
  endif()
  add_test(NAME install_consumers
    COMMAND sh ${PROJECT_SOURCE_DIR}/tests/integration/install_test.sh ${PROJECT_BINARY_DIR}
            ${PROJECT_SOURCE_DIR} "${ORTH_CONSUMER_FLAGS}")
  set_tests_properties(install_consumers PROPERTIES LABELS integration TIMEOUT 300)
endif()

# The front-end rule over the whole built-in dictionary. The suggestion
# check is slow and kept out of the default run (ctest -L slow).
if(ORTH_BUILD_TESTS AND TARGET dict_en_US)
  find_package(GTest REQUIRED)
  include(GoogleTest)
  add_executable(front_dictionary_tests ${PROJECT_SOURCE_DIR}/tests/integration/front_dictionary_test.cpp
                                  ${ORTH_FRONT_SOURCES} ${PROJECT_SOURCE_DIR}/tools/cli_text.cpp)
  target_link_libraries(front_dictionary_tests PRIVATE orth GTest::gtest_main)
  target_compile_definitions(front_dictionary_tests PRIVATE
    ORTH_SOURCE_DIR="${PROJECT_SOURCE_DIR}" ORTH_BINARY_DIR="${PROJECT_BINARY_DIR}" ${ORTH_DATA_DIR_DEFINE})
  add_dependencies(front_dictionary_tests dict_en_US)
  # The all-capitals check takes a second: it runs by default.
  gtest_discover_tests(front_dictionary_tests TEST_FILTER "*AllCapitals*" DISCOVERY_TIMEOUT 60
                       PROPERTIES LABELS tools)
  gtest_discover_tests(front_dictionary_tests TEST_FILTER "-*AllCapitals*" DISCOVERY_TIMEOUT 60
                       PROPERTIES LABELS slow TIMEOUT 1200)
endif()
