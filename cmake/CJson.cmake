# Defines the target cjson, the system's cJSON: by its CMake package or, where that is missing, by pkg-config.
# The code includes <cjson/cJSON.h>.
set(ORVU_CJSON_AT_LEAST 1.7.12)

if(NOT TARGET cjson)
    find_package(cJSON ${ORVU_CJSON_AT_LEAST} CONFIG QUIET)
endif()
if(NOT TARGET cjson)
    find_package(PkgConfig QUIET)
    if(PKG_CONFIG_FOUND)
        pkg_check_modules(ORVU_CJSON QUIET IMPORTED_TARGET libcjson>=${ORVU_CJSON_AT_LEAST})
    endif()
    if(NOT ORVU_CJSON_FOUND)
        message(FATAL_ERROR "cJSON ${ORVU_CJSON_AT_LEAST} or later is needed. On Debian, install libcjson-dev:\n"
                            "  sudo apt-get install libcjson-dev\n"
                            "If it is in a folder of its own, name that folder: -DCMAKE_PREFIX_PATH=<folder>")
    endif()
    add_library(cjson INTERFACE IMPORTED)
    target_link_libraries(cjson INTERFACE PkgConfig::ORVU_CJSON)
endif()
