#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Usage: elements.sh FWPIPE [DOCUMENT]
# Prints the document about the library's types, from what fwpipe inspect shows; or compares it with DOCUMENT.
# shellcheck disable=SC2016 # backquotes of Markdown
set -euo pipefail
export LC_ALL=C
fwpipe=$1

print() {
    local type
    printf '%s\n' '# Types of the library' '' \
        'Made from the output of `fwpipe inspect`, which shows the same for each type, and for the types of plugins.' \
        '`tests/package/elements.sh build/release/fwpipe >docs/elements.md` renews this file.' '' \
        '```' "$("$fwpipe" inspect)" '```'
    while read -r type _; do
        printf '%s\n' '' "## $type" '' '```' "$("$fwpipe" inspect "$type")" '```'
    done < <("$fwpipe" inspect)
}

if (($# == 1)); then
    print
elif ! diff -u "$2" <(print); then
    echo 'docs/elements.md is not current. To renew it: tests/package/elements.sh build/release/fwpipe >docs/elements.md'
    exit 1
fi
