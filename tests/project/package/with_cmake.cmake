# Builds and runs the project in SOURCE against the package installed in PREFIX, found by find_package.
set(build ${PREFIX}/../package-cmake)
file(REMOVE_RECURSE ${build})
execute_process(
    COMMAND ${CMAKE_COMMAND} -S ${SOURCE} -B ${build} -G ${GENERATOR} -DCMAKE_CXX_COMPILER=${COMPILER}
            -DCMAKE_PREFIX_PATH=${PREFIX}
    COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${CMAKE_COMMAND} --build ${build} COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${build}/client COMMAND_ERROR_IS_FATAL ANY)
