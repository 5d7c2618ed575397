# SPDX-License-Identifier: MIT
# Cross-builds for 64-bit Windows with mingw-w64, and runs what was built under Wine.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
# The posix flavour: its C++ library has std::thread and std::mutex, which the programs use.
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
# Only GoogleTest asks for a C compiler.
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# No program or library needs the compiler's own DLLs beside it.
set(CMAKE_EXE_LINKER_FLAGS_INIT -static)
set(CMAKE_SHARED_LINKER_FLAGS_INIT -static)
# Most of the compiler's libraries, linked in whole, would be their symbol tables.
set(CMAKE_EXE_LINKER_FLAGS_RELEASE_INIT -s)
set(CMAKE_SHARED_LINKER_FLAGS_RELEASE_INIT -s)

# The build machine's header-only libraries and GoogleTest's sources, made fit for this target.
list(APPEND CMAKE_MODULE_PATH ${CMAKE_CURRENT_LIST_DIR}/windows)

set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/windows/run-under-wine)
