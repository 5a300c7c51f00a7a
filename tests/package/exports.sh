#!/bin/sh
# exports.sh LIBRARY HEADER...: whether the shared library offers what the headers declare for export, and nothing
# beyond: no private member, and nothing of the standard library's.
set -eu
export LC_ALL=C
library=$1
shift

# Names without their parameters: an overload is there with its function. A class's inline constant may be there, too.
offered()
{
    nm -D --defined-only -C "$library" | cut -d ' ' -f 3- | sed 's/(.*//; s/\[abi:cxx11\]//; /::kDataType$/d' | sort -u
}

declared()
{
    awk -f "$(dirname "$0")/exports.awk" "$@" | sort -u
}

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
offered >"$folder/offered"
declared "$@" >"$folder/declared"
missing=$(comm -13 "$folder/offered" "$folder/declared")
strange=$(comm -23 "$folder/offered" "$folder/declared")
[ -z "$missing" ] || printf 'Declared, but not offered:\n%s\n' "$missing"
[ -z "$strange" ] || printf 'Offered, but not declared for it:\n%s\n' "$strange"
[ -z "$missing$strange" ]
