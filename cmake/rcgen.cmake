# cmake/rcgen.cmake — the resource script of ORTH32.DLL's dialogs and
# string table, written at build time by orth_rcgen from the templates table
# (ui/templates.cpp) and the text table (host/texts.cpp), so that the
# compiled resources cannot drift from what the controllers and the other
# front ends use.
#
# orth_rcgen has to run on the build machine. In a native build that is the
# orth_rcgen target itself; in a cross build the same sources are compiled
# once more by the build machine's own C++ compiler (ORTH_HOST_CXX), which
# takes about a second and needs no second CMake project.
#
# Sets ORTH_DIALOGS_RC, the generated script, for the including file to add
# to a target's sources.
set(ORTH_RCGEN_SOURCES
  ${PROJECT_SOURCE_DIR}/ui/rcgen/orth_rcgen.cpp ${PROJECT_SOURCE_DIR}/ui/rcscript.cpp
  ${PROJECT_SOURCE_DIR}/ui/templates.cpp ${PROJECT_SOURCE_DIR}/host/texts.cpp
  ${PROJECT_SOURCE_DIR}/check/chartab.cpp)
set(ORTH_DIALOGS_RC ${CMAKE_CURRENT_BINARY_DIR}/orth32_dialogs.rc)

if(CMAKE_CROSSCOMPILING)
  find_program(ORTH_HOST_CXX NAMES c++ g++ clang++
               DOC "The build machine's C++ compiler, for orth_rcgen in a cross build")
  if(NOT ORTH_HOST_CXX)
    message(FATAL_ERROR "A cross build needs the build machine's C++ compiler for orth_rcgen "
                        "(set ORTH_HOST_CXX)")
  endif()
  # The headers those sources include, so that a changed table or limit
  # rebuilds the generator.
  file(GLOB ORTH_RCGEN_HEADERS ${PROJECT_SOURCE_DIR}/ui/*.h ${PROJECT_SOURCE_DIR}/host/*.h
       ${PROJECT_SOURCE_DIR}/check/*.h ${PROJECT_SOURCE_DIR}/engine/*.h ${PROJECT_SOURCE_DIR}/include/*.h)
  set(ORTH_RCGEN ${CMAKE_CURRENT_BINARY_DIR}/orth_rcgen_host)
  add_custom_command(OUTPUT ${ORTH_RCGEN}
    COMMAND ${ORTH_HOST_CXX} -std=c++17 -O1 -I${PROJECT_SOURCE_DIR} -I${PROJECT_SOURCE_DIR}/include
            ${ORTH_RCGEN_SOURCES} -o ${ORTH_RCGEN}
    DEPENDS ${ORTH_RCGEN_SOURCES} ${ORTH_RCGEN_HEADERS}
    COMMENT "Compiling orth_rcgen for the build machine"
    VERBATIM)
  set(ORTH_RCGEN_DEPENDS ${ORTH_RCGEN})
else()
  set(ORTH_RCGEN $<TARGET_FILE:orth_rcgen>)
  set(ORTH_RCGEN_DEPENDS orth_rcgen)
endif()

add_custom_command(OUTPUT ${ORTH_DIALOGS_RC}
  COMMAND ${ORTH_RCGEN} ${ORTH_DIALOGS_RC}
  DEPENDS ${ORTH_RCGEN_DEPENDS}
  COMMENT "Writing the dialogs' resource script"
  VERBATIM)
