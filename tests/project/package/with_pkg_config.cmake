# Builds and runs the program in SOURCE against the package installed in PREFIX, found by pkg-config.
set(ENV{PKG_CONFIG_PATH} ${PREFIX}/${LIBDIR}/pkgconfig)
execute_process(COMMAND pkg-config --cflags --libs meridynfluidskel
    OUTPUT_VARIABLE flags OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
separate_arguments(flags UNIX_COMMAND ${flags})
set(client ${PREFIX}/../package-pkg-config-client)
execute_process(COMMAND ${COMPILER} -std=c++17 ${SOURCE}/client.cpp -o ${client} ${flags} COMMAND_ERROR_IS_FATAL ANY)
set(ENV{LD_LIBRARY_PATH} ${PREFIX}/${LIBDIR})
execute_process(COMMAND ${client} COMMAND_ERROR_IS_FATAL ANY)
