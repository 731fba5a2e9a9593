# How examples and benchmarks are declared. Unknown arguments are errors.

# kel_add_example(<name> SOURCES ... LIBRARIES ... [ARGUMENTS ...])
#
# Builds example_<name> from sources in the folder <name> and, with the tests, runs it as the test example.<name> in a
# folder of its own: it must end with 0 and print what stands in <name>/expected.txt. Case files that it leaves must be
# good meshes for `kel check`.
function(kel_add_example name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LIBRARIES;ARGUMENTS")
    if(arg_UNPARSED_ARGUMENTS)
        message(FATAL_ERROR "kel_add_example(${name}): unknown arguments ${arg_UNPARSED_ARGUMENTS}")
    endif()
    set(target example_${name})
    list(TRANSFORM arg_SOURCES PREPEND ${name}/)
    add_executable(${target} ${arg_SOURCES})
    kel_configure_target(${target})
    target_link_libraries(${target} PRIVATE ${arg_LIBRARIES})
    if(KEL_BUILD_TESTS)
        add_test(NAME example.${name}
            COMMAND ${KEL_PYTHON} ${PROJECT_SOURCE_DIR}/tests/support/run_program.py
                    --output ${CMAKE_CURRENT_SOURCE_DIR}/${name}/expected.txt --check $<TARGET_FILE:kel>
                    -- $<TARGET_FILE:${target}> ${arg_ARGUMENTS})
        set_tests_properties(example.${name} PROPERTIES TIMEOUT 300)
    endif()
endfunction()

# kel_add_benchmark(<name> SOURCES ... LIBRARIES ... [INCLUDES ...])
#
# Builds bench_<name> with Google Benchmark; the tests run none of them.
function(kel_add_benchmark name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LIBRARIES;INCLUDES")
    if(arg_UNPARSED_ARGUMENTS)
        message(FATAL_ERROR "kel_add_benchmark(${name}): unknown arguments ${arg_UNPARSED_ARGUMENTS}")
    endif()
    add_executable(bench_${name} ${arg_SOURCES})
    kel_configure_target(bench_${name})
    target_include_directories(bench_${name} PRIVATE ${arg_INCLUDES})
    target_link_libraries(bench_${name} PRIVATE ${arg_LIBRARIES} benchmark::benchmark)
endfunction()
