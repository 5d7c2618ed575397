# SPDX-License-Identifier: MIT
# For script/mutate: the library under test is a shared one of its own, so that a mutant costs one compilation
# and one link, whatever number of programs it is tested by.
option(IPODCOMM_MUTATION "Link the virtual tests with the library as one shared object" OFF)
mark_as_advanced(IPODCOMM_MUTATION)

if(IPODCOMM_MUTATION)
  # The programs find what the library has, and it the platform's services, which the programs have.
  set(CMAKE_CXX_VISIBILITY_PRESET default)
  add_compile_options(-O1 -g0 "-Dvisibility(how)=")
  # Both have the inline functions of the library's headers; a change in them is for the library alone.
  add_link_options(-Wl,-Bsymbolic-functions -fuse-ld=lld)
endif()
