#!/bin/bash
# pkg_config_test.sh LIBDIR COMPILER: builds and runs the first program with the flags that pkg-config gives.
set -eu
program=$(mktemp)
trap 'rm -f "$program"' EXIT
export PKG_CONFIG_PATH=$1/pkgconfig
# shellcheck disable=SC2046 # lists of words
"$2" -std=c++20 $(pkg-config --cflags smodel) examples/first_program.cpp -o "$program" \
    $(pkg-config --libs smodel) -Wl,-rpath,"$1"
"$program" examples/models/tpcds.xml | grep -q "Business Layer"
