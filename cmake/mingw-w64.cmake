# cmake/mingw-w64.cmake — the part the MinGW-w64 toolchain files share. The
# including file sets ORTH_MINGW_TRIPLET (i686-w64-mingw32, x86_64-w64-mingw32)
# and CMAKE_SYSTEM_PROCESSOR.
set(CMAKE_SYSTEM_NAME Windows)

# The POSIX thread model: its C++ runtime has std::mutex, which the cross-built
# GoogleTest needs. Linked statically, it adds no DLL to the imports.
find_program(CMAKE_C_COMPILER NAMES ${ORTH_MINGW_TRIPLET}-gcc-posix ${ORTH_MINGW_TRIPLET}-gcc REQUIRED)
find_program(CMAKE_CXX_COMPILER NAMES ${ORTH_MINGW_TRIPLET}-g++-posix ${ORTH_MINGW_TRIPLET}-g++ REQUIRED)
find_program(CMAKE_RC_COMPILER NAMES ${ORTH_MINGW_TRIPLET}-windres REQUIRED)
find_program(ORTH_MINGW_OBJDUMP NAMES ${ORTH_MINGW_TRIPLET}-objdump)
find_program(ORTH_MINGW_DLLTOOL NAMES ${ORTH_MINGW_TRIPLET}-dlltool)

# Headers and libraries come from the MinGW sysroot only; build tools from
# the host.
set(CMAKE_FIND_ROOT_PATH /usr/${ORTH_MINGW_TRIPLET})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Everything links the GCC and C++ runtimes statically, so the DLLs and the
# test programs import system DLLs only and nothing of MinGW's has to ship.
foreach(kind EXE SHARED MODULE)
  set(CMAKE_${kind}_LINKER_FLAGS_INIT "-static -static-libgcc -static-libstdc++")
endforeach()
