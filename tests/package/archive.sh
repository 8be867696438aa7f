#!/bin/sh
# Creates the relocatable archive, unpacks it, and moves the unpacked folder. Then builds and runs a
# program against the library in that folder, and tests the gdb printers in it.
#
# usage: archive.sh build-directory compiler libdir source
set -eu

build=$1
compiler=$2
libdir=$3
source=$4
here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

cpack --config "$build/CPackConfig.cmake" -B "$work/archive" >"$work/cpack.log" ||
    { cat "$work/cpack.log" && exit 1; }
mkdir "$work/any place"
tar -xzf "$work"/archive/toolkit-*.tar.gz -C "$work/any place" --strip-components=1
mv "$work/any place" "$work/moved"
"$here/pkg-config-consumer.sh" "$compiler" "$work/moved" "$libdir" "$source" "$work/consumer"
"$here/printers.sh" "$compiler" "$work/moved" "$libdir"
