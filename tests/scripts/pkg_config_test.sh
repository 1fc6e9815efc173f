#!/bin/bash
# pkg_config_test.sh LIBDIR COMPILER: builds and runs the examples with the flags that pkg-config gives.
set -eu
libdir=$1 compiler=$2
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
export PKG_CONFIG_PATH=$libdir/pkgconfig

build() { # PROGRAM PACKAGE
    # shellcheck disable=SC2046 # lists of words
    "$compiler" -std=c++20 $(pkg-config --cflags "$2") "examples/$1.cpp" -o "$folder/$1" $(pkg-config --libs "$2") -Wl,-rpath,"$libdir"
}

build first_program smodel
"$folder/first_program" examples/models/tpcds.xml | grep -q "Business Layer"
build neighbour smodel-repository
(cd "$folder" && ./neighbour) | grep -q "all is where it should be"
