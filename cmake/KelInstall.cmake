# Install rules that belong to the package as a whole: CMake package, pkg-config files, documents and examples.
include(CMakePackageConfigHelpers)

# The documents keep their places beside each other, so that their links lead on. Each example builds from there.
set(KEL_DOCUMENTS ${CMAKE_INSTALL_DATADIR}/doc/meridynfluidskel)
install(FILES README.md CONTRIBUTING.md CHANGELOG.md DESTINATION ${KEL_DOCUMENTS} COMPONENT development)
install(DIRECTORY docs/ DESTINATION ${KEL_DOCUMENTS}/docs COMPONENT development FILES_MATCHING PATTERN *.md)
install(DIRECTORY examples/ DESTINATION ${KEL_DOCUMENTS}/examples COMPONENT development REGEX "/examples/CMakeLists.txt$" EXCLUDE)

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

# kel_install_pkg_config(<name> DESCRIPTION <text> LIBS <flags> [REQUIRES <name of another>])
#
# Paths in the pkg-config file are relative to it, so that an installed tree can be moved.
function(kel_install_pkg_config name)
    cmake_parse_arguments(PARSE_ARGV 1 KEL_PC "" "DESCRIPTION;LIBS;REQUIRES" "")
    if(KEL_PC_UNPARSED_ARGUMENTS)
        message(FATAL_ERROR "kel_install_pkg_config(${name}): unknown arguments ${KEL_PC_UNPARSED_ARGUMENTS}")
    endif()
    set(KEL_PC_NAME ${name})
    file(RELATIVE_PATH KEL_PREFIX_FROM_PKGCONFIG /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
    configure_file(${PROJECT_SOURCE_DIR}/cmake/package.pc.in ${PROJECT_BINARY_DIR}/${name}.pc @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/${name}.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
endfunction()
kel_install_pkg_config(meridynfluidskel
    DESCRIPTION ${PROJECT_DESCRIPTION} LIBS "-lmeridynfluidskelinterface -lmeridynarbor")
kel_install_pkg_config(meridynkelformats
    DESCRIPTION "Formats of the Kel family and transfer between them" LIBS -lmeridynkelformats REQUIRES meridynfluidskel)
