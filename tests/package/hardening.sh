#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Usage: hardening.sh CONFIGURATION LIBRARY [TOOL]
# What a fault or an attacker finds closed: the tables that the loader fills are read-only before any code runs, no
# memory can be both written and executed, code is at home at any address, stacks are guarded, no text is written
# without a bound, and outside the Debug configuration the C library checks the room that the compiler knows.
set -euo pipefail
export LC_ALL=C
configuration=$1 failed=0
shift

fault() { # FILE TEXT
    echo "$1: $2"
    failed=1
}

for file in "$@"; do
    segments=$(readelf -lW "$file") dynamic=$(readelf -dW "$file") wanted=$(nm -D --undefined-only "$file")
    grep -q GNU_RELRO <<<"$segments" || fault "$file" "no part is made read-only after loading"
    grep -q '(FLAGS).*BIND_NOW' <<<"$dynamic" || fault "$file" "names are looked up as they are called"
    grep -qE 'GNU_STACK .* RW +0x' <<<"$segments" || fault "$file" "the stack is executable"
    ! grep -E '^ +LOAD .* RWE ' <<<"$segments" || fault "$file" "a segment is writable and executable"
    ! grep -q TEXTREL <<<"$dynamic" || fault "$file" "the loader has to write into the code"
    readelf -h "$file" | grep -q 'Type: *DYN' || fault "$file" "code is tied to its address"
    grep -q ' __stack_chk_fail' <<<"$wanted" || fault "$file" "stacks are not guarded"
    ! grep -wE '(__)?(sprintf|st[rp]cpy|strcat|gets)(_chk)?' <<<"$wanted" || fault "$file" "writes without a bound"
done
if [ "$configuration" != Debug ]; then # clang++ checks only what takes a va_list, which the tool does not use
    grep -q '_chk@' <<<"$(nm -D --undefined-only "$1")" || fault "$1" "nothing is fortified"
fi
[ $# -lt 2 ] || readelf -dW "$2" | grep -q '(FLAGS_1).*PIE' || fault "$2" "not a position-independent program"
exit "$failed"
