#!/bin/sh
# headers.sh INCLUDE_FOLDER COMPILER: whether every installed header compiles alone, and none needs cJSON's.
set -eu
folder=$1 compiler=$2
included=$(mktemp)
trap 'rm -f "$included"' EXIT

for header in "$folder"/orvu/*.h "$folder"/orvu/typed/*.h; do
    "$compiler" -std=c++17 -Wall -Wextra -Wpedantic -Werror -fsyntax-only -MD -MF "$included" \
                -I "$folder" -x c++ -include "$header" /dev/null
    grep -q "$header" "$included"
    if grep -i cjson "$included"; then
        echo "$header includes cJSON's header"
        exit 1
    fi
done
