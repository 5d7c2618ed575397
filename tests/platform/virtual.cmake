# Tests of the virtual platform itself.

# Linked into test programs that use virtual worlds: a failed test then prints how it is repeated.
add_library(virtual_world_gtest OBJECT ${CMAKE_CURRENT_LIST_DIR}/virtual_gtest_hooks.cpp)
target_link_libraries(virtual_world_gtest PUBLIC ipodcomm_platform_virtual GTest::gtest)

file(GLOB virtual_platform_test_sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_LIST_DIR}/virtual_*_test.cpp)
add_executable(virtual_platform_tests ${virtual_platform_test_sources}
                                      $<TARGET_OBJECTS:virtual_world_gtest>)
target_link_libraries(virtual_platform_tests PRIVATE ipodcomm_platform_virtual GTest::gmock_main)
gtest_discover_tests(virtual_platform_tests DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 120)
