# SPDX-License-Identifier: MIT
# Most of what a compiler does for a source here is reading headers and instantiating the same
# templates again, GoogleTest's above all. Eight sources in one translation unit take less than half of
# the time that they take one by one.
#
# Sources of one program then share a file scope. One whose names clash with those of another is
# compiled alone, by ipodcomm_compile_alone.
option(IPODCOMM_UNITY_BUILD "Compile the programs and the tests several sources at a time" OFF)
option(IPODCOMM_UNITY_LIBRARY "Compile the library so too; its objects are then not those it ships"
       OFF)
mark_as_advanced(IPODCOMM_UNITY_BUILD IPODCOMM_UNITY_LIBRARY)

# For the directory that calls it and those below it.
macro(ipodcomm_allow_unity_build)
  if(IPODCOMM_UNITY_BUILD)
    set(CMAKE_UNITY_BUILD ON)
  endif()
endmacro()

# Compiles sources of the calling directory one by one even so.
function(ipodcomm_compile_alone)
  set_source_files_properties(${ARGN} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
endfunction()
