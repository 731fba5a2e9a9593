# How every target of this project is compiled: kel_configure_target and the libraries' common set-up.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
find_package(Threads REQUIRED)

if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
    set(CMAKE_BUILD_TYPE Release)
endif()

# ccache, where it is installed; CMAKE_CXX_COMPILER_LAUNCHER given by hand wins.
find_program(KEL_CCACHE ccache)
if(KEL_CCACHE AND NOT DEFINED CMAKE_CXX_COMPILER_LAUNCHER)
    # Without this sloppiness nothing that uses a precompiled header would be cached.
    set(CMAKE_CXX_COMPILER_LAUNCHER
        ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime ${KEL_CCACHE})
endif()

if(KEL_SANITIZE)
    add_compile_options(-fsanitize=${KEL_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${KEL_SANITIZE})
endif()
if(KEL_BUILD_FUZZERS)
    add_compile_options(-fsanitize=fuzzer-no-link)
    add_link_options(-fsanitize=fuzzer-no-link)
endif()

# Gives a target the warnings of the project.
function(kel_configure_target target)
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual)
    if(KEL_WARNINGS_AS_ERRORS)
        target_compile_options(${target} PRIVATE -Werror)
    endif()
endfunction()

# kel_add_library(<name> OUTPUT <file> NAMESPACE <exported namespace> [HEADERS_DIR <dir>])
#
# A shared library of the project, as meridyn::<name>, which exports the names of one namespace. Its sources are added
# with target_sources where they live. All headers below HEADERS_DIR are public; without it the public headers are
# added to the file set HEADERS of the target.
function(kel_add_library name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "OUTPUT;NAMESPACE;HEADERS_DIR" "")
    if(arg_UNPARSED_ARGUMENTS)
        message(FATAL_ERROR "kel_add_library(${name}): unknown arguments ${arg_UNPARSED_ARGUMENTS}")
    endif()
    add_library(${name} SHARED)
    add_library(meridyn::${name} ALIAS ${name})
    target_compile_features(${name} PUBLIC cxx_std_17 PRIVATE cxx_std_20)
    set(headers "")
    if(arg_HEADERS_DIR)
        file(GLOB_RECURSE headers CONFIGURE_DEPENDS ${arg_HEADERS_DIR}/*.h)
    else()
        set(arg_HEADERS_DIR ${CMAKE_CURRENT_BINARY_DIR}) # a set needs one folder; others join as files are added
    endif()
    target_sources(${name} PUBLIC FILE_SET HEADERS BASE_DIRS ${arg_HEADERS_DIR} FILES ${headers})
    set_target_properties(${name} PROPERTIES
        LINKER_LANGUAGE CXX
        OUTPUT_NAME ${arg_OUTPUT}
        VERSION ${PROJECT_VERSION}
        SOVERSION ${PROJECT_VERSION_MAJOR}
        INSTALL_RPATH "$ORIGIN")
    kel_configure_target(${name})

    # Hidden visibility leaves the standard library's templates visible; the map hides these too.
    set(KEL_NAMESPACE ${arg_NAMESPACE})
    set(map ${CMAKE_CURRENT_BINARY_DIR}/${name}.map)
    configure_file(${PROJECT_SOURCE_DIR}/cmake/exports.map.in ${map} @ONLY)
    target_link_options(${name} PRIVATE -Wl,--version-script=${map})
    set_target_properties(${name} PROPERTIES LINK_DEPENDS ${map} KEL_NAMESPACE ${arg_NAMESPACE})

    install(TARGETS ${name} EXPORT MeridynFluidsKelTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library NAMELINK_COMPONENT development
        FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/meridyn COMPONENT development)
    set_property(GLOBAL APPEND PROPERTY KEL_LIBRARIES ${name})
endfunction()
