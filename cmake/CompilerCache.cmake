# SPDX-License-Identifier: MIT
# Compiles through ccache where there is one, unless a launcher was asked for.
find_program(IPODCOMM_CCACHE ccache)
if(IPODCOMM_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  # What includes a precompiled header is cached only if ccache is told that no macro of it is set from
  # outside and no time is compiled in, and that the header is new in every new build folder.
  set(launcher ${CMAKE_COMMAND} -E env
      CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime ${IPODCOMM_CCACHE})
  set(CMAKE_C_COMPILER_LAUNCHER ${launcher})
  set(CMAKE_CXX_COMPILER_LAUNCHER ${launcher})
endif()
mark_as_advanced(IPODCOMM_CCACHE)
