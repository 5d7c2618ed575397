# SPDX-License-Identifier: MIT
# Headers of the build machine that suit every target, without the rest of its include folder.
#
# A header-only library installed here serves the cross-build as well, but its folder also holds this
# machine's own system headers, which must never be seen by a compiler for another system.

# Makes the imported target `target`, which sees only the folder `name` of /usr/include.
function(ipodcomm_add_host_headers target name)
  set(found FALSE)
  if(EXISTS /usr/include/${name})
    set(folder ${PROJECT_BINARY_DIR}/host-headers/${name})
    file(MAKE_DIRECTORY ${folder})
    file(CREATE_LINK /usr/include/${name} ${folder}/${name} SYMBOLIC)
    if(NOT TARGET ${target})
      add_library(${target} INTERFACE IMPORTED GLOBAL)
      target_include_directories(${target} INTERFACE ${folder})
    endif()
    set(found TRUE)
  endif()
  set(ipodcomm_host_headers_found ${found} PARENT_SCOPE)
endfunction()
