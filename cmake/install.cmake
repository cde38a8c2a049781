# What `cmake --install` gives a third-party host: the module, the scene database, the
# view-side layer a host builds its view with, the public headers and a CMake package, so that
#   find_package(Obsidra) + target_link_libraries(app Obsidra::ObsidraMFCDll)
# is all a host's build needs.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

install(TARGETS ObsidraMFCDll obsidra_hc obsidra_mvo obsidra_public obsidra_warnings
        EXPORT ObsidraTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
        INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/obsidra DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/src/mvo/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/mvo
        FILES_MATCHING PATTERN "*.h")
install(EXPORT ObsidraTargets NAMESPACE Obsidra::
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/Obsidra)
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/ObsidraConfig.cmake.in
    ${PROJECT_BINARY_DIR}/ObsidraConfig.cmake
    INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/Obsidra)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/ObsidraConfigVersion.cmake
    COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/ObsidraConfig.cmake ${PROJECT_BINARY_DIR}/ObsidraConfigVersion.cmake
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/Obsidra)
