# SPDX-License-Identifier: MIT
# The target build_identity, which programs link to tell their version, commit and date. It is looked
# at in every build, and compiled when it has changed.
set(identity ${PROJECT_BINARY_DIR}/build_identity.cpp)
set(write_identity ${CMAKE_COMMAND} -D SOURCE=${PROJECT_SOURCE_DIR} -D OUTPUT=${identity}
                   -D VERSION=${PROJECT_VERSION} -P ${CMAKE_CURRENT_LIST_DIR}/WriteBuildIdentity.cmake)
execute_process(COMMAND ${write_identity} COMMAND_ERROR_IS_FATAL ANY)
add_custom_target(write_build_identity COMMAND ${write_identity} BYPRODUCTS ${identity} VERBATIM)

add_library(build_identity STATIC ${identity})
add_dependencies(build_identity write_build_identity)
target_include_directories(build_identity PUBLIC ${PROJECT_SOURCE_DIR}/apps)
set_target_properties(build_identity PROPERTIES UNITY_BUILD OFF)
