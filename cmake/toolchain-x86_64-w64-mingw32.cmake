# cmake/toolchain-x86_64-w64-mingw32.cmake — the same build for 64-bit
# Windows, for machines whose wine runs 64-bit programs only.
set(ORTH_MINGW_TRIPLET x86_64-w64-mingw32)
set(CMAKE_SYSTEM_PROCESSOR AMD64)
include(${CMAKE_CURRENT_LIST_DIR}/mingw-w64.cmake)
