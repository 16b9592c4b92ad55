#!/bin/sh
# Hosts compiled with flags of their own print what a host prints that calls the library for every operation.
# usage: check_bits.sh <compiler> <library> <include folder>
set -eu
compiler=$1
library=$2
include=$3
here=$(dirname "$0")
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

build_and_run() {
    # shellcheck disable=SC2086 # the flags are words
    "$compiler" -std=c++17 $1 -I "$include" "$here/bits.cpp" -o "$scratch/host" "$library" \
        -Wl,-rpath,"$(dirname "$library")" -ldl
    "$scratch/host"
}

build_and_run -O0 > "$scratch/library.txt"
for symbol in 'CadVector<double, 3>::dot(' 'CadPoint<float, 2>::projectOntoLineParam('; do
    if ! nm --undefined-only "$scratch/host" | c++filt | grep -qF "$symbol"; then
        echo "Without optimising, $compiler does not take $symbol...) from the library."
        exit 1
    fi
done

check() {
    build_and_run "$1" > "$scratch/host.txt"
    if ! diff -u "$scratch/library.txt" "$scratch/host.txt"; then
        echo "A host compiled by $compiler $1 gets other bits than the library."
        exit 1
    fi
}

check "-O2"
check "-O3 -fvisibility=hidden -fvisibility-inlines-hidden"
check "-Os -fno-math-errno"
check "-O2 -ffp-contract=off -DCADGEOM_FP_CONTRACT_OFF"
if [ "$(uname -m)" = x86_64 ] && grep -qw avx2 /proc/cpuinfo; then
    check "-O3 -march=native"
    check "-O2 -mfma"
    check "-O3 -march=haswell -fvisibility=hidden"
    check "-O0 -mfma"
fi
