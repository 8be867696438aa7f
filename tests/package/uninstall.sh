#!/bin/sh
# Installs a build and uninstalls it. Fails if an installed file or folder is left behind, or if a
# user's file or a system folder is removed.
#
# usage: uninstall.sh build-directory source-directory
set -eu

build=$1
source=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

cmake --install "$build" --prefix "$work/prefix" >/dev/null
mkdir "$work/prefix/share/doc"
own="$work/prefix/include/toolkit/Own.h"
echo "of the user" >"$own"

cmake "-DMANIFEST=$build/install_manifest.txt" -P "$source/cmake/ToolkitUninstall.cmake"

[ -f "$own" ] || { echo "the user's own file is gone" && exit 1; }
rm "$own"
left=$(find "$work/prefix" -not -type d)
[ -z "$left" ] || { echo "left behind:" && echo "$left" && exit 1; }
left=$(find "$work/prefix" -path '*/cmake/Toolkit' -o -path '*/include/toolkit/core')
[ -z "$left" ] || { echo "folders left behind:" && echo "$left" && exit 1; }
[ -d "$work/prefix/share/doc" ] || { echo "a system folder is gone" && exit 1; }
