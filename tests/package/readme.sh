#!/bin/sh
# Extracts the program, its CMake project and the shell commands from the README. Runs the commands
# against an installed copy, in a temporary folder that is also the home directory.
#
# usage: readme.sh <README> <prefix> <libdir>
set -eu

readme=$1
export CMAKE_PREFIX_PATH="$2"
export PKG_CONFIG_PATH="$3/pkgconfig"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# Prints the first code block in the language $1 that contains $2.
print_block() {
    awk -v opening="\`\`\`$1" -v word="$2" '
        $0 == "```" && inside { if (index(block, word)) { printf "%s", block; exit }; inside = 0; next }
        inside { block = block $0 "\n" }
        $0 == opening { inside = 1; block = "" }' "$readme"
}

# Runs the first block of commands that contains $1. Fails unless the program prints the path of its
# log and the log contains its message.
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
