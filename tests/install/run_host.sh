#!/bin/sh
# Builds and runs the host in a scratch folder outside the tree.
# usage: run_host.sh find_package|pkg_config|subdirectory
# environment: CMAKE, CXX, GENERATOR, SOURCE_DIR, BUILD_DIR, CONFIG, LIBDIR, INCLUDEDIR as the tree was configured
set -eu

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cp -R "$SOURCE_DIR/tests/install/host" "$scratch/host"

# Installs into a prefix and moves it, so that a path written into an installed file shows.
install_and_move() {
    "$CMAKE" --install "$BUILD_DIR" --config "$CONFIG" --prefix "$scratch/staging" > "$scratch/install.log"
    mv "$scratch/staging" "$scratch/prefix"
    if grep -rIlF -e "$scratch" -e "$BUILD_DIR" -e "$SOURCE_DIR" "$scratch/prefix"; then
        echo "These installed files name a folder of the build."
        exit 1
    fi
}

build_with_cmake() {
    "$CMAKE" -S "$scratch/host" -B "$scratch/build" -G "$GENERATOR" -D CMAKE_BUILD_TYPE="$CONFIG" \
        -D CMAKE_CXX_COMPILER="$CXX" "$@"
    "$CMAKE" --build "$scratch/build" --config "$CONFIG" --parallel 2
    host=$scratch/build/host
    if [ -x "$scratch/build/$CONFIG/host" ]; then
        host=$scratch/build/$CONFIG/host
    fi
}

case $1 in
find_package)
    install_and_move
    build_with_cmake -D CMAKE_PREFIX_PATH="$scratch/prefix"
    ;;
pkg_config)
    command -v pkg-config > /dev/null || { echo "pkg-config is missing"; exit 1; }
    install_and_move
    export PKG_CONFIG_PATH="$scratch/prefix/$LIBDIR/pkgconfig"
    flags=$(pkg-config --cflags cadgeom)
    libs=$(pkg-config --libs cadgeom)
    case $flags in *-std=*) echo "the flags choose a language standard: $flags"; exit 1 ;; esac
    case $flags in *-ffp-contract=off*) ;; *) echo "the flags allow fused products: $flags"; exit 1 ;; esac
    host=$scratch/host/host
    # shellcheck disable=SC2086 # the flags are words
    "$CXX" -std=c++17 -O2 $flags "$scratch/host/main.cpp" -o "$host" $libs -Wl,-rpath,"$scratch/prefix/$LIBDIR"
    ;;
subdirectory)
    build_with_cmake -D CADGEOM_SOURCE_DIR="$SOURCE_DIR"
    ;;
*)
    echo "unknown way: $1"
    exit 2
    ;;
esac

"$host" "$scratch/points.bin"
