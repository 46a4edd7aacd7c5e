# Installs the build into an empty folder, builds the consumer against it and runs it there.
function(step what)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "${what} failed (${result}):\n${output}")
    endif()
    set(output "${output}" PARENT_SCOPE)
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

step("configuring the minimal host" ${CMAKE_COMMAND} -S ${EXAMPLE} -B ${SCRATCH}/example -G ${GENERATOR}
    -DCMAKE_BUILD_TYPE=${BUILD_TYPE} -DCMAKE_PREFIX_PATH=${SCRATCH}/prefix "-DCMAKE_CXX_FLAGS=${flags}")
step("building the minimal host" ${CMAKE_COMMAND} --build ${SCRATCH}/example)
find_program(xvfb xvfb-run)
if(xvfb)
    # A project of its own, so that nothing else is looked at or locked.
    step("importing a project" ${BUILD}/bin/kxviewer import ${SAMPLE} ${SCRATCH}/project)
    step("running the minimal host" ${CMAKE_COMMAND} -E env QT_QPA_PLATFORM=xcb LIBGL_ALWAYS_SOFTWARE=1
        ${xvfb} -a -s "-screen 0 1280x1024x24" ${SCRATCH}/example/minimal-host ${SCRATCH}/project ${SCRATCH}/picture.png)
    # What the page for hosts leaves out would be missing here.
    if(output MATCHES "TypeError|ReferenceError|is not defined|is not a function|is not installed|is not a type|Unable to assign")
        message(FATAL_ERROR "The minimal host lacks something:\n${output}")
    endif()
    if(NOT EXISTS ${SCRATCH}/picture.png)
        message(FATAL_ERROR "The minimal host has painted no picture")
    endif()
else()
    message("The minimal host was built and not run, since there is no xvfb-run")
endif()

file(GLOB_RECURSE strangers ${SCRATCH}/prefix/include/*.cpp)
if(strangers)
    message(FATAL_ERROR "These do not belong among the installed headers: ${strangers}")
endif()
