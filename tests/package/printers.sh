#!/bin/sh
# Stops a program in gdb. Fails unless gdb finds the printers of an installed copy with the line for
# ~/.gdbinit from docs/debugging.md.
#
# usage: printers.sh compiler prefix libdir
set -eu

compiler=$1
prefix=$2
libdir=$3
tree=$(cd "$(dirname "$0")/../.." && pwd)
[ -x /usr/bin/gdb ] || { echo "printers: not checked, gdb is not installed" && exit 0; }
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

PKG_CONFIG_PATH="$prefix/$libdir/pkgconfig"
export PKG_CONFIG_PATH
# The flags are separate words.
# shellcheck disable=SC2046
"$compiler" -g -O0 -std=c++17 "$tree/tests/gdb/PrintersProgram.cpp" -o "$work/program" \
    $(pkg-config --cflags --libs toolkit)
printf '[window]\nwidth=800\n' >"$work/settings.ini"

mkdir "$work/home"
sed -n "s|^add-auto-load-safe-path /usr/local/lib$|add-auto-load-safe-path $prefix/$libdir|p" \
    "$tree/docs/debugging.md" >"$work/home/.gdbinit"
HOME="$work/home" XDG_CONFIG_HOME="$work/home" LD_LIBRARY_PATH="$prefix/$libdir" \
    /usr/bin/gdb -batch -ex 'break Stop' -ex "run $work/settings.ini" -ex up -ex 'print version' \
    -ex 'print shared' "$work/program" >"$work/output" 2>&1 </dev/null || true
for line in '= 10\.20\.30\.40$' '= count 2 = {object = 1\.2\.3\.4}$'; do
    grep -q "$line" "$work/output" || { cat "$work/output" && exit 1; }
done
