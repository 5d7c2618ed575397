# What `cmake --install` puts where, and the package that find_package(ipodcomm) finds there, with the
# targets ipodcomm::ipodcomm (shared) and ipodcomm::ipodcomm_static.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(ipodcomm_package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/ipodcomm)

install(TARGETS ipodcomm ipodcomm_static tracelog tracelog_static ${ipodcomm_platforms}
        EXPORT ipodcommTargets
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/ipodcomm DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(EXPORT ipodcommTargets NAMESPACE ipodcomm:: DESTINATION ${ipodcomm_package_dir})

write_basic_package_version_file(${PROJECT_BINARY_DIR}/ipodcommConfigVersion.cmake
                                 COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_SOURCE_DIR}/cmake/ipodcommConfig.cmake
              ${PROJECT_BINARY_DIR}/ipodcommConfigVersion.cmake
        DESTINATION ${ipodcomm_package_dir})
