#!/bin/bash
# Lists the headers that are installed: those that mark something with SM_API, and what these include. Runs in the root of the tree.
set -eu

public=$(grep -rlw --include='*.h' --include='*.inc' SM_API core objects)
while :; do
    # shellcheck disable=SC2086 # a list of words
    all=$({ printf '%s\n' $public && sed -nE 's|^ *# *include "([^"]+)".*|\1|p' $public; } | sort -u)
    [ "$all" != "$public" ] || break
    public=$all
done
printf '%s\n' "$public"
