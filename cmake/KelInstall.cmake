# Install rules that belong to the package as a whole: CMake package and pkg-config file.
include(CMakePackageConfigHelpers)

install(EXPORT MeridynFluidsKelTargets NAMESPACE meridyn::
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/MeridynFluidsKel COMPONENT development)
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/MeridynFluidsKelConfig.cmake.in
    ${PROJECT_BINARY_DIR}/MeridynFluidsKelConfig.cmake
    INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/MeridynFluidsKel
    NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/MeridynFluidsKelConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/MeridynFluidsKelConfig.cmake ${PROJECT_BINARY_DIR}/MeridynFluidsKelConfigVersion.cmake
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/MeridynFluidsKel COMPONENT development)

# Paths in the pkg-config file are relative to it, so that an installed tree can be moved.
file(RELATIVE_PATH KEL_PREFIX_FROM_PKGCONFIG
    /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
configure_file(${PROJECT_SOURCE_DIR}/cmake/meridynfluidskel.pc.in ${PROJECT_BINARY_DIR}/meridynfluidskel.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/meridynfluidskel.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
