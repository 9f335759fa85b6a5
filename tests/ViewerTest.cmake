# Builds examples/viewer against the tree that is installed in PREFIX, opens the store of examples/editing with it, and looks at the
# picture of its window.
cmake_minimum_required(VERSION 3.25)
file(REMOVE_RECURSE ${WORK_DIR})
include(${CMAKE_CURRENT_LIST_DIR}/Installed.cmake)
find_program(python3 python3 REQUIRED)
find_program(xvfb xvfb-run)
build(${SOURCE_DIR})

set(display)
set(platform)
if(xvfb)
    set(display ${xvfb} -a -s "-screen 0 1280x1024x24")
else()
    message("There is no xvfb-run (scripts/setup): the viewer's windows are those of Qt's platform 'offscreen'.")
    set(platform -platform offscreen)
endif()
# PPM, so that the pixels can be read without a decoder. The place is in lane 1 of who comes from the north.
set(picture ${WORK_DIR}/viewer.ppm)
run(${display} ${WORK_DIR}/build/viewer ${STORE} --click -5,150 --picture ${picture} ${platform})
run(${python3} ${CMAKE_CURRENT_LIST_DIR}/viewer_pixels.py ${picture})

# What is no store is told in one sentence.
execute_process(COMMAND ${display} ${WORK_DIR}/build/viewer ${WORK_DIR}/no.db ${platform} RESULT_VARIABLE result
                ERROR_VARIABLE output OUTPUT_VARIABLE output)
if(NOT result EQUAL 1 OR NOT output MATCHES "no.db")
    message(FATAL_ERROR "A store that is not there: ${result}, '${output}'")
endif()
