# SPDX-License-Identifier: MIT
# Cross-builds for Windows with mingw-w64, for 64 bits unless windows32.cmake has said otherwise, and
# runs what was built under Wine.
if(NOT ipodcomm_processor)
  set(ipodcomm_processor x86_64)
endif()
set(ipodcomm_triplet ${ipodcomm_processor}-w64-mingw32)
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR ${ipodcomm_processor})
# The posix flavour: its C++ library has std::thread and std::mutex, which the programs use.
set(CMAKE_CXX_COMPILER ${ipodcomm_triplet}-g++-posix)
# Only GoogleTest asks for a C compiler.
set(CMAKE_C_COMPILER ${ipodcomm_triplet}-gcc-posix)
set(CMAKE_RC_COMPILER ${ipodcomm_triplet}-windres)

set(CMAKE_FIND_ROOT_PATH /usr/${ipodcomm_triplet})
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
list(APPEND CMAKE_MODULE_PATH ${CMAKE_CURRENT_LIST_DIR}/cross)

set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/windows/run-under-wine)
