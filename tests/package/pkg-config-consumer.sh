#!/bin/sh
# Builds a program against an installed copy with pkg-config only, and runs it.
#
# usage: pkg-config-consumer.sh compiler prefix libdir source program
set -eu

compiler=$1
prefix=$2
libdir=$3
source=$4
program=$5

export PKG_CONFIG_PATH="$prefix/$libdir/pkgconfig"
flags=$(pkg-config --cflags --libs "toolkit >= 1.0")
# The flags are separate words.
# shellcheck disable=SC2086
"$compiler" -std=c++17 -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror \
    "$source" -o "$program" $flags
LD_LIBRARY_PATH="$prefix/$libdir" "$program"
