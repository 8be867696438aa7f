#!/bin/sh
# Fails when the shared library cannot find a symbol or a library at run time, is not linked with the
# base library of wxWidgets, or needs X11, GTK or a wxWidgets library other than base and net.
#
# usage: run-time-needs.sh library
set -eu

library=$1
export LC_ALL=C

needs=$(ldd -r "$library" 2>&1)
if echo "$needs" | grep -E 'undefined symbol|not found'; then
    exit 1
fi
if ! echo "$needs" | grep -q 'libwx_baseu-'; then
    echo "the library is not linked with the base library of wxWidgets:" && echo "$needs"
    exit 1
fi
if echo "$needs" | grep -E 'libwx_|libgtk|libgdk|libX11' |
    grep -v -E 'libwx_baseu(_net)?-[0-9.]+\.so'; then
    exit 1
fi
