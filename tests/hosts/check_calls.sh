#!/bin/sh
# A loop over points that adds, dots and scales is compiled without a call into the library.
# usage: check_calls.sh <compiler> <library> <include folder>
set -eu
compiler=$1
include=$3
here=$(dirname "$0")
object=$(mktemp)
trap 'rm -f "$object"' EXIT

for flags in -O1 -O2 -O3 "-O2 -fno-math-errno -ffp-contract=off" "-O2 -fvisibility=hidden"; do
    # shellcheck disable=SC2086 # the flags are words
    "$compiler" -std=c++17 $flags -I "$include" -c "$here/point_loop.cpp" -o "$object"
    if nm --undefined-only "$object" | c++filt | grep -E 'Cad|cadgeom'; then
        echo "$compiler $flags calls the library for these."
        exit 1
    fi
done
