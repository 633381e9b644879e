#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Usage: round.sh FOLDER BUILD [EMULATOR...]
# Generates objects, records, is killed, recovers, dumps and replays, with what lies in BUILD. Leaves in FOLDER what has to
# be the same on every processor.
set -euo pipefail
export LC_ALL=C
mkdir -p "$1"
box=$(realpath "$1")
build=$(realpath "$2")
run=("${@:3}")
fwpipe=("${run[@]}" "$build/fwpipe")
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
rm -f "$box"/*
cd "$scratch"

fail() {
    echo "FAILED: $1"
    exit 1
}

pipe() { # FROM TO...: a pipe file from one element to a recorder
    printf '%s\n' 'plugin libfwlib.so' 'element ESerialize' 'property Name to' "property Filename $2" "element $1" \
        'property Name from' "${@:3}" 'sink from' 'connect from 0 to 0'
}
pipe ESource "$box/recording" >record.pipe
pipe ESource killed >killed.pipe
pipe EDeserialize "$box/copy" 'property Filename kept' >replay.pipe
pipe EDeserialize "$box/objects.copy" "property Filename $box/objects" >objects.pipe

"${run[@]}" "$build/tests/fwlib_cross_generate" "$box"
"${fwpipe[@]}" run --quiet record.pipe
"${fwpipe[@]}" run --quiet --drain objects.pipe
cmp "$box/objects" "$box/objects.copy"

"${fwpipe[@]}" run --quiet --repeat 1000000 killed.pipe &
for ((i = 0; i < 6000; ++i)); do # until a good deal is recorded
    [[ ! -e killed || $(stat -c %s killed) -lt 200000 ]] || break
    sleep 0.01
done
status=0
{ kill -KILL $! && wait $!; } 2>/dev/null || status=$?
((status == 137)) || fail "the recording ended with $status"
truncate -s 200001 killed # within an object, at the same place everywhere
status=0
"${fwpipe[@]}" recover killed -o kept >"$box/recovered" || status=$?
((status == 3)) || fail "recover returned $status"
"${fwpipe[@]}" run --quiet --drain replay.pipe
cmp kept "$box/copy"

{ head -c 20001 "$box/objects" && tail -c 20001 "$box/objects"; } >damaged
"${fwpipe[@]}" recover --resync damaged -o resynced >>"$box/recovered" || [[ $? == 3 ]]
cp resynced "$box"
for form in --oneline --json --json=pairs --raw --count '--tail 10'; do
    # shellcheck disable=SC2086 # two words
    "${fwpipe[@]}" dump $form "$box/objects" >"$box/dump.${form// /}"
done
"${fwpipe[@]}" dump "$box/objects" >"$box/dump"
