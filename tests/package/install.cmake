# Installs the build BUILD into PREFIX, afresh, and looks whether anything there still points to the tree SOURCE.
file(REMOVE_RECURSE ${PREFIX})
execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD} --prefix ${PREFIX} OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)

file(GLOB_RECURSE texts ${PREFIX}/*.cmake ${PREFIX}/*.pc ${PREFIX}/*.h)
foreach(text IN LISTS texts)
    file(READ ${text} content)
    foreach(forbidden ${SOURCE} ${BUILD} cJSONConfig find_dependency)
        string(FIND "${content}" ${forbidden} at)
        if(NOT at EQUAL -1)
            message(FATAL_ERROR "${text} mentions ${forbidden}")
        endif()
    endforeach()
endforeach()
