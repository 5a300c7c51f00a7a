#!/bin/sh
# headers.sh INCLUDE_FOLDER COMPILER: whether every installed header compiles alone, and none needs cJSON's.
set -eu
folder=$1 compiler=$2

for header in "$folder"/orvu/*.h; do
    "$compiler" -std=c++17 -Wall -Wextra -Wpedantic -Werror -fsyntax-only -I "$folder" -x c++ -include "$header" /dev/null
    if "$compiler" -std=c++17 -M -I "$folder" -x c++ "$header" | grep -i cjson; then
        echo "$header includes cJSON's header"
        exit 1
    fi
done
