#!/bin/sh
# links.sh LIBRARY [NAME]: whether the shared library has its versioned name and links nothing but cJSON and the C++ run
# time, and NAME, and whether it stays loaded.
set -eu
library=$1 also=${2:-libcjson}

soname=$(objdump -p "$library" | awk '$1 == "SONAME" { print $2 }')
[ "$soname" = liborvu.so.1 ] || { echo "It calls itself '$soname'."; exit 1; }

strange=$(objdump -p "$library" | awk '$1 == "NEEDED" { print $2 }' |
    grep -vE '^(libcjson|'"$also"'|libstdc\+\+|libm|libgcc_s|libc|ld-linux.*|lib[atu][a-z]*san)\.so(\..*)?$' || true)
[ -z "$strange" ] || { echo "It links: $strange"; exit 1; }
objdump -p "$library" | grep -q 'NEEDED  *libcjson.so'
# A thread of the library may still be ending when the application has unloaded it: it stays.
readelf --dynamic "$library" | grep -q NODELETE
