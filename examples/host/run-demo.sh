#!/bin/sh
# Shows the installed example host: a single run, then four commands sent to a serving host. Their
# input is in this repository and in the archive installed with the host.
#
#     run-demo.sh <path of the installed host>

set -eu

host=${1:?"the path of the installed host is missing"}
root=$(cd "$(dirname "$0")/../.." && pwd)
work=$(mktemp -d)
server=
log_lines=16
result_lines=5

# Leaves no files and no process behind, however the demo ends.
clean_up() {
    [ -z "$server" ] || kill -KILL "$server" 2>/dev/null || true
    rm -rf "$work"
}
trap clean_up EXIT
trap 'exit 1' HUP INT TERM

fail() {
    echo "host: demo: $*" >&2
    cat "$work/server.txt" >&2 || true
    exit 1
}

# Repeats a command until it succeeds. Fails after about a minute, or when the serving host has ended.
await() {
    tries=0
    until "$@" 2>/dev/null; do
        tries=$((tries + 1))
        if [ "$tries" -ge 1200 ] || ! kill -0 "$server" 2>/dev/null; then
            fail "gave up waiting for: $*"
        fi
        sleep 0.05
    done
}

# Prints the words as a user would type them.
print_typed() {
    for word in "$@"; do
        case $word in
        *[!A-Za-z0-9_./-]*) printf " '%s'" "$word" ;;
        *) printf ' %s' "$word" ;;
        esac
    done
}

# Sends a command and shows the first lines of its result.
show() {
    printf '\n$ host'
    print_typed "$@"
    printf ' -out result.txt\n'
    rm -f "$work/result.txt"
    "$host" "$@" -out "$work/result.txt"
    await test -e "$work/result.txt"
    head -n "$result_lines" "$work/result.txt"
    rest=$(($(wc -l <"$work/result.txt") - result_lines))
    [ "$rest" -le 0 ] || echo "... and $rest more lines"
}

cd "$root"
echo "\$ host -find fog"
report=$("$host" -find fog)
printf '%s\n' "$report"
log=$(printf '%s\n' "$report" | sed -n 's/^Log  *//p')
texts=$(printf '%s\n' "$report" | sed -n 's/^Configuration path  *//p')/texts.zip

printf '\n$ host -serve &\n'
"$host" -serve >"$work/server.txt" 2>&1 &
server=$!
await grep '^Serving at ' "$work/server.txt"

show list -archive "$texts"
show search -archive "$texts" -pattern '(?i)\b(fog|lock)\b.*\b(harbour|held)\b'
show find -folder examples -files '*.eml' -deep -pattern '^(Subject|Date): '
show encode -in examples/host/logbook.txt -as quoted-printable

printf '\n$ host -quit\n'
"$host" -quit
status=0
wait "$server" || status=$?
server=
[ "$status" -eq 0 ] || fail "the serving host exited with $status"
socket=$(sed -n 's/^Serving at //p' "$work/server.txt")
[ ! -e "$socket" ] || fail "$socket still exists"

printf '\nOutput of the serving host:\n'
sed -n '/^Serving at /,$p' "$work/server.txt"
printf '\nThe last lines of %s:\n' "$log"
tail -n "$log_lines" "$log"
