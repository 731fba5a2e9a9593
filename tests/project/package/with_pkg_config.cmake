# Builds and runs the programs in SOURCE against the package installed in PREFIX, found by pkg-config. Without LIBDIR the
# package is the system's, and neither pkg-config nor the loader needs to be told where it is.
set(build ${WORK}/with-pkg-config)
file(REMOVE_RECURSE ${build})
file(MAKE_DIRECTORY ${build})
if(LIBDIR)
    set(ENV{PKG_CONFIG_PATH} ${PREFIX}/${LIBDIR}/pkgconfig)
    set(ENV{LD_LIBRARY_PATH} ${PREFIX}/${LIBDIR})
endif()

function(build_and_run client package)
    execute_process(COMMAND pkg-config --cflags --libs ${package}
        OUTPUT_VARIABLE flags OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    separate_arguments(flags UNIX_COMMAND ${flags})
    execute_process(COMMAND ${COMPILER} -std=c++17 ${SOURCE}/${client}.cpp -o ${build}/${client} ${flags}
        COMMAND_ERROR_IS_FATAL ANY)
    execute_process(COMMAND ${build}/${client} WORKING_DIRECTORY ${build} COMMAND_ERROR_IS_FATAL ANY)
endfunction()
build_and_run(client meridynfluidskel)
build_and_run(formats_client meridynkelformats)
