# SPDX-License-Identifier: MIT
# Every target of the project is built with these; a warning is an error.
add_compile_options(-Wall -Wextra -Wconversion -Wshadow -Werror)
if(CMAKE_CXX_COMPILER_ID STREQUAL GNU AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # GCC 12, optimising, sees overflows and overreads in insertions into vectors that have none. The
  # sanitizers and later compilers look for real ones.
  add_compile_options(-Wno-array-bounds -Wno-stringop-overflow -Wno-stringop-overread)
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL Clang)
  # Part of its -Wconversion, not of GCC's.
  add_compile_options(-Wno-sign-conversion)
  if(CMAKE_CXX_COMPILER_VERSION VERSION_GREATER_EQUAL 15)
    # The stable sort of GCC 12's library uses what the library itself calls deprecated.
    add_compile_options(-Wno-deprecated-declarations)
  endif()
endif()
