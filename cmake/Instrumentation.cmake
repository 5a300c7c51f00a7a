# What is built into every target for the tests' sake: sanitizers, whose first report ends the program, or counters of
# the lines and branches that ran.
set(ORVU_SANITIZE "" CACHE STRING "Sanitizers to build with, such as address,undefined or thread")
option(ORVU_COVERAGE "Count the lines and branches that run" OFF)
option(ORVU_FUZZ "Build the fuzz targets with libFuzzer, which clang has" OFF)

set(ORVU_INSTRUMENTATION "")
if(ORVU_SANITIZE)
    # Not the check of virtual tables: it opens descriptors, which tests take away, and it refuses what the library
    # serves, objects of code without run-time type information.
    list(APPEND ORVU_INSTRUMENTATION -fsanitize=${ORVU_SANITIZE} -fno-sanitize=vptr -fno-sanitize-recover=all
                                     -fno-omit-frame-pointer)
endif()
if(ORVU_COVERAGE)
    list(APPEND ORVU_INSTRUMENTATION --coverage -fprofile-update=atomic)
endif()
if(ORVU_FUZZ)
    list(APPEND ORVU_INSTRUMENTATION -fsanitize=fuzzer-no-link)
endif()
add_compile_options(${ORVU_INSTRUMENTATION})
add_link_options(${ORVU_INSTRUMENTATION})
