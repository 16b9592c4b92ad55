#!/bin/sh
# Prints the symbols that a shared library exports, demangled and sorted.
# usage: list_exports.sh <library>
#
# Constructors and destructors have several symbols of one demangled name, and compilers differ in which of them they
# emit, so a name is listed once.
set -eu
nm --dynamic --defined-only --format=posix "$1" | cut -d ' ' -f 1 | c++filt | LC_ALL=C sort -u
