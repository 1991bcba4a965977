# 64-bit Windows, by mingw-w64: one file without libraries of its own.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)
# The calls of Windows and POSIX beside those of the language, and offsets of 64 bits.
set(CMAKE_CXX_EXTENSIONS ON)
add_compile_definitions(_FILE_OFFSET_BITS=64 NOMINMAX)
# CLI11 asks the C library for files, which takes their names as UTF-8.
add_compile_definitions(CLI11_HAS_FILESYSTEM=0)
# A stack of Windows is aligned to 16 bytes, which GCC forgets where it keeps wider registers there
# (bug 54412): they move by instructions that need no alignment.
set(CMAKE_CXX_FLAGS_INIT -Wa,-muse-unaligned-vector-move)
# Room on the stack as under Linux.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static -Wl,--stack,8388608")
# CMake would find the DLL.
set(OpenMP_gomp_LIBRARY gomp CACHE STRING "")
