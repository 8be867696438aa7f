#!/bin/sh
# Extracts the program, its project and their commands from the README, and runs the commands against
# an installed copy, in a separate folder and home directory.
#
# usage: readme.sh <README> <prefix> <libdir>
set -eu

readme=$1
export CMAKE_PREFIX_PATH="$2"
export PKG_CONFIG_PATH="$3/pkgconfig"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# Prints the first code block in the language $1 that contains the word $2.
print_block() {
    awk -v opening="\`\`\`$1" -v word="$2" '
        $0 == "```" && inside { if (index(block, word)) { printf "%s", block; exit }; inside = 0; next }
        inside { block = block $0 "\n" }
        $0 == opening { inside = 1; block = "" }' "$readme"
}

# Runs the first block of commands that contains $1. Fails unless the program in them writes the log
# whose path it prints.
run_block() {
    print_block sh "$1" >"$work/commands.sh"
    [ -s "$work/commands.sh" ] || { echo "the README has no commands with $1" >&2 && exit 1; }
    (cd "$work" && sh -eux commands.sh) | tee "$work/output.txt"
    log=$(sed -n 's/^The log is //p' "$work/output.txt")
    grep ' : main : Hello from hello$' "$log"
    rm "$log"
}

print_block cpp 'int main' >"$work/Hello.cpp"
print_block cmake 'project(Hello' >"$work/CMakeLists.txt"
export HOME="$work"
run_block build/hello
export LD_LIBRARY_PATH="$3"
run_block pkg-config
