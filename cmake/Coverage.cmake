# SPDX-License-Identifier: MIT
# Counts which lines, branches and conditions of the library run, for script/coverage.
option(IPODCOMM_COVERAGE "Count what of the library runs; needs Clang 19" OFF)
mark_as_advanced(IPODCOMM_COVERAGE)

if(IPODCOMM_COVERAGE)
  # Only what coverage.list names is counted, in the tests' objects too, which have their own copies of
  # what stands in the library's headers. Counting all of GoogleTest would double the time.
  set(coverage_list ${CMAKE_CURRENT_LIST_DIR}/coverage.list)
  add_compile_options(-O1 -g0 -fprofile-instr-generate -fcoverage-mapping -fcoverage-mcdc
                      -fprofile-list=${coverage_list})
  add_link_options(-fprofile-instr-generate)
endif()
