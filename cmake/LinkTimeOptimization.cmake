# SPDX-License-Identifier: MIT
# Makes LIBRARY of the sources of the targets PARTS, optimised when it is linked, as a whole: what is
# called in one place is inlined there and what is called nowhere is left out, which makes it some
# 16 kB smaller. The sources are compiled anew for it. The objects of the parts stay such as any
# compiler can link, for those who link them into programs of their own.
function(ipodcomm_link_as_a_whole library)
  foreach(part IN LISTS ARGN)
    get_target_property(sources ${part} SOURCES)
    get_target_property(folder ${part} SOURCE_DIR)
    foreach(source IN LISTS sources)
      cmake_path(ABSOLUTE_PATH source BASE_DIRECTORY ${folder})
      target_sources(${library} PRIVATE ${source})
    endforeach()
    target_compile_definitions(${library} PRIVATE $<TARGET_PROPERTY:${part},COMPILE_DEFINITIONS>)
  endforeach()
  # Its own functions are known not to be replaced, so they may be seen through where they are called.
  # Nothing here is in a hurry but the frame assembler, which asks for speed itself.
  target_compile_options(${library} PRIVATE -flto -fno-semantic-interposition
                         $<$<VERSION_GREATER_EQUAL:$<CXX_COMPILER_VERSION>,12>:-Oz>)
  target_link_options(${library} PRIVATE -flto=auto)
  if(CMAKE_SYSTEM_PROCESSOR STREQUAL x86_64)  # measured there
    # The compiler takes small functions for smaller inlined than called, and errs often here: called, they
    # save 2 kB. What is called once, or declared inline, is inlined all the same.
    target_compile_options(${library} PRIVATE -fno-inline-small-functions)
    # Split into parts, as is the default, the library is 1.7 kB larger.
    target_link_options(${library} PRIVATE -flto-partition=one)
  endif()
endfunction()
