#!/bin/sh
# Runs the demo of a copy of the installed host whose name nobody else's host has: the name makes the
# paths of the log and of the socket, and tells one application from another.
#
# usage: host-demo.sh <the demo> <prefix of the installed host>
set -eu

folder=$(mktemp -d /tmp/toolkit-test-XXXXXX)
name=$(basename "$folder")
trap 'rm -rf "$folder" "$folder".*' EXIT
cp -R "$2/bin" "$2/share" "$folder"
mv "$folder/bin/host" "$folder/bin/$name"
mv "$folder/share/host" "$folder/share/$name"
HOME=$folder LC_ALL=C.UTF-8 "$1" "$folder/bin/$name"
