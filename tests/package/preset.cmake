# Configures the preset install of the tree SOURCE in the folder BUILD, without every package that a build of the
# library can do without, and looks at what would be built; then, WITH_CLI11, whether the tool is built, too.
file(REMOVE_RECURSE ${BUILD})

# configure(OPTIONS...): leaves in `said` what configuring prints, and in `steps` what would be done.
function(configure)
    execute_process(COMMAND ${CMAKE_COMMAND} --preset install -B ${BUILD} --no-warn-unused-cli
                            -D CMAKE_CXX_COMPILER=${COMPILER} ${ARGV}
                    WORKING_DIRECTORY ${SOURCE} OUTPUT_VARIABLE said COMMAND_ERROR_IS_FATAL ANY)
    execute_process(COMMAND ${NINJA} -C ${BUILD} -n OUTPUT_VARIABLE steps COMMAND_ERROR_IS_FATAL ANY)
    set(said ${said} PARENT_SCOPE)
    set(steps ${steps} PARENT_SCOPE)
endfunction()

foreach(package GTest CLI11 benchmark OpenSSL Doxygen Python3)
    list(APPEND without -D CMAKE_DISABLE_FIND_PACKAGE_${package}=ON)
endforeach()
configure(${without})
if(NOT said MATCHES "No CLI11: the tool orvu is neither built nor installed \\(Debian: libcli11-dev\\)")
    message(FATAL_ERROR "It does not say that the tool is left out:\n${said}")
endif()
string(REGEX MATCHALL "Building CXX object [^\n]*" compiled "${steps}")
foreach(step IN LISTS compiled)
    if(NOT step MATCHES " CMakeFiles/orvu-objects.dir/")
        message(FATAL_ERROR "It compiles more than the library:\n${step}")
    endif()
endforeach()
if(NOT steps MATCHES "Linking CXX shared library liborvu.so" OR steps MATCHES "Linking CXX executable")
    message(FATAL_ERROR "It does not link the library alone:\n${steps}")
endif()

if(WITH_CLI11)
    configure(-D CMAKE_DISABLE_FIND_PACKAGE_CLI11=OFF)
    if(said MATCHES "No CLI11" OR NOT steps MATCHES "Linking CXX executable tools/orvu/orvu")
        message(FATAL_ERROR "It leaves the tool out:\n${said}")
    endif()
endif()
