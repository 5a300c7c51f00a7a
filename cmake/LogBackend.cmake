# Where log lines go, the one switch between platforms: Android's log through liblog, or what ORVU_LOG names at run time.
set(ORVU_LOG_BACKEND auto CACHE STRING "Where log lines go: android (liblog), posix, or auto: by the target system")
set_property(CACHE ORVU_LOG_BACKEND PROPERTY STRINGS auto android posix)
if(NOT ORVU_LOG_BACKEND MATCHES "^(auto|android|posix)$")
    message(FATAL_ERROR "ORVU_LOG_BACKEND is '${ORVU_LOG_BACKEND}'; it must be auto, android or posix.")
endif()

# orvu_log_backend(TARGET): gives the target, which compiles transport/Log.cpp, its log.
function(orvu_log_backend target)
    if(ORVU_LOG_BACKEND STREQUAL posix OR (ORVU_LOG_BACKEND STREQUAL auto AND NOT ANDROID))
        return()
    endif()
    find_library(ORVU_LIBLOG log PATH_SUFFIXES android)
    if(NOT ORVU_LIBLOG)
        message(FATAL_ERROR "Android's log was asked for, but there is no liblog. On Debian it is the package "
                            "android-liblog-dev:\n  sudo apt-get install android-liblog-dev")
    endif()
    target_compile_definitions(${target} PRIVATE ORVU_LOG_ANDROID)
    target_link_libraries(${target} PUBLIC ${ORVU_LIBLOG})
endfunction()
