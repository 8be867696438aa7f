#!/bin/sh
# Compares the symbols that the library exports with the symbols file of the Debian package.
# --update rewrites the file.
#
# usage: debian-symbols.sh [--update] library symbols-file
set -eu

update=no
if [ "$1" = --update ]; then
    update=yes
    shift
fi
library=$1
symbols=$2
version=$(sed -n 's/^ *VERSION //p' "$(dirname "$0")/../../CMakeLists.txt")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export LC_ALL=C

# Marks weak and unique symbols as optional: the compiler decides which type information, inline
# functions and template instances exist.
{
    echo "libtoolkit.so.1 libtoolkit1 #MINVER#"
    echo "* Build-Depends-Package: libtoolkit-dev"
    nm --dynamic --defined-only "$library" |
        awk '{ print ($2 ~ /^[VWu]$/ ? " (optional)" : " ") $3 "@Base" }' | sort
} >"$work/symbols"
if [ "$update" = yes ]; then
    sed "/@Base/s/\$/ $version/" "$work/symbols" >"$symbols"
    exit
fi
sed 's/@Base .*/@Base/' "$symbols" | sort >"$work/expected"
sort "$work/symbols" >"$work/found"
# Optimised builds may lack optional symbols.
comm -3 "$work/expected" "$work/found" | grep -v '^ (optional)' >"$work/differences" || exit 0
echo "Only in the symbols file, or (indented) only in the library:"
cat "$work/differences"
exit 1
