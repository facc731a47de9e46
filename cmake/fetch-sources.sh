#!/usr/bin/env bash
# Fetches the libraries that Debian carries as source only, once, into a cache outside the build folder, and prints
# the cache's path. Each comes from the system's own package source, by package name; nothing of them is committed.
#
#   duktape/    src/duktape.c and its headers, compiled by us with a check of the native stack
#   miniz/      miniz.c and miniz.h, which have no package of their own and travel inside r-cran-zip
set -euo pipefail

codename=$(. /etc/os-release && echo "$VERSION_CODENAME")
cache="${XDG_CACHE_HOME:-$HOME/.cache}/quillon/sources-1-$codename"
wanted=("$cache/duktape/duktape.c" "$cache/duktape/duktape.h" "$cache/duktape/duk_config.h"
        "$cache/miniz/miniz.c" "$cache/miniz/miniz.h")

complete() {
    local file
    for file in "${wanted[@]}"; do [ -s "$file" ] || return 1; done
}

if complete; then echo "$cache"; exit 0; fi

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

fetch() {  # fetch PACKAGE: the upstream archive of a source package, unpacked under $work/PACKAGE
    mkdir -p "$work/$1"
    (cd "$work/$1" && apt-get "${apt_options[@]}" source --download-only --tar-only "$1" >&2 && tar xf ./*.orig.tar.*)
}

take() {  # take PATTERN TARGET: the first file whose path ends so, found below $work
    local found
    found=$(find "$work" -path "*$1" | sort | head -n 1)
    [ -n "$found" ] || { echo "quillon: no $1 in the source package" >&2; exit 1; }
    cp "$found" "$2"
}

mkdir -p "$cache/duktape" "$cache/miniz"
fetch duktape
for name in duktape.c duktape.h duk_config.h; do take "/src/$name" "$cache/duktape/$name"; done
fetch r-cran-zip
for name in miniz.c miniz.h; do take "/src/$name" "$cache/miniz/$name"; done
complete || { echo "quillon: the fetched sources are incomplete" >&2; exit 1; }
echo "$cache"
