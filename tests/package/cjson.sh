#!/bin/sh
# cjson.sh SOURCE_FOLDER: whether the library's sources, comments aside, use cJSON in the bridge and the accessors
# alone.
set -eu
folder=$1
found=$(mktemp)
trap 'rm -f "$found"' EXIT

# What is left of a file without its comments. Texts stay, so that a "//" in one of them is none.
without_comments() {
    awk '
        {
            line = $0; left = ""
            while (line != "") {
                if (inside) {
                    at = index(line, "*/")
                    if (!at) break
                    line = substr(line, at + 2); inside = 0
                } else if (match(line, /^"([^"\\]|\\.)*"/) || match(line, /^\047([^\047\\]|\\.)*\047/)) {
                    left = left substr(line, 1, RLENGTH); line = substr(line, RLENGTH + 1)
                } else if (substr(line, 1, 2) == "//") {
                    break
                } else if (substr(line, 1, 2) == "/*") {
                    line = substr(line, 3); inside = 1
                } else {
                    left = left substr(line, 1, 1); line = substr(line, 2)
                }
            }
            print left
        }' "$1"
}

# uses_cjson FILE: the lines that name it.
uses_cjson() {
    without_comments "$1" | grep -nE '(^|[^A-Za-z0-9_])cJSON(_[A-Za-z0-9_]+|[^A-Za-z0-9_]|$)|cjson/cJSON\.h'
}

# The search itself must find what there is to find.
printf '%s\n' '/* cJSON* */ int cJSONReads; // cJSON_Parse' > "$found"
! uses_cjson "$found" > /dev/null || { echo "It finds cJSON in comments."; exit 1; }
for use in 'cJSON_Parse(t)' 'const cJSON* a' 'cJSON& b' 'struct cJSON;' '#include <cjson/cJSON.h>' \
           '"//" /* */ cJSON *c'; do
    printf '%s\n' "$use" > "$found"
    uses_cjson "$found" > /dev/null || { echo "It does not find: $use"; exit 1; }
done
uses_cjson "$folder/messages/core/CJsonBridge.cpp" > /dev/null || { echo "The bridge has gone elsewhere."; exit 1; }

strange=0
for file in $(find "$folder/messages" "$folder/transport" -name '*.h' -o -name '*.cpp' -o -name '*.def'); do
    case $file in
        */messages/core/CJsonBridge.h | */messages/core/CJsonBridge.cpp | */messages/core/JsonAccess.cpp) continue ;;
    esac
    if uses_cjson "$file" > "$found"; then
        echo "$file uses cJSON:"
        cat "$found"
        strange=1
    fi
done
exit $strange
