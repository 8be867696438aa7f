#!/bin/sh
# Fails when the shared library exports a symbol that no public header declares with TOOLKIT_API, or
# a symbol with unique binding.
#
# usage: exported-symbols.sh library include-directory
set -eu

library=$1
headers=$2
export LC_ALL=C

# Prints the names after TOOLKIT_API: classes, functions (the word before the parenthesis), constants.
print_public_names() {
    find "$headers" -name '*.h' -exec cat {} + |
        sed -n -e 's/^ *\(template <.*> *\)\{0,1\}\(class\|struct\) \(TOOLKIT_[A-Z_]*([^)]*) \)\{0,1\}TOOLKIT_API \([A-Za-z0-9_]*\).*/\4/p' \
            -e 's/^.*TOOLKIT_API [^(]*[ *&]\([A-Za-z0-9_]*\)(.*/\1/p' \
            -e 's/^extern TOOLKIT_API [^(]*[ *&]\([A-Za-z0-9_]*\);.*/\1/p' |
        sort -u
}

# Prints every exported symbol, such as "vtable for Toolkit::Mutex", without parameter and result
# types.
print_exported_names() {
    nm --dynamic --defined-only "$library" | awk '{ print $NF }' | c++filt --no-params | sort -u
}

# Reads the public names, a line "--" and the exported names; prints the exported ones whose class
# or function ("Mutex" of "vtable for Toolkit::Mutex") is not public.
print_undeclared() {
    awk '
        $0 == "--" { after = 1; next }
        !after { public[$0] = 1; next }
        {
            owner = $0
            sub(/^.* for /, "", owner)
            sub(/^non-virtual thunk to /, "", owner)
            sub(/^Toolkit::/, "", owner)
            sub(/[<:(].*/, "", owner)
            if (!(owner in public))
                print "exported, but in no public header: " $0
        }'
}

unique=$(readelf --wide --dyn-syms "$library" | awk '$5 == "UNIQUE" && $7 != "UND"')
if [ -n "$unique" ]; then
    echo "unique symbols, which would keep the library in memory for ever:" && echo "$unique"
    exit 1
fi

public=$(print_public_names)
exported=$(print_exported_names)
if [ -z "$public" ] || [ -z "$exported" ]; then
    echo "found no public names, or no exported ones"
    exit 1
fi

undeclared=$(printf '%s\n--\n%s\n' "$public" "$exported" | print_undeclared)
if [ -n "$undeclared" ]; then
    echo "$undeclared"
    exit 1
fi
