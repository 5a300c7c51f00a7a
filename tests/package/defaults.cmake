# Configures the tree SOURCE in the folder BUILD: its tests are there by default, but neither where BUILD_TESTING is off
# nor inside another project.

# expect(ANSWER OPTIONS...): what ORVU_TESTS is in a configuration with the options.
function(expect answer)
    file(REMOVE_RECURSE ${BUILD}/built)
    execute_process(COMMAND ${CMAKE_COMMAND} -B ${BUILD}/built -G Ninja -D CMAKE_MAKE_PROGRAM=${NINJA}
                            -D CMAKE_CXX_COMPILER=${COMPILER} -D ORVU_TOOLS=OFF -D ORVU_EXAMPLES=OFF ${ARGN}
                    OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
    file(STRINGS ${BUILD}/built/CMakeCache.txt found REGEX "^ORVU_TESTS:BOOL=")
    if(NOT found STREQUAL "ORVU_TESTS:BOOL=${answer}")
        message(FATAL_ERROR "With ${ARGN}: ${found}")
    endif()
endfunction()

file(WRITE ${BUILD}/outer/CMakeLists.txt
     "cmake_minimum_required(VERSION 3.22)\nproject(Outer CXX)\nadd_subdirectory(${SOURCE} orvu)\n")
expect(ON -S ${SOURCE})
expect(ON -S ${SOURCE} -D BUILD_TESTING=ON)
expect(OFF -S ${SOURCE} -D BUILD_TESTING=OFF)
expect(OFF -S ${BUILD}/outer)
