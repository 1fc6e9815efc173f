#!/bin/bash
# demo.sh SMODEL: takes each document of examples/models through the command's whole round: check it, put it into a new
# repository, get it back, write it in canonical form, and compare.
set -u
smodel=$1
cd "$(dirname "$0")/.." || exit 2
work=build/demo
rm -rf "$work" && mkdir -p "$work" || exit 2

bad=0
step() { # COMMAND...: findings (status 1) are part of the show, anything worse is not
    echo "\$ smodel $*"
    "$smodel" "$@"
    [ $? -le 1 ] || bad=1
}

for document in examples/models/*.xml examples/models/multifile/main.xml; do
    name=$(basename "$(dirname "$document")")-$(basename "$document" .xml)
    printf '\n== %s\n' "$document"
    step check "$document"
    step repo put "$work/$name.db" "$document"
    step repo get "$work/$name.db" -o "$work/$name.got.xml"
    step fmt "$document" -o "$work/$name.put.xml"
    step fmt "$work/$name.put.xml" -o "$work/$name.again.xml"
    cmp "$work/$name.put.xml" "$work/$name.again.xml" || bad=1
    if cmp -s "$work/$name.put.xml" "$work/$name.got.xml"; then
        echo "the document got is the document put"
    else
        echo "the document got differs from the document put:"
        diff <("$smodel" fmt --indent "$work/$name.put.xml") <("$smodel" fmt --indent "$work/$name.got.xml") | head -n 20
    fi
done
exit $bad
