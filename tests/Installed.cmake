# What the tests of the installed tree share.

# run(COMMAND...): fails unless it ends with 0; what it printed is in ${output}.
function(run)
    execute_process(COMMAND ${ARGV} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
    message("${output}")
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "Failed with ${result}: ${ARGV}")
    endif()
    set(output "${output}" PARENT_SCOPE)
endfunction()

# build(SOURCE): builds a project in WORK_DIR/build against nothing but the tree that is installed in PREFIX.
function(build source)
    run(${CMAKE_COMMAND} -G ${GENERATOR} -S ${source} -B ${WORK_DIR}/build -DCMAKE_PREFIX_PATH=${PREFIX}
        -DCMAKE_CXX_COMPILER=${CXX_COMPILER} "-DCMAKE_CXX_FLAGS=${CXX_FLAGS}")
    run(${CMAKE_COMMAND} --build ${WORK_DIR}/build)
endfunction()

# expect(WHAT EXPECTED): what the last run() printed, without the line's end.
function(expect what expected)
    string(STRIP "${output}" printed)
    if(NOT printed STREQUAL expected)
        message(FATAL_ERROR "${what}: '${printed}' instead of '${expected}'")
    endif()
endfunction()
