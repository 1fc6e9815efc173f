#!/bin/bash
# check-exports.sh LIBRARY...: each exported symbol stands in schema_002_000 or bears a name that a header in core/ marks with
# SM_API. Prints the others and ends with status 1 if there is one. Runs in the root of the tree.
set -uo pipefail

marked=$(
    find core -name '*.h' -exec sed -nE \
        -e 's/.*(class|struct|union) SM_API ([A-Za-z_0-9]+).*/\2/p' \
        -e '/(class|struct|union) SM_API/d' \
        -e 's/.*SM_API [^(]*\b(operator[^ (]+|[A-Za-z_0-9]+) *\(.*/\1/p' \
        -e 's/.*SM_API [^(]*\b([A-Za-z_0-9]+) *[;=[].*/\1/p' {} + | sort -u
)

for library in "$@"; do
    nm -D --defined-only "$library" | c++filt -p | sed -E 's/^[0-9a-f]* +[A-Za-z] //' |
        sed -E 's/^((vtable|VTT|typeinfo|typeinfo name|guard variable|TLS (init|wrapper) function|(non-)?virtual thunk|construction vtable) (for|to) )+//' |
        awk -v marked="$marked" -v library="$(basename "$library")" '
            BEGIN { count = split(marked, names, "\n"); for (i = 1; i <= count; ++i) known[names[i]] = 1 }
            /^schema_002_000::/ { next }
            /^_(init|fini)$/ { next }
            {
                name = $0
                sub(/^qv::/, "", name)
                match(name, /^(operator[^ (]+|[A-Za-z_0-9]+)/)
                if (!(substr(name, RSTART, RLENGTH) in known)) { print library ": exports " $0; bad = 1 }
            }
            END { exit bad }' || status=1
done
exit "${status:-0}"
