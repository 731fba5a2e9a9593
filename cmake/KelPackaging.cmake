# Debian packages: `cpack` in the build folder makes one for each component. The preset `package` is the one to make them
# with, scripts/check-packages tries them.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME meridynfluidskel)
set(CPACK_PACKAGE_VENDOR Meridyn)
set(CPACK_PACKAGE_CONTACT "Meridyn <fluidskel@meridyn.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY ${PROJECT_DESCRIPTION})
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL library development tool)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME libmeridynfluidskel${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libmeridynfluidskel-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_TOOL_PACKAGE_NAME kel-tool)
set(CPACK_DEBIAN_TOOL_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_TOOL_PACKAGE_SHLIBDEPS ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

# What says to other packages, and to the loader's cache, which libraries there are.
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/cmake/debian/triggers)

# The libraries in this build are found where they lie, not in the system.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "")
get_property(libraries GLOBAL PROPERTY KEL_LIBRARIES)
foreach(library IN LISTS libraries)
    get_target_property(dir ${library} BINARY_DIR)
    list(APPEND CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${dir})
endforeach()

# Every package has its copyright and the changes, where and as Debian looks for them.
string(TIMESTAMP KEL_PACKAGE_DATE "%a, %d %b %Y %H:%M:%S +0000" UTC)
configure_file(${PROJECT_SOURCE_DIR}/cmake/debian/changelog.in ${PROJECT_BINARY_DIR}/changelog @ONLY)
kel_compress(${PROJECT_BINARY_DIR}/changelog ${PROJECT_BINARY_DIR}/changelog.gz)
kel_compress(${PROJECT_SOURCE_DIR}/CHANGELOG.md ${PROJECT_BINARY_DIR}/CHANGELOG.md.gz)
foreach(component IN LISTS CPACK_COMPONENTS_ALL)
    string(TOUPPER ${component} COMPONENT)
    install(FILES ${PROJECT_SOURCE_DIR}/cmake/debian/copyright ${PROJECT_BINARY_DIR}/changelog.gz ${PROJECT_BINARY_DIR}/CHANGELOG.md.gz
        DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${CPACK_DEBIAN_${COMPONENT}_PACKAGE_NAME} COMPONENT ${component})
endforeach()

include(CPack)
cpack_add_component(library DISPLAY_NAME "Libraries"
    DESCRIPTION "The shared libraries through which applications read and write\nmeshes and solutions, and their formats.")
cpack_add_component(development DISPLAY_NAME "Headers and package files" DEPENDS library
    DESCRIPTION "What a program needs to be built with the libraries: headers,\nCMake package and pkg-config files.")
cpack_add_component(tool DISPLAY_NAME "The tool kel" DEPENDS library
    DESCRIPTION "Looks into case and data files, checks, compares and converts them.")
