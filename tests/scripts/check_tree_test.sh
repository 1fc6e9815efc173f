#!/bin/bash
# Builds a small tree, breaks one rule at a time, and expects scripts/check-tree.sh to tell that one and no other.
set -eu
check=$PWD/scripts/check-tree.sh
tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT
cd "$tree"

header() { # FILE LINE...
    mkdir -p "$(dirname "$1")"
    { echo '#pragma once' && printf '%s\n' "${@:2}"; } >"$1"
}

clean() {
    rm -rf core objects tools README.md examples
    header core/qvutils/base/low.h 'class SM_API Low {};'
    header core/repository/store.h '#include "core/qvutils/base/low.h"'
    header objects/base/mid.h '#include "core/qvutils/base/low.h"' 'class SM_API Mid {};'
    header objects/query/high.h '#include "objects/base/mid.h"' 'class SM_API High {};'
    printf '#include "%s"\n' objects/base/mid.h objects/query/high.h >objects/base/mid.cpp
    mkdir examples
    echo 'int main() {}' >examples/first_program.cpp
    printf '%s\n' '```cpp' 'int main() {}' '```' >README.md
}

failed=0
expect() { # WORDS: the only breach told
    local told
    told=$("$check" "$tree") && { echo "not noticed: $1"; failed=1; }
    if [ "$(printf '%s\n' "$told" | grep -vc "$1")" -ne 0 ]; then
        echo "expected '$1', was told: $told"
        failed=1
    fi
    clean
}

clean
"$check" "$tree" || { echo "a clean tree is called broken"; failed=1; }

header objects/base/mid.h '#include "objects/query/high.h"'
expect 'looks upward.*objects/base/mid.h includes objects/query/high.h'
header core/qvutils/base/low.h '#include "objects/base/mid.h"'
expect 'looks upward.*core/qvutils/base/low.h includes objects/base/mid.h'
header objects/dimensional/cube.h '#include "objects/base/mid.h"' '#include "objects/query/high.h"'
header objects/query/high.h '#include "objects/dimensional/cube.h"'
expect 'looks upward.*objects/query/high.h includes objects/dimensional/cube.h'
header objects/elsewhere/new.h
expect 'folder without a layer: objects/elsewhere/new.h'
printf '#include "%s"\n' core/repository/store.h objects/base/mid.h >core/repository/store.cpp
expect 'looks into a higher library: core/repository/store.cpp'
echo '  #include "core/repository/store.h"' >>objects/base/mid.cpp
expect 'looks into a higher library: objects/base/mid.cpp'
header objects/face/door.h '#include "objects/base/mid.h"' 'class SM_API Door {};'
header tools/smodel/use.h '#include "objects/face/door.h"' '#include "objects/base/mid.h"'
expect 'not a public face: tools/smodel/use.h includes objects/base/mid.h'
header core/qvutils/base/low.h '#include <sqlite3.h>' 'class SM_API Low {};'
expect 'foreign library in a public header: core/qvutils/base/low.h'
echo 'class Low;' >core/qvutils/base/plain.h
expect 'no #pragma once: core/qvutils/base/plain.h'
echo '#include "mid.h"' >>objects/base/mid.cpp
expect 'include not from the root.*objects/base/mid.cpp includes mid.h'
echo '#include "objects/query/high.h"' >objects/base/mid.cpp
expect 'own header first: objects/base/mid.cpp'
printf '// TO%s: more\n' DO >>objects/base/mid.cpp
expect 'defers work.*objects/base/mid.cpp'
echo 'int main() { return 1; }' >examples/first_program.cpp
expect 'README.md and examples/first_program.cpp differ'
exit $failed
