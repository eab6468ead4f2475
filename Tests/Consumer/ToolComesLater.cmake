# cmake -DSOURCE=folder -DBUILD=folder -DCOMPILER=compiler -P ToolComesLater.cmake
# A build folder that was configured before the tool's libraries were installed builds the tool once they are there.

function(expect_tool iIsDisabled iExpected)
    execute_process(COMMAND ${CMAKE_COMMAND} -G Ninja -S ${SOURCE} -B ${BUILD} -DCMAKE_CXX_COMPILER=${COMPILER}
        -DTALBASE_BUILD_TESTS=OFF -DTALBASE_BUILD_EXAMPLES=OFF -DCMAKE_DISABLE_FIND_PACKAGE_CLI11=${iIsDisabled}
        OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
    execute_process(COMMAND ${CMAKE_COMMAND} --build ${BUILD} --target help
        OUTPUT_VARIABLE lTargets COMMAND_ERROR_IS_FATAL ANY)
    string(REGEX MATCH "\ntalbase: " lTool "${lTargets}")
    if((lTool AND NOT iExpected) OR (iExpected AND NOT lTool))
        message(FATAL_ERROR "CLI11 disabled: ${iIsDisabled}; tool expected: ${iExpected}\n${lTargets}")
    endif()
endfunction()

file(REMOVE_RECURSE ${BUILD})
expect_tool(ON OFF)
expect_tool(OFF ON)
