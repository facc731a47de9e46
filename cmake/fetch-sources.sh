#!/usr/bin/env bash
# Fetches the libraries that Debian carries as source only, once, into a cache outside the build folder, and prints
# the cache's path. Each comes from the system's own package source, by package name; nothing of them is committed.
#
#   fetch-sources.sh          what every build compiles by itself
#   fetch-sources.sh windows  also what Debian has built for Linux only
set -euo pipefail

# Source package, where it has the wanted file or folder, its place in the cache.
wanted=(
    "duktape     src/duktape.c       duktape/duktape.c"  # compiled by us with a check of the native stack
    "duktape     src/duktape.h       duktape/duktape.h"
    "duktape     src/duk_config.h    duktape/duk_config.h"
    "r-cran-zip  src/miniz.c         miniz/miniz.c"      # has no package
    "r-cran-zip  src/miniz.h         miniz/miniz.h"
    "cpp-httplib  httplib.h          cpp-httplib/httplib.h"
)
if [ "${1:-}" = windows ]; then
    wanted+=(
        "glew     src/glew.c   glew/glew.c"
        "glew     include/GL   glew/GL"
        "lodepng  lodepng.cpp  lodepng/lodepng.cpp"
        "lodepng  lodepng.h    lodepng/lodepng.h"
        "libdeflate  .         libdeflate"
        "md4c     src/md4c.c   md4c/md4c.c"
        "md4c     src/md4c.h   md4c/md4c.h"
        "tiff     .            tiff"
        "imath    .            imath"
        "openexr  .            openexr"
    )
fi

codename=$(. /etc/os-release && echo "$VERSION_CODENAME")
cache="${XDG_CACHE_HOME:-$HOME/.cache}/quillon/sources-1-$codename"

missing_packages() {
    local package place target
    for line in "${wanted[@]}"; do
        read -r package place target <<<"$line"
        [ -e "$cache/$target" ] || echo "$package"
    done | sort -u
}

mapfile -t missing < <(missing_packages)
if [ "${#missing[@]}" -eq 0 ]; then echo "$cache"; exit 0; fi

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir -p "$work/lists/partial" "$work/parts" "$work/cache/archives/partial" "$cache"

# The system's own entries for this release, repeated as source entries; the two file formats of apt.
entries="$work/parts/quillon.sources"
: >"$entries"
for file in /etc/apt/sources.list.d/*.sources; do
    [ -f "$file" ] || continue
    awk -v RS= -v codename="$codename" '
        $0 ~ "(^|\n)Suites:[^\n]*[ \t]" codename "([ \t\n-]|$)" {
            sub(/(^|\n)Types:[^\n]*/, "\nTypes: deb-src"); sub(/^\n/, ""); print $0 "\n"
        }' "$file" >>"$entries"
done
cat /etc/apt/sources.list /etc/apt/sources.list.d/*.list 2>/dev/null |
    grep -E "^deb (\[[^]]*\] )?[^ ]+ $codename(-[^ ]*)? .*main" | sed 's/^deb /deb-src /' >"$work/parts/quillon.list" || true

apt_options=(-qq -o "Dir::Etc::SourceList=/dev/null" -o "Dir::Etc::SourceParts=$work/parts"
             -o "Dir::State::Lists=$work/lists" -o "APT::Sandbox::User=root" -o "Dir::Cache::pkgcache=" -o "Dir::Cache::srcpkgcache=")
apt-get "${apt_options[@]}" update >&2

for package in "${missing[@]}"; do
    mkdir -p "$work/$package"
    (cd "$work/$package" && apt-get "${apt_options[@]}" source --download-only --tar-only "$package" >&2 &&
         tar xf ./*.orig.tar.*)
done

for line in "${wanted[@]}"; do
    read -r package place target <<<"$line"
    [ -e "$cache/$target" ] && continue
    # "." is the archive's one folder.
    if [ "$place" = . ]; then
        found=$(find "$work/$package" -mindepth 1 -maxdepth 1 -type d)
    else
        found=$(find "$work/$package" -path "*/$place" | sort | head -n 1)
    fi
    [ -n "$found" ] || { echo "quillon: no $place in the source package $package" >&2; exit 1; }
    mkdir -p "$(dirname "$cache/$target")"
    # Under its name only when it is there whole.
    rm -rf "$cache/$target.part"
    cp -r "$found" "$cache/$target.part"
    mv "$cache/$target.part" "$cache/$target"
done
echo "$cache"
