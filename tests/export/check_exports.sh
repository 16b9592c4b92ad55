#!/bin/sh
# Fails when a shared library exports other symbols than a list holds.
# usage: check_exports.sh <library> <list>
set -eu
actual=$(mktemp)
trap 'rm -f "$actual"' EXIT
sh "$(dirname "$0")/list_exports.sh" "$1" > "$actual"

if grep -E '^([^(]* )?(std|__gnu_cxx)::[^(]*\(|cadgeom::detail|\(anonymous namespace\)' "$actual"; then
    echo "These symbols are internal and must not be exported."
    exit 1
fi
if ! diff -u "$2" "$actual"; then
    echo "The exported symbols differ from $2."
    echo "When that is intended, run scripts/update-exports and say in the commit whether the ABI number moves."
    exit 1
fi
