# What `cmake --install` installs: the library, its headers, the CMake package, the pkg-config file, the
# schemas, the pages and the examples with the browser module. The tool installs itself.
include(CMakePackageConfigHelpers)

set(ORVU_CMAKE_FOLDER ${CMAKE_INSTALL_LIBDIR}/cmake/Orvu)
install(TARGETS orvu EXPORT Orvu LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY include/orvu DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} FILES_MATCHING PATTERN "*.h" PATTERN "*.def")

# Users of the library need no further CMake packages, so the list of its targets is the whole package.
install(EXPORT Orvu FILE OrvuConfig.cmake NAMESPACE Orvu:: DESTINATION ${ORVU_CMAKE_FOLDER})
write_basic_package_version_file(OrvuConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/OrvuConfigVersion.cmake DESTINATION ${ORVU_CMAKE_FOLDER})

# The pkg-config file derives its prefix from its own place, so that an installation can be moved.
set(ORVU_PC_LIBDIR "\${prefix}/${CMAKE_INSTALL_LIBDIR}")
set(ORVU_PC_INCLUDEDIR "\${prefix}/${CMAKE_INSTALL_INCLUDEDIR}")
file(RELATIVE_PATH ORVU_PC_PREFIX ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" ORVU_PC_PREFIX ${ORVU_PC_PREFIX})
configure_file(cmake/orvu.pc.in orvu.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/orvu.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

install(DIRECTORY schemas DESTINATION ${CMAKE_INSTALL_DATADIR}/orvu FILES_MATCHING PATTERN "*.schema.json")

# The pages link each other and the examples, so they keep their relative places.
install(FILES LICENSE README.md CHANGELOG.md CONTRIBUTING.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(DIRECTORY docs DESTINATION ${CMAKE_INSTALL_DOCDIR}
        FILES_MATCHING PATTERN "*.md" PATTERN "*.svg" PATTERN reference.md EXCLUDE)
install(DIRECTORY examples DESTINATION ${CMAKE_INSTALL_DOCDIR})
