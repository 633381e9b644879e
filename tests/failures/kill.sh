#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Usage: kill.sh FWPIPE
# fwpipe that is killed at a random moment costs at most the object it was writing, and never makes a wrong one.
# FWLIB_KILL_ROUNDS sets how often; 25 when absent.
set -euo pipefail
export LC_ALL=C
fwpipe=$(realpath "$1")
box=$(mktemp -d -p "$([[ -w /dev/shm ]] && echo /dev/shm || echo /tmp)")
trap 'rm -rf "$box"' EXIT
cd "$box"
ulimit -t 100 # seconds, should a replay not end
round=0

pipe() { # NAME STRICT TO FROM...
    printf '%s\n' 'plugin libfwlib.so' 'element ESerialize' 'property Name to' "property Strict $2" "property Filename $3" \
        "element $4" 'property Name from' 'property Strict 1' "${@:5}" 'sink from' 'connect from 0 to 0' >"$1.pipe"
}
pipe record0 0 recording ESource
pipe record1 1 recording ESource
pipe replay 1 copy EDeserialize 'property Filename recording'
pipe again 1 copy EDeserialize 'property Filename kept'

# The objects of a producer that are whole within so many bytes.
objects() {
    awk -v room="$1" 'BEGIN {
        for (n = 0; ; ++n) {
            object = "QObject\nm_b2PropertyCount=2\nQObjectType=QObject\nCount=" n % 1000 "\n"
            room -= length(object)
            if (room < 0) exit
            printf("%s", object)
        }
    }'
}

fail() {
    printf 'FAILED: round %s, %s bytes: %s\n' "$round" "$(wc -c <recording)" "$1"
    exit 1
}

for ((round = 0; round < ${FWLIB_KILL_ROUNDS:-25}; ++round)); do
    : >recording
    "$fwpipe" run --quiet --repeat 1000000 "record$((round % 2)).pipe" >/dev/null &
    for ((i = 0; i < 10000; ++i)); do # until it is under way
        [[ ! -s recording ]] || break
        sleep 0.001
    done
    sleep "$(printf '0.%06d' $((RANDOM % 15000)))"
    status=0
    { kill -KILL $! && wait $!; } 2>/dev/null || status=$?
    size=$(wc -c <recording)
    ((size > 0)) || fail "nothing is recorded"
    ((status == 137)) || fail "ended with $status"
    cmp -n "$size" recording <(objects $((size + 200))) || fail "a wrong object"
    objects "$size" >whole
    status=0
    rm -f kept
    "$fwpipe" recover recording -o kept --force >/dev/null 2>&1 || status=$?
    whole=$(wc -c <whole)
    ((status == (whole == 0 ? 1 : size > whole ? 3 : 0))) || fail "recovered with $status"
    [[ $whole != 0 || -e kept ]] || : >kept
    cmp kept whole || fail "not the complete objects"
    "$fwpipe" run --quiet --drain again.pipe || fail "what is kept has no end"
    cmp copy whole || fail "not replayed"
    status=0
    "$fwpipe" run --quiet --drain replay.pipe 2>/dev/null || status=$?
    ((status == (size > $(wc -c <whole)))) || fail "a cut is not told"
    cmp copy whole || fail "not replayed as far as it is whole"
done
