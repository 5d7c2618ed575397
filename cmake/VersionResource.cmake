# SPDX-License-Identifier: MIT
# On Windows a program or a library says in a resource what it is and of which version. Elsewhere the
# file's name does.
if(WIN32)
  enable_language(RC)
endif()

# Gives TARGET the project's version and a DESCRIPTION.
function(ipodcomm_add_version_resource target description)
  if(NOT WIN32)
    return()
  endif()
  get_target_property(type ${target} TYPE)
  if(type STREQUAL EXECUTABLE)
    set(file_type VFT_APP)
    set(file_name ${target}.exe)
  else()
    set(file_type VFT_DLL)
    set(file_name ${target}.dll)
  endif()
  string(REPLACE "." "," version_numbers "${PROJECT_VERSION},0")
  set(resource ${CMAKE_CURRENT_BINARY_DIR}/${target}_version.rc)
  configure_file(${PROJECT_SOURCE_DIR}/cmake/windows/version.rc.in ${resource} @ONLY)
  target_sources(${target} PRIVATE ${resource})
endfunction()
