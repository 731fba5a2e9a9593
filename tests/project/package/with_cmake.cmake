# Builds and runs the programs in SOURCE against the package installed in PREFIX, found by find_package.
set(build ${WORK}/with-cmake)
file(REMOVE_RECURSE ${build})
execute_process(
    COMMAND ${CMAKE_COMMAND} -S ${SOURCE} -B ${build} -G ${GENERATOR} -DCMAKE_CXX_COMPILER=${COMPILER}
            -DCMAKE_PREFIX_PATH=${PREFIX}
    COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${CMAKE_COMMAND} --build ${build} COMMAND_ERROR_IS_FATAL ANY)
foreach(client client formats_client)
    execute_process(COMMAND ${build}/${client} WORKING_DIRECTORY ${build} COMMAND_ERROR_IS_FATAL ANY)
endforeach()
