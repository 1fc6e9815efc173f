#!/bin/bash
# check-tree.sh [ROOT]: rules of the sources that no compiler checks. Prints each breach and ends with status 1 if there is one.
set -u
here=$(cd "$(dirname "$0")" && pwd)
cd "${1:-$here/..}" || exit 2

breaches=$(mktemp)
included=$(mktemp)
trap 'rm -f "$breaches" "$included"' EXIT
breach() { sed "s|^|$1: |" >>"$breaches"; }

sources() { find core objects tools tests bench examples fuzz -name '*.h' -o -name '*.inc' -o -name '*.cpp' 2>/dev/null | sort; }

# Lines of a file and what it includes; a walk reads them without a process for each.
sources | xargs grep -HE '^ *# *include "[^"]+"' /dev/null | sed -E 's/^([^:]+):[^"]*"([^"]+)".*/\1 \2/' >"$included"

# Folders from low to high, and what each may include besides itself and the host layer below all.
below() {
    local fragments="objects/transforms objects/catalogue objects/publication objects/links"
    case $1 in
    core/qvutils) ;;
    core/repository | objects/base) ;;
    objects/transforms | objects/catalogue | objects/publication | objects/links) echo objects/base ;;
    objects/query) echo objects/base objects/publication objects/catalogue ;;
    objects/dimensional) echo "$(below objects/query)" objects/query objects/links ;;
    objects/containers) echo objects/base "$fragments" objects/query objects/dimensional ;;
    objects/project) echo "$(below objects/containers)" objects/containers ;;
    objects/face) echo "$(below objects/project)" objects/project ;;
    objects/*) return 1 ;;
    core/*) return 1 ;;
    esac
}

# Headers look downward only.
find core objects \( -name '*.h' -o -name '*.inc' \) -printf '%h\n' | cut -d/ -f1-2 | sort -u | while read -r own; do
    if allowed=$(below "$own"); then
        sed -nE "s|^($own/[^ ]*\.(h\|inc)) |\1 |p" "$included" | while read -r header name; do
            case " core/qvutils $own $allowed " in
            *" ${name%"/${name#*/*/}"} "*) ;;
            *) echo "$header includes $name" ;;
            esac
        done
    else
        find "$own" -name '*.h' -o -name '*.inc'
    fi
done | breach "looks upward, or stands in a folder without a layer"

# Sources may look up within their library, never into what stands on it.
{
    find core -name '*.cpp' -exec grep -HnE '^ *# *include "(objects|tools|tests)/' {} +
    find core/qvutils -name '*.cpp' -exec grep -HnE '^ *# *include "core/repository/' {} +
    find objects -name '*.cpp' -exec grep -HnE '^ *# *include "(core/repository|tools|tests)/' {} +
} | breach "looks into a higher library"

# The command uses the libraries as any program would, through their faces.
grep '^tools/' "$included" | while read -r file name; do
    case $name in
    objects/face/* | core/repository/smrepository*.h | core/qvutils/diag/* | objects/project/smproject2_002_000.h | tools/*) ;;
    *) echo "$file includes $name" ;;
    esac
done | breach "not a public face"

# Headers that others read need nothing but the standard library.
"$here/public-headers.sh" | xargs grep -HnE '^ *# *include <(xercesc|unicode|sqlite3|libpq|CLI|nlohmann)' /dev/null |
    breach "foreign library in a public header"

sources | grep '\.h$' | xargs grep -L '^#pragma once' /dev/null | grep -v '^/dev/null$' | breach "no #pragma once"

while read -r file name; do
    [ -e "$name" ] || echo "$file includes $name"
done <"$included" | breach "include not from the root of the tree"

# A header compiles alone: its source includes it first, so that a header without a source is all that a test has to compile.
sources | grep '\.cpp$' | while read -r file; do
    header=${file%.cpp}.h
    if [ -e "$header" ] && [ "$(grep -m1 '^ *# *include' "$file")" != "#include \"$header\"" ]; then echo "$file"; fi
done | breach "does not include its own header first"

# A comment stands for itself: it defers nothing and points to nothing outside of the tree.
find . \( -name .git -o -name build -o -path './tests/data' -o -path './examples/models' \) -prune -o -type f ! -name LICENSE -print0 |
    xargs -0 grep -nIE '\b(TODO|FIXME|XXX|HACK)[:( ]|\b[Ss]pecification|\b[Ss]pec\.md|\bParts? [0-9]|[Cc]oming soon|/(home|root)/[a-z]' |
    breach "defers work or points outside of the tree"

# The first program of the README is the one that is built.
if [ -e README.md ]; then
    sed -n '/^```cpp$/,/^```$/p' README.md | sed '1d;$d' | diff - examples/first_program.cpp | breach "README.md and examples/first_program.cpp differ"
fi

sort -u "$breaches"
[ ! -s "$breaches" ]
