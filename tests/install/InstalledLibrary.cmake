# Installs the build into an empty folder, builds the consumer against it and runs it there.
function(step what)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "${what} failed (${result}):\n${output}")
    endif()
endfunction()

file(REMOVE_RECURSE ${SCRATCH})
step("installing" ${CMAKE_COMMAND} --install ${BUILD} --prefix ${SCRATCH}/prefix)
set(flags)
if(SANITIZE)
    set(flags -fsanitize=${SANITIZE})
endif()
step("configuring the consumer" ${CMAKE_COMMAND} -S ${CONSUMER} -B ${SCRATCH}/build -G ${GENERATOR}
    -DCMAKE_BUILD_TYPE=${BUILD_TYPE} -DCMAKE_PREFIX_PATH=${SCRATCH}/prefix "-DCMAKE_CXX_FLAGS=${flags}")
step("building the consumer" ${CMAKE_COMMAND} --build ${SCRATCH}/build)
step("running the consumer" ${SCRATCH}/build/consumer)

file(GLOB_RECURSE strangers ${SCRATCH}/prefix/include/*.cpp)
if(strangers)
    message(FATAL_ERROR "These do not belong among the installed headers: ${strangers}")
endif()
