#!/bin/sh
# exports.sh LIBRARY LIST: whether the shared library offers what the list says, and nothing beyond: no private member.
set -eu
export LC_ALL=C
library=$1 list=$2

# Names without their parameters: an overload is there with its function. A class's inline constant may be there, too.
offered()
{
    nm -D --defined-only -C "$library" | cut -d ' ' -f 3- | sed 's/(.*//; s/\[abi:cxx11\]//; /::kDataType$/d' | sort -u
}

expected()
{
    awk '
        function say(name) { print "Orvu::" name }
        function hasTable(name) { say(name "/vtable"); say(name "/typeinfo"); say(name "/typeinfo name") }
        $1 == "message" { hasTable($2); say($2 "::" $2); say($2 "::~" $2); say($2 "::deserialize") }
        $1 == "message" && $2 != "Serializable" { say($2 "::serialize") }  # pure in the base
        $1 == "server" { hasTable($2) }
        $1 ~ /^(message|server|class)$/ { for (i = 3; i <= NF; ++i) say($2 "::" $i) }
        $1 == "function" { say($2) }
        $1 == "c" { print $2 }
    ' "$list" | sed -E 's#^Orvu::(.*)/(.*)#\2 for Orvu::\1#' | sort -u
}

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
offered >"$folder/offered"
expected >"$folder/expected"
missing=$(comm -13 "$folder/offered" "$folder/expected")
strange=$(comm -23 "$folder/offered" "$folder/expected")
[ -z "$missing" ] || printf 'On the list, but not offered:\n%s\n' "$missing"
[ -z "$strange" ] || printf 'Offered, but not on the list:\n%s\n' "$strange"
[ -z "$missing$strange" ]
