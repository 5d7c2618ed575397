# SPDX-License-Identifier: MIT
# 64-bit ARM.
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(ipodcomm_triplet aarch64-linux-gnu)
set(ipodcomm_emulator aarch64)
include(${CMAKE_CURRENT_LIST_DIR}/cross/debian.cmake)
