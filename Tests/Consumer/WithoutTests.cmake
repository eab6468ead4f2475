# cmake -DSOURCE=folder -DBUILD=folder -DCOMPILER=compiler -P WithoutTests.cmake
# Who configures without tests, as `./dev run` does, hears nothing of tests, also where no other library is found.

file(REMOVE_RECURSE ${BUILD})
execute_process(COMMAND ${CMAKE_COMMAND} -G Ninja -S ${SOURCE} -B ${BUILD} -DCMAKE_CXX_COMPILER=${COMPILER}
    -DTALBASE_BUILD_TESTS=OFF -DCMAKE_IGNORE_PATH=/usr/include
    OUTPUT_VARIABLE lSaid ERROR_VARIABLE lSaid COMMAND_ERROR_IS_FATAL ANY)
if(lSaid MATCHES "tests" OR NOT lSaid MATCHES "Generating done")
    message(FATAL_ERROR "configuring without tests says: ${lSaid}")
endif()
