# SPDX-License-Identifier: MIT
# What `cmake --install` puts where: the headers, both forms of the library, its documents, and what
# finds it again: the package of find_package(ipodcomm), with the components shared and static, and
# ipodcomm.pc for pkg-config, whose --static is the static one.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(ipodcomm_package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/ipodcomm)

install(TARGETS ipodcomm tracelog EXPORT ipodcommSharedTargets)
install(TARGETS ipodcomm_static tracelog_static EXPORT ipodcommStaticTargets)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/ipodcomm DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
foreach(form Shared Static)
  install(EXPORT ipodcomm${form}Targets NAMESPACE ipodcomm:: DESTINATION ${ipodcomm_package_dir})
endforeach()

write_basic_package_version_file(${PROJECT_BINARY_DIR}/ipodcommConfigVersion.cmake
                                 COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_SOURCE_DIR}/cmake/ipodcommConfig.cmake
              ${PROJECT_BINARY_DIR}/ipodcommConfigVersion.cmake
        DESTINATION ${ipodcomm_package_dir})

# It finds the rest from where it lies itself, so that an installation may be moved.
file(RELATIVE_PATH pkgconfig_to_prefix /p/${CMAKE_INSTALL_LIBDIR}/pkgconfig /p)
if(WIN32)
  set(pkgconfig_system_libraries "-lversion -pthread")
else()
  set(pkgconfig_system_libraries -pthread)
endif()
configure_file(${PROJECT_SOURCE_DIR}/cmake/ipodcomm.pc.in ${PROJECT_BINARY_DIR}/ipodcomm.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/ipodcomm.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

install(FILES ${PROJECT_SOURCE_DIR}/README.md ${PROJECT_SOURCE_DIR}/CHANGELOG.md
        DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(FILES ${PROJECT_SOURCE_DIR}/LICENSES/MIT.txt RENAME LICENSE
        DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs/ DESTINATION ${CMAKE_INSTALL_DOCDIR}
        FILES_MATCHING PATTERN *.md PATTERN *.xsd PATTERN man EXCLUDE)
