# SPDX-License-Identifier: MIT
# Cross-builds for 32-bit Windows. What is built runs only where Wine can run 32-bit programs.
set(ipodcomm_processor i686)
include(${CMAKE_CURRENT_LIST_DIR}/mingw-w64.cmake)
