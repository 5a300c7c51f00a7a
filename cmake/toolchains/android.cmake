# The toolchain file of the Android NDK that the environment names. The preset says what to build for.
if(NOT EXISTS "$ENV{ANDROID_NDK}/build/cmake/android.toolchain.cmake")
    message(FATAL_ERROR "The environment variable ANDROID_NDK must name the folder of an Android NDK "
                        "(there is no '$ENV{ANDROID_NDK}/build/cmake/android.toolchain.cmake').")
endif()
include("$ENV{ANDROID_NDK}/build/cmake/android.toolchain.cmake")
