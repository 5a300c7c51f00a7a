# What the tests need in every target: sanitizers, whose first report ends the program, or counters of the lines and
# branches that ran.
set(ORVU_SANITIZE "" CACHE STRING "Sanitizers to build with, such as address,undefined or thread")
option(ORVU_COVERAGE "Count the lines and branches that run" OFF)
option(ORVU_FUZZ "Build the fuzz targets with libFuzzer, which clang has" OFF)

set(ORVU_INSTRUMENTATION "")
if(ORVU_SANITIZE)
    # Without the check of virtual tables: it needs descriptors, which tests use up, and it rejects objects of code
    # without run-time type information, which the library supports.
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
