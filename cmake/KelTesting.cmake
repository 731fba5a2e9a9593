# How tests, fuzz targets, examples and benchmarks are declared. Unknown arguments are errors everywhere.
include(GoogleTest)

# Scripts of the tests; the system's own comes first, since it is the one that scripts/install-deps equips.
find_program(KEL_PYTHON NAMES python3 HINTS /usr/bin REQUIRED)

# Options of all test code. Optimising instrumented test code takes three times as long to compile and gains nothing:
# what runs long is the code under test.
function(kel_configure_test_target target)
    kel_configure_target(${target})
    if(KEL_SANITIZE)
        target_compile_options(${target} PRIVATE -O0)
    endif()
endfunction()

# Nearly all compile time of a small test goes into GoogleTest's headers, so all tests share one precompiled header.
# An executable, not a library: position-independent code of the other kind would make it unusable for them.
add_executable(kel_test_pch EXCLUDE_FROM_ALL ${PROJECT_SOURCE_DIR}/tests/support/PrecompiledHeader.cpp)
kel_configure_test_target(kel_test_pch)
target_link_libraries(kel_test_pch PRIVATE GTest::gmock)
target_precompile_headers(kel_test_pch PRIVATE
    <gmock/gmock.h> <gtest/gtest.h> <algorithm> <cstdint> <filesystem> <fstream> <functional> <limits> <map> <memory>
    <sstream> <string> <vector>)

# kel_add_test(<folder> [SOURCES ...] [LIBRARIES ...] [INCLUDES ...] [DEFINITIONS ...])
#
# Builds test_<folder> from the *Test.cpp files of the calling folder (and SOURCES) and registers each test as
# <folder>.<suite>.<test>. The code gets the caller's folder as KEL_TEST_DIR and the project's as KEL_SOURCE_DIR.
function(kel_add_test folder)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LIBRARIES;INCLUDES;DEFINITIONS")
    if(arg_UNPARSED_ARGUMENTS)
        message(FATAL_ERROR "kel_add_test(${folder}): unknown arguments ${arg_UNPARSED_ARGUMENTS}")
    endif()
    file(GLOB found CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*Test.cpp)
    set(target test_${folder})
    add_executable(${target} ${found} ${arg_SOURCES})
    kel_configure_test_target(${target})
    target_precompile_headers(${target} REUSE_FROM kel_test_pch)
    target_link_libraries(${target} PRIVATE ${arg_LIBRARIES} GTest::gmock GTest::gtest_main)
    target_include_directories(${target} PRIVATE ${arg_INCLUDES} ${PROJECT_SOURCE_DIR}/tests)
    target_compile_definitions(${target} PRIVATE
        KEL_TEST_DIR="${CMAKE_CURRENT_SOURCE_DIR}" KEL_SOURCE_DIR="${PROJECT_SOURCE_DIR}" ${arg_DEFINITIONS})
    gtest_discover_tests(${target} TEST_PREFIX "${folder}." DISCOVERY_TIMEOUT 120 PROPERTIES TIMEOUT 300)
    set_property(GLOBAL APPEND PROPERTY KEL_TEST_PROGRAMS ${target})
endfunction()

# kel_add_judged_test(<name> JUDGES ... COMMAND ...)
#
# A test that asks programs, or modules of Python as python:<module>, which are not needed to build: skipped without
# them, or failing where KEL_REQUIRE_JUDGES is set (tests/support/judged.py).
function(kel_add_judged_test name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "JUDGES;COMMAND")
    if(arg_UNPARSED_ARGUMENTS)
        message(FATAL_ERROR "kel_add_judged_test(${name}): unknown arguments ${arg_UNPARSED_ARGUMENTS}")
    endif()
    list(TRANSFORM arg_JUDGES PREPEND --judge=)
    add_test(NAME ${name} COMMAND ${KEL_PYTHON} ${PROJECT_SOURCE_DIR}/tests/support/judged.py ${arg_JUDGES} -- ${arg_COMMAND})
    set_tests_properties(${name} PROPERTIES SKIP_RETURN_CODE 77)
endfunction()

# kel_add_fuzz_target(<name> SOURCES <file with LLVMFuzzerTestOneInput> CORPUS <dir>... LIBRARIES ... [INCLUDES ...])
#
# A program fuzz_<name>, run as the test fuzz.<name>. With KEL_BUILD_FUZZERS it is libFuzzer's, built by the target
# `fuzzers`, and runs for KEL_FUZZ_SECONDS; what it finds stays in the folder fuzz/<name> of the build. Otherwise the
# same entry point has a driver that replays the corpus and then mutates it for a moment.
function(kel_add_fuzz_target name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "CORPUS;SOURCES;LIBRARIES;INCLUDES")
    if(arg_UNPARSED_ARGUMENTS)
        message(FATAL_ERROR "kel_add_fuzz_target(${name}): unknown arguments ${arg_UNPARSED_ARGUMENTS}")
    endif()
    add_executable(fuzz_${name} ${arg_SOURCES})
    kel_configure_target(fuzz_${name})
    target_link_libraries(fuzz_${name} PRIVATE ${arg_LIBRARIES})
    target_include_directories(fuzz_${name} PRIVATE ${arg_INCLUDES})
    if(KEL_BUILD_FUZZERS)
        target_link_options(fuzz_${name} PRIVATE -fsanitize=fuzzer)
        set(found ${PROJECT_BINARY_DIR}/fuzz/${name})
        file(MAKE_DIRECTORY ${found}/inputs)
        add_test(NAME fuzz.${name}
            COMMAND fuzz_${name} -max_total_time=${KEL_FUZZ_SECONDS} -timeout=60 -artifact_prefix=${found}/
                    ${found}/inputs ${arg_CORPUS})
        math(EXPR limit "${KEL_FUZZ_SECONDS} + 300")
        set_tests_properties(fuzz.${name} PROPERTIES TIMEOUT ${limit})
        if(NOT TARGET fuzzers)
            add_custom_target(fuzzers)
        endif()
        add_dependencies(fuzzers fuzz_${name})
    else()
        target_sources(fuzz_${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests/support/FuzzDriver.cpp)
        add_test(NAME fuzz.${name} COMMAND fuzz_${name} ${arg_CORPUS})
        set_tests_properties(fuzz.${name} PROPERTIES TIMEOUT 300)
    endif()
endfunction()
