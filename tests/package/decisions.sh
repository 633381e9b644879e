#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Usage: decisions.sh BUILD_DIR DECISIONS CASES PROGRAM...
# Every test that docs/decisions.md names is there: those of the programs, the cases of CASES/*.test, inputs of the fuzz
# targets, ctest's own, and the commands of ./dev. A choice without a test that pins it is found too.
# shellcheck disable=SC2016 # backquotes of Markdown
set -euo pipefail
build=$1 decisions=$2 cases=$3 failed=0
shift 3

missing() {
    echo "$1"
    failed=1
}

known=$(for program in "$@"; do
    "$program" --gtest_list_tests | awk '/^[^ ]/ { suite = $1; sub(/^.*\//, "", suite) } /^ / { print suite $1 }'
done)
known+=$'\n'$(ctest --test-dir "$build" -N | sed -n 's/^ *Test *#[0-9]*: //p')
cells=$(awk -F ' [|] ' '/^[|] / && NF == 3 && !/^[|] Choice/ { sub(/ [|]$/, "", $3); print $3 }' "$decisions")
while IFS= read -r cell; do
    found=0
    while IFS= read -r test; do
        found=1
        grep -qxF -- "$test" <<<"$known" || missing "there is no test $test"
    done < <(grep -oE '`[A-Za-z]+\.[A-Za-z0-9_]+(/[A-Za-z0-9_]+)?`' <<<"$cell" | tr -d '`' | grep -v '\.test$' || true)
    while IFS='|' read -r file name; do
        found=1
        grep -qxF -e "--- case $name" -e "--- also $name" "$cases/$file" || missing "there is no case \"$name\" in $file"
    done < <(grep -oE '`[a-z]+\.test`, "[^"]+"' <<<"$cell" | sed 's/`\([a-z.]*\)`, "\(.*\)"/\1|\2/' || true)
    while IFS= read -r input; do
        found=1
        [[ -e $(dirname "$decisions")/../$input ]] || missing "there is no input $input"
    done < <(grep -oE '`fuzz/corpus/[a-z0-9/-]+`' <<<"$cell" | tr -d '`' || true)
    [[ $found == 1 || $cell == *'./dev bench'* ]] || missing "no test is named: $cell"
done <<<"$cells"
exit "$failed"
