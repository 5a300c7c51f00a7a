#!/bin/sh
# headers.sh INCLUDE_FOLDER COMPILER: whether every installed header compiles alone, none needs cJSON's, JsonAccess.h
# serves C as well, Orvu.h includes them all but the typed ones, and a header that gave classes away to others still
# brings them along.
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

"$compiler" -std=c99 -Wall -Wextra -Wpedantic -Werror -fsyntax-only -I "$folder" -x c \
            -include "$folder/orvu/JsonAccess.h" /dev/null

# compiles TEXT: whether the C++ in TEXT does
compiles() { printf '%s\n' "$1" | "$compiler" -std=c++17 -fsyntax-only -I "$folder" -x c++ -; }

# brings HEADER CLASS...
brings()
{
    header=$1
    shift
    for class in "$@"; do
        compiles "#include \"orvu/$header\"
                  const unsigned size = sizeof(Orvu::$class);"
    done
}
brings EventInformation.h BinaryData
brings Files.h BinaryData BinaryDataMultipart EventInfo StreamEventRequest StreamEventDispose
brings Ncl.h EditCommand GingaEditCommand
brings OrvuRestInterface.h SocketServerInfo

"$compiler" -std=c++17 -fsyntax-only -MD -MF "$included" -I "$folder" -x c++ -include "$folder/orvu/Orvu.h" /dev/null
for header in "$folder"/orvu/*.h; do
    case $header in */Typed.h) continue ;; esac
    grep -qF "$header" "$included" || { echo "Orvu.h does not include $header"; exit 1; }
done
