# SPDX-License-Identifier: MIT
# Compiles through ccache where there is one, unless a launcher was asked for.
find_program(IPODCOMM_CCACHE ccache)
if(IPODCOMM_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_C_COMPILER_LAUNCHER ${IPODCOMM_CCACHE})
  set(CMAKE_CXX_COMPILER_LAUNCHER ${IPODCOMM_CCACHE})
endif()
mark_as_advanced(IPODCOMM_CCACHE)
