# Installed files of the library: itself, headers, CMake package and pkg-config file.
include(CMakePackageConfigHelpers)
set(config_dir ${QMDB_LIBDIR}/cmake/qmDatabase)
set(pkgconfig_dir ${QMDB_LIBDIR}/pkgconfig)

if(QMDB_FIXED_PREFIX)
    install(CODE "if(NOT CMAKE_INSTALL_PREFIX STREQUAL [[${QMDB_FIXED_PREFIX}]])
        message(FATAL_ERROR \"This build is to be installed to [[${QMDB_FIXED_PREFIX}]] only, because some of its \"
            \"directories are absolute paths outside: configure it anew with the prefix that you want\")
    endif()")
endif()
install(TARGETS qmDatabase EXPORT qmDatabaseTargets LIBRARY DESTINATION ${QMDB_LIBDIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/qmdatabase DESTINATION ${QMDB_INCLUDEDIR})
install(EXPORT qmDatabaseTargets NAMESPACE qmDatabase:: FILE qmDatabaseConfig.cmake DESTINATION ${config_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/qmDatabaseConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/qmDatabaseConfigVersion.cmake DESTINATION ${config_dir})

qmdb_path_to(${QMDB_LIBDIR} ${pkgconfig_dir} "\${pcfiledir}" pc_libdir)
qmdb_path_to(${QMDB_INCLUDEDIR} ${pkgconfig_dir} "\${pcfiledir}" pc_includedir)
qmdb_path_to("" ${pkgconfig_dir} "\${pcfiledir}" pc_prefix)
configure_file(${PROJECT_SOURCE_DIR}/cmake/qmDatabase.pc.in ${PROJECT_BINARY_DIR}/qmDatabase.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/qmDatabase.pc DESTINATION ${pkgconfig_dir})
