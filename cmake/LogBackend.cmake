# Where log lines go, the only switch between platforms: Android's log through liblog, or the place that ORVU_LOG names
# at run time.
set(ORVU_LOG_BACKEND auto CACHE STRING "Where log lines go: android (liblog), posix, or auto: by the target system")
set_property(CACHE ORVU_LOG_BACKEND PROPERTY STRINGS auto android posix)
if(NOT ORVU_LOG_BACKEND MATCHES "^(auto|android|posix)$")
    message(FATAL_ERROR "ORVU_LOG_BACKEND is '${ORVU_LOG_BACKEND}'; it must be auto, android or posix.")
endif()

# orvu_android_log(TARGET): lets the target, which compiles log/Log.cpp, write to Android's log. On other systems
# this needs Debian's build of liblog.
function(orvu_android_log target)
    target_compile_definitions(${target} PRIVATE ORVU_LOG_ANDROID)
    if(ANDROID)
        target_link_libraries(${target} PUBLIC log)
        return()
    endif()
    find_library(ORVU_LIBLOG log PATH_SUFFIXES android)
    find_path(ORVU_LIBLOG_HEADERS android/log.h PATH_SUFFIXES android)
    if(NOT ORVU_LIBLOG OR NOT ORVU_LIBLOG_HEADERS)
        message(FATAL_ERROR "Android's log needs liblog, which was not found. On Debian it is the package "
                            "android-liblog-dev:\n  sudo apt-get install android-liblog-dev")
    endif()
    target_include_directories(${target} SYSTEM PRIVATE ${ORVU_LIBLOG_HEADERS})
    target_link_libraries(${target} PUBLIC ${ORVU_LIBLOG})
endfunction()

if(ORVU_LOG_BACKEND STREQUAL android OR (ORVU_LOG_BACKEND STREQUAL auto AND ANDROID))
    set(ORVU_LOGS_TO_ANDROID ON)
else()
    set(ORVU_LOGS_TO_ANDROID OFF)
endif()
