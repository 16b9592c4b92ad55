#!/bin/sh
# Holds docs/same_bits.md against the objects of the library: the functions of the C library that each object calls are those
# in its row, and every public function in the table stands in a public header.
# usage: check_same_bits.sh <nm> <source dir> <folder of the objects of src/>
set -eu
nm=$1
source_dir=$2
objects=$3
page=$source_dir/docs/same_bits.md
unrounded='sin|cos|tan|sincos|asin|acos|atan|atan2|sinh|cosh|tanh|pow|exp|exp2|exp10|expm1|log|log2|log10|log1p|hypot|cbrt'
failures=0

fail() {
    echo "$1" >&2
    failures=$((failures + 1))
}

# The functions that an object calls, by their double names, as the page lists them.
called_by() {
    "$nm" -u "$1" | sed 's/^[ U]*//; s/@.*//' | grep -xE "($unrounded)f?" | sed 's/f$//' |
        sed 's/^sincos$/sin\ncos/' | sort -u | paste -s -d , - | sed 's/,/, /g'
}

row_of() {
    grep -F "| \`$1\` |" "$page" | cut -d '|' -f 3 | sed 's/^ *//; s/ *$//'
}

count=0
for source in "$source_dir"/src/*/*.cpp; do
    name=${source#"$source_dir"/src/}
    object=$objects/$name.o
    [ -f "$object" ] || { fail "there is no object of $name"; continue; }
    count=$((count + 1))
    called=$(called_by "$object" || true)
    [ "$called" = "$(row_of "$name")" ] || fail "$name calls '$called', the page says '$(row_of "$name")'"
done
[ "$count" -gt 0 ] || fail "there are no objects"

for name in $(grep -E '^\| `[a-z]+/' "$page" | cut -d '|' -f 4 | tr -d ' `' | tr , ' '); do
    grep -rqwF "$name" "$source_dir/include/cadgeom" || fail "no public header declares $name"
done
for name in $(grep -E '^\| `[a-z]+/' "$page" | cut -d '|' -f 2 | tr -d ' `'); do
    [ -f "$source_dir/src/$name" ] || fail "there is no source $name"
done

[ "$failures" -eq 0 ]
