# SPDX-License-Identifier: MIT
# Cross-builds for another processor under Linux with Debian's compilers, and runs what was built under
# emulation. The toolchain file that includes this has said for which:
#   ipodcomm_triplet    what the compiler's name begins with, and what its libraries' folder is called
#   ipodcomm_emulator   what QEMU calls the processor: qemu-NAME-static runs its programs, or qemu-NAME
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_CXX_COMPILER ${ipodcomm_triplet}-g++)
# Only GoogleTest asks for a C compiler.
set(CMAKE_C_COMPILER ${ipodcomm_triplet}-gcc)

set(CMAKE_FIND_ROOT_PATH /usr/${ipodcomm_triplet})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# The build machine's header-only libraries and GoogleTest's sources, made fit for this target.
list(APPEND CMAKE_MODULE_PATH ${CMAKE_CURRENT_LIST_DIR})

find_program(IPODCOMM_EMULATOR NAMES qemu-${ipodcomm_emulator}-static qemu-${ipodcomm_emulator})
mark_as_advanced(IPODCOMM_EMULATOR)
set(CMAKE_CROSSCOMPILING_EMULATOR ${IPODCOMM_EMULATOR};-L;/usr/${ipodcomm_triplet})
