#!/bin/sh
# Runs the built example host on the settings and the text beside this script, and shows the end of
# the log that it wrote.
#
#     run-demo.sh <path of the host>

set -eu

host=${1:?"the path of the built host is missing"}
here=$(cd "$(dirname "$0")" && pwd)
log_lines=14

echo "\$ host -config examples/host/host.ini -find fog"
report=$("$host" -config "$here/host.ini" -find fog)
printf '%s\n' "$report"

log=$(printf '%s\n' "$report" | sed -n 's/^Log  *//p')
printf '\nThe last lines of %s:\n' "$log"
tail -n "$log_lines" "$log"
