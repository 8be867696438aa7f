#!/bin/sh
# Runs the demo with a copy of the installed host under a unique name, so that its log and its socket
# have unique names, too.
#
# usage: host-demo.sh <the demo> <prefix of the installed host>
set -eu

folder=$(mktemp -d /tmp/toolkit-test-XXXXXX)
name=$(basename "$folder")
# The name of the log file consists of the path and name of the program and the user, in lower case.
trap 'rm -rf "$folder" "/tmp/"*"$(echo "$name" | tr "[:upper:]" "[:lower:]")"*.qvlog' EXIT
cp -R "$2/bin" "$2/share" "$folder"
mv "$folder/bin/host" "$folder/bin/$name"
mv "$folder/share/host" "$folder/share/$name"
HOME=$folder LC_ALL=C.UTF-8 "$1" "$folder/bin/$name"
