#!/usr/bin/env bash
# Builds the picture library OpenEXR for Windows, once, into a cache outside the build folder, and prints where it is
# installed.
#
#   build-openexr.sh SOURCES    SOURCES is what fetch-sources.sh printed
set -euo pipefail

sources=$1
toolchain="$(cd "$(dirname "$0")" && pwd)/windows.toolchain.cmake"
compiler=$(x86_64-w64-mingw32-g++-posix -dumpfullversion)
version=$(sed -n 's/^project(OpenEXR VERSION \([0-9.]*\).*/\1/p' "$sources/openexr/CMakeLists.txt")
prefix="${XDG_CACHE_HOME:-$HOME/.cache}/quillon/openexr-$version-mingw-$compiler"
if [ -d "$prefix" ]; then echo "$prefix"; exit 0; fi

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
echo "building OpenEXR $version for Windows, once; this takes minutes" >&2

build() {  # build NAME OPTION...
    local name=$1
    shift
    cmake -S "$sources/$name" -B "$work/$name" -G Ninja -DCMAKE_BUILD_TYPE=Release -DCMAKE_TOOLCHAIN_FILE="$toolchain" \
        -DCMAKE_INSTALL_PREFIX="$prefix.part" -DBUILD_SHARED_LIBS=OFF -DBUILD_TESTING=OFF "$@" >"$work/log" 2>&1 &&
        cmake --build "$work/$name" --target install >>"$work/log" 2>&1 || { tail -n 40 "$work/log" >&2; exit 1; }
}

rm -rf "$prefix.part"
build imath
build openexr -DImath_DIR="$prefix.part/lib/cmake/Imath" -DOPENEXR_BUILD_TOOLS=OFF -DOPENEXR_INSTALL_EXAMPLES=OFF \
    -DOPENEXR_INSTALL_TOOLS=OFF
mv "$prefix.part" "$prefix"
echo "$prefix"
