# SPDX-License-Identifier: MIT
# What all test programs have in common.
include(GoogleTest)

# Lists the tests of a GoogleTest program for CTest and script/run-tests. Each name begins with
# PREFIX, if one is given. REAL_TIME tests wait for a real clock or a real line rather than compute, so
# that many of them may run at a time.
function(ipodcomm_discover_tests program)
  cmake_parse_arguments(PARSE_ARGV 1 tests "REAL_TIME" "PREFIX" "")
  # A test that hangs is stopped after this many seconds.
  set(properties TIMEOUT 300)
  if(tests_REAL_TIME)
    list(APPEND properties LABELS real-time)
  endif()
  # The tests are listed when they are run: a build need not start what it has just linked, and a test
  # that is added or renamed needs no new configuration.
  gtest_discover_tests(${program} TEST_PREFIX "${tests_PREFIX}" DISCOVERY_MODE PRE_TEST
                       DISCOVERY_TIMEOUT 120 PROPERTIES ${properties})
  if(TARGET gtest_headers)
    target_precompile_headers(${program} REUSE_FROM gtest_headers)
    # GCC tells ccache so which header it took.
    target_compile_options(${program} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-fpch-preprocess>)
  endif()
endfunction()
