# ARM, 64 bit, under Linux, by the cross compiler of Debian: one file without libraries of its own.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_C_COMPILER aarch64-linux-gnu-gcc)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)
set(CMAKE_EXE_LINKER_FLAGS_INIT -static)
# CMake would find the shared library.
set(OpenMP_gomp_LIBRARY gomp CACHE STRING "")
