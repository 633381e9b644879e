#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Usage: surface.sh LIBRARY SYMBOLS [TOOL]
# What the library shows the linker: exactly the listed names, a soname, no need beyond the compiler's runtime, and
# one place to search: its own. The tool searches beside itself only; an empty entry would stand for the working directory.
# In the list "va_list" stands for what the width makes of it, and "(optional)" marks what only unoptimized code needs.
# Names and libraries that sanitizers add are no part of the surface, nor are the marks that GNU ld exports beside libc++.
set -euo pipefail
export LC_ALL=C
library=$1 symbols=$2 failed=0

if readelf -h "$library" | grep -q ELF64; then va_list='__va_list_tag*'; else va_list='char*'; fi

if ! diff -u --label "$symbols" --label "exported" \
    <(grep -v '^#\| (optional)$' "$symbols" | sed "s/va_list/$va_list/" | sort -u) \
    <(nm -D --defined-only -C "$library" | sed -E 's/^[0-9a-f]+ . //; /^(__odr_asan|(__bss_start|_edata|_end)$)/d' |
        grep -vxF "$(sed -n 's/ (optional)$//p' "$symbols")" | sort -u); then
    echo "the exported names differ from the list"
    failed=1
fi
if ! sort -cu <(grep -v '^#' "$symbols"); then
    echo "the list is not sorted"
    failed=1
fi

dynamic=$(readelf -d "$library")
needed=$(sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p' <<<"$dynamic")
if strange=$(grep -Ev '^(lib(c|m|(std)?c\+\+|c\+\+abi|unwind|gcc_s|asan|lsan|ubsan)|ld-linux.*)\.so\.[0-9]+$' <<<"$needed"); then
    echo "needs more than the compiler's runtime: $strange"
    failed=1
fi
if ! grep -q '(SONAME).*\[libfwlib\.so\(\.[0-9]\+\)\+\]' <<<"$dynamic"; then
    echo "has no soname"
    failed=1
fi
if ! grep -q "(RUNPATH).*\[[\$]ORIGIN\]" <<<"$dynamic"; then
    echo "looks for plugins elsewhere than beside itself"
    failed=1
fi
if [ $# -gt 2 ]; then
    entries=$(readelf -dW "$3" | sed -n 's/.*(R\(UN\)\?PATH).*\[\(.*\)\]/\2/p')
    if [ -z "$entries" ] || tr : '\n' <<<"$entries" | grep -Ev '^[$]ORIGIN(/|$)'; then
        echo "the tool searches elsewhere than beside itself: \"$entries\""
        failed=1
    fi
fi
exit "$failed"
