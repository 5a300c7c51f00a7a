# 32-bit ARM with Debian's cross compiler, or clang beside it where CMAKE_CXX_COMPILER names that; libraries come from
# Debian's armhf packages, programs run under qemu.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR armv7l)
if(NOT DEFINED CMAKE_CXX_COMPILER)
    set(CMAKE_CXX_COMPILER arm-linux-gnueabihf-g++)
endif()
set(CMAKE_CXX_COMPILER_TARGET arm-linux-gnueabihf)  # which clang needs to be told
set(CMAKE_LIBRARY_ARCHITECTURE arm-linux-gnueabihf)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-arm)
set(ENV{PKG_CONFIG_LIBDIR} /usr/lib/arm-linux-gnueabihf/pkgconfig:/usr/share/pkgconfig)
