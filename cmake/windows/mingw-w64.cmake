# Toolchain file: cross-compiles for 64-bit Windows with Debian's mingw-w64, in its variant with standard threads.
# What was cross-built besides is found in CMAKE_PREFIX_PATH, and the programs that it runs on this machine's.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)
# The linker's time grows with the square of the number of sections, and without optimization there are a hundred
# thousand of them.
set(CMAKE_CXX_FLAGS_RELEASE "-O1" CACHE STRING "")
set(CMAKE_FIND_ROOT_PATH ${CMAKE_PREFIX_PATH} /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
