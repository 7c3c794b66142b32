# cmake/toolchain-i686-w64-mingw32.cmake — cross-builds the 32-bit Windows
# DLLs with MinGW-w64:
#   cmake -S . -B build-win32 -DCMAKE_TOOLCHAIN_FILE=cmake/toolchain-i686-w64-mingw32.cmake
set(ORTH_MINGW_TRIPLET i686-w64-mingw32)
set(CMAKE_SYSTEM_PROCESSOR x86)
include(${CMAKE_CURRENT_LIST_DIR}/mingw-w64.cmake)
