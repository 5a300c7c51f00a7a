# Configures the preset install of the tree SOURCE in the folder BUILD, without every package that a build of the library
# can do without, and looks at what would be built.
file(REMOVE_RECURSE ${BUILD})
foreach(package GTest CLI11 benchmark OpenSSL Doxygen Python3)
    list(APPEND without -D CMAKE_DISABLE_FIND_PACKAGE_${package}=ON)
endforeach()
execute_process(COMMAND ${CMAKE_COMMAND} --preset install -B ${BUILD} --no-warn-unused-cli
                        -D CMAKE_CXX_COMPILER=${COMPILER} ${without}
                WORKING_DIRECTORY ${SOURCE} OUTPUT_VARIABLE said COMMAND_ERROR_IS_FATAL ANY)
if(NOT said MATCHES "No CLI11: the tool orvu is neither built nor installed \\(Debian: libcli11-dev\\)")
    message(FATAL_ERROR "It does not say that the tool is left out:\n${said}")
endif()

execute_process(COMMAND ${NINJA} -C ${BUILD} -n OUTPUT_VARIABLE steps COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "Building CXX object [^\n]*" compiled "${steps}")
foreach(step IN LISTS compiled)
    if(NOT step MATCHES " CMakeFiles/orvu-objects.dir/")
        message(FATAL_ERROR "It compiles more than the library:\n${step}")
    endif()
endforeach()
if(NOT steps MATCHES "Linking CXX shared library liborvu.so" OR steps MATCHES "Linking CXX executable")
    message(FATAL_ERROR "It does not link the library alone:\n${steps}")
endif()
list(LENGTH compiled count)
message(STATUS "${count} files are compiled")
