#!/usr/bin/env bash
# Builds a picture library for Windows, once, into a cache outside the build folder, and prints where it is installed.
#
#   build-windows-library.sh openexr|tiff SOURCES    SOURCES is what fetch-sources.sh printed
set -euo pipefail

library=$1
sources=$2
toolchain="$(cd "$(dirname "$0")" && pwd)/windows.toolchain.cmake"
compiler=$(x86_64-w64-mingw32-g++-posix -dumpfullversion)
case $library in
    openexr) version=$(sed -n 's/^project(OpenEXR VERSION \([0-9.]*\).*/\1/p' "$sources/openexr/CMakeLists.txt") ;;
    tiff) version=$(cat "$sources/tiff/VERSION") ;;
esac
prefix="${XDG_CACHE_HOME:-$HOME/.cache}/quillon/$library-$version-mingw-$compiler"
if [ -d "$prefix" ]; then echo "$prefix"; exit 0; fi

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
echo "building $library $version for Windows, once; this takes minutes" >&2

build() {  # build NAME OPTION...
    local name=$1
    shift
    cmake -S "$sources/$name" -B "$work/$name" -G Ninja -DCMAKE_BUILD_TYPE=Release -DCMAKE_TOOLCHAIN_FILE="$toolchain" \
        -DCMAKE_INSTALL_PREFIX="$prefix.part" -DBUILD_SHARED_LIBS=OFF -DBUILD_TESTING=OFF "$@" >"$work/log" 2>&1 &&
        cmake --build "$work/$name" --target install >>"$work/log" 2>&1 || { tail -n 40 "$work/log" >&2; exit 1; }
}

rm -rf "$prefix.part"
case $library in
    openexr)
        build imath
        build openexr -DImath_DIR="$prefix.part/lib/cmake/Imath" -DOPENEXR_BUILD_TOOLS=OFF -DOPENEXR_INSTALL_EXAMPLES=OFF \
            -DOPENEXR_INSTALL_TOOLS=OFF
        ;;
    tiff)
        build tiff -Dtiff-tools=OFF -Dtiff-tests=OFF -Dtiff-contrib=OFF -Dtiff-docs=OFF -Dld-version-script=OFF \
            -Djpeg=OFF -Djbig=OFF -Dlerc=OFF -Dlzma=OFF -Dzstd=OFF -Dwebp=OFF -Dlibdeflate=OFF -Dcxx=OFF
        ;;
esac
mv "$prefix.part" "$prefix"
echo "$prefix"
