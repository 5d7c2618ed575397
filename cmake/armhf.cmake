# SPDX-License-Identifier: MIT
# 32-bit ARM with a floating-point unit: `long`, pointers and time_t have 4 bytes, `char` is unsigned.
set(CMAKE_SYSTEM_PROCESSOR arm)
set(ipodcomm_triplet arm-linux-gnueabihf)
set(ipodcomm_emulator arm)
# The compiler would else note at every vector that GCC 7 changed how its iterators are passed.
set(CMAKE_CXX_FLAGS_INIT -Wno-psabi)
include(${CMAKE_CURRENT_LIST_DIR}/cross/debian.cmake)
