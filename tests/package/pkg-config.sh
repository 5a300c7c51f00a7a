#!/bin/sh
# pkg-config.sh PREFIX README_PROGRAMS COMPILER LEASE_PORT [FLAG...]: builds the programs by a plain call of the
# compiler with what pkg-config says of the installation, and lets them talk.
set -eu
prefix=$1 sources=$2 compiler=$3 lease_port=$4
shift 4

pc=$(dirname "$(find "$prefix" -name orvu.pc)")
export PKG_CONFIG_PATH="$pc"
folder=$sources/build-pkg-config
mkdir -p "$folder"
for program in receiver client publisher; do
    # shellcheck disable=SC2046 # words, as pkg-config means them
    "$compiler" -std=c++17 "$@" "$sources/$program.cpp" -o "$folder/$program" $(pkg-config --cflags --libs orvu)
done

LD_LIBRARY_PATH=$(pkg-config --variable=libdir orvu) "$lease_port" "$(dirname "$0")/exchange.sh" "$folder"
