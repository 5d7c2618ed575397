# SPDX-License-Identifier: MIT
# Cross-builds the library for Windows CE. The compiler is whichever you have, and is named by
# -DIPODCOMM_CE_COMPILER=...: it must know C++17, and find CE's headers and libraries by itself.
# docs/porting.md tells what is known of such builds, and what is not.
set(CMAKE_SYSTEM_NAME WindowsCE)
set(CMAKE_SYSTEM_PROCESSOR arm)
set(IPODCOMM_CE_COMPILER arm-mingw32ce-g++ CACHE STRING "Compiler for Windows CE")
set(CMAKE_CXX_COMPILER ${IPODCOMM_CE_COMPILER})
# CMake tries its compilers in folders of their own, which must be told too.
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES IPODCOMM_CE_COMPILER)
# Whether a program can be linked depends on the image; CMake's trials compile only.
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
set(CMAKE_CXX_FLAGS_INIT "-DUNDER_CE=0x600 -D_WIN32_WCE=0x600 -DUNICODE -D_UNICODE")

set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# The programs and their tests are for systems with a console.
set(IPODCOMM_BUILD_APPS OFF CACHE BOOL "Build the simulated iPod and the programs")
