#!/bin/sh
# Makes the Debian packages and compares what they hold with what they should.
# usage: check_packages.sh <cpack> <build folder> <source folder> <configuration>
set -eu
cpack=$1
build=$2
source=$3
config=$4

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

(cd "$build" && "$cpack" --config CPackConfig.cmake -C "$config" -B "$scratch" \
    -D CPACK_PACKAGING_INSTALL_PREFIX=/usr) > "$scratch/cpack.log" || { cat "$scratch/cpack.log"; exit 1; }

# Files of a package by name; folders of the library and versions in file names are left out.
contents() {
    dpkg-deb --fsys-tarfile "$1" | tar --list | grep -v '/$' | sed -E 's,^\./usr/,,; s,^lib/[^/]*-linux-gnu[^/]*/,lib/,' | LC_ALL=C sort
}

contents "$scratch"/libcadgeom1_*.deb | sed -E 's/(libcadgeom\.so\.1)\..*/\1.x/' > "$scratch/runtime.txt"
printf '%s\n' lib/libcadgeom.so.1 lib/libcadgeom.so.1.x share/doc/libcadgeom1/copyright |
    diff -u - "$scratch/runtime.txt"

contents "$scratch"/libcadgeom-dev_*.deb | sed -E 's/(cadgeomTargets)-[a-z]*/\1-config/' > "$scratch/development.txt"
{
    (cd "$source" && find include -name '*.h')
    printf 'lib/cmake/cadgeom/%s.cmake\n' cadgeomConfig cadgeomConfigVersion cadgeomTargets cadgeomTargets-config
    printf '%s\n' lib/libcadgeom.so lib/pkgconfig/cadgeom.pc share/doc/libcadgeom-dev/copyright
} | LC_ALL=C sort | diff -u - "$scratch/development.txt"

depends() {
    dpkg-deb --field "$1" Depends
}
depends "$scratch"/libcadgeom1_*.deb | grep -q 'libc6.*libstdc++6'
depends "$scratch"/libcadgeom-dev_*.deb | grep -q 'libcadgeom1 (= '
dpkg-deb --info "$scratch"/libcadgeom1_*.deb shlibs | grep -q '^libcadgeom 1 libcadgeom1'
