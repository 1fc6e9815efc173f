#!/bin/bash
# demo.sh SMODEL: takes the documents of examples/models to a new repository and back, and shows what happens. The repositories and
# documents stay in build/demo. Findings and differences (status 1) are part of the show, anything worse is not.
set -u
smodel=$1
cd "$(dirname "$0")/.." || exit 2
rm -rf build/demo

"$smodel" demo --keep build/demo examples/models/*.xml examples/models/multifile/main.xml
status=$?
[ $status -le 1 ] || exit $status
