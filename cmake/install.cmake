# Installed files: library, headers, CMake package and pkg-config file.
include(CMakePackageConfigHelpers)
set(config_dir ${CMAKE_INSTALL_LIBDIR}/cmake/qmDatabase)

install(TARGETS qmDatabase EXPORT qmDatabaseTargets)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/qmdatabase DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(EXPORT qmDatabaseTargets NAMESPACE qmDatabase:: FILE qmDatabaseConfig.cmake DESTINATION ${config_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/qmDatabaseConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
configure_file(${PROJECT_SOURCE_DIR}/cmake/qmDatabase.pc.in ${PROJECT_BINARY_DIR}/qmDatabase.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/qmDatabaseConfigVersion.cmake DESTINATION ${config_dir})
install(FILES ${PROJECT_BINARY_DIR}/qmDatabase.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
