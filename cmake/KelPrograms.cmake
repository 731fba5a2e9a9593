# How examples and benchmarks are declared. Unknown arguments are errors.

# kel_add_example(<name> SOURCES ... LIBRARIES ... [ARGUMENTS ...] [EXPECT <regular expression or file>])
#
# Builds example_<name> and, with the tests, runs it as the test example.<name> in a folder of its own: it must end
# with 0. EXPECT names a file next to the caller that holds the whole standard output, or else a regular expression
# that the output must contain.
function(kel_add_example name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "EXPECT" "SOURCES;LIBRARIES;ARGUMENTS")
    if(arg_UNPARSED_ARGUMENTS)
        message(FATAL_ERROR "kel_add_example(${name}): unknown arguments ${arg_UNPARSED_ARGUMENTS}")
    endif()
    set(target example_${name})
    add_executable(${target} ${arg_SOURCES})
    kel_configure_target(${target})
    target_link_libraries(${target} PRIVATE ${arg_LIBRARIES})
    if(KEL_BUILD_TESTS)
        set(expected "")
        if(arg_EXPECT AND EXISTS ${CMAKE_CURRENT_SOURCE_DIR}/${arg_EXPECT})
            set(expected --output ${CMAKE_CURRENT_SOURCE_DIR}/${arg_EXPECT})
        elseif(arg_EXPECT)
            set(expected --pattern ${arg_EXPECT})
        endif()
        add_test(NAME example.${name}
            COMMAND ${KEL_PYTHON} ${PROJECT_SOURCE_DIR}/tests/support/run_program.py ${expected}
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
