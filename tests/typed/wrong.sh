#!/bin/sh
# wrong.sh COMPILER FOLDER MACRO TEXT: whether the wrong program of that name does not compile, and one of the first
# lines of what the compiler says has the text.
set -eu
compiler=$1 folder=$2 macro=$3 text=$4
said=$(mktemp)
trap 'rm -f "$said"' EXIT

if LC_ALL=C "$compiler" -std=c++17 -fsyntax-only -D"$macro" -I "$folder/include" "$folder/tests/typed/Wrong.cpp" \
                        >"$said" 2>&1; then
    [ -z "$text" ] && exit
    echo "It compiles, though it is wrong."
    exit 1
fi
cat "$said"
[ -n "$text" ] && grep 'error: ' "$said" | head -n 1 | grep -qF "$text" && head -n 12 "$said" | grep -qF "$text"
