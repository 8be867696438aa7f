#!/bin/sh
# Runs the built mailtool on the example messages.
#
#     run-demo.sh <path of the mailtool>

set -eu

mailtool=${1:?"the path of the built mailtool is missing"}
here=$(cd "$(dirname "$0")" && pwd)
parts=$(mktemp)
trap 'rm -f "$parts"' EXIT

for message in quoted attachment longheader; do
    echo "\$ mailtool examples/mailtool/messages/$message.eml"
    "$mailtool" "$here/messages/$message.eml" "$parts"
    echo
done
