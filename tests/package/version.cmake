# Whether the browser module and the newest release in the changelog of the tree SOURCE have the version VERSION.
file(READ ${SOURCE}/examples/browser/package.json module)
string(JSON of_the_module GET "${module}" version)
file(STRINGS ${SOURCE}/CHANGELOG.md releases REGEX "^## \\[[0-9]")
list(GET releases 0 newest)
string(REGEX MATCH "[0-9.]+" of_the_changelog "${newest}")
foreach(version ${of_the_module} ${of_the_changelog})
    if(NOT version STREQUAL VERSION)
        message(FATAL_ERROR "The library has version ${VERSION}, its browser module ${of_the_module}, "
                            "the newest release in the changelog ${of_the_changelog}.")
    endif()
endforeach()
