#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# check_example.sh EXAMPLE PROGRAM [PATH=FILE...]
#
# Runs each command that stands in the opening comment of an example and compares its output with the announced one.
#   EXAMPLE    path of the example from the project's root, such as examples/counter.pipe
#   PROGRAM    what takes the place of the command's first word: fwpipe for "./dev", the built program for a host
#   PATH=FILE  FILE takes the place of what the example expects to have been built at PATH, for instance
#              build/plugin/libcountdown.so=/tmp/plugin/libcountdown.so
# The commands run in a scratch folder that looks like the project's root, so their output is the same to the letter.
# They must exit with 0 and leave standard error empty. What one leaves in build/ is there for the next: a pipe file
# that needs another's output runs that one first. A pipe file that only serves another one says so instead.
#
# In the comment, output lines are indented by two; "  (1000 times)" at the end of one stands for so many of it, and
# "  (these 3 lines, 1000 times)" for so many of it and the lines above it.
set -eu

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
example=$1
program=$(realpath "$2")
shift 2
box=$(mktemp -d)
trap 'rm -rf "$box"' EXIT

fail() {
    printf '%s: %s\n' "$example" "$1" >&2
    exit 1
}

# Leaves N.command and N.expected in the scratch folder for each command of the comment.
read_header() {
    awk -v box="$box" '
        function flush_lines(from, times,   i) {
            for (; times > 0; --times) for (i = from; i <= held; ++i) print line[i] > file
        }
        !/^(#|\/\/)/ { exit }
        { sub(/^(#|\/\/) ?/, "") }
        /^Run: / {
            file = box "/" ++n ".command"; print substr($0, 6) > file
            file = box "/" n ".expected"; printf "" > file
        }
        /^Output:$/ { output = 1; held = 0; next }
        !output || !/^  / { output = 0; next }
        {
            size = times = 1
            text = substr($0, 3)
            if (match(text, /  \((these [0-9]+ lines, )?[0-9]+ times\)$/)) {
                count = split(substr(text, RSTART), number, /[^0-9]+/)
                times = number[count - 1]
                if (count > 3) size = number[2]
                text = substr(text, 1, RSTART - 1)
            }
            line[++held] = text
            # The block was printed once but for its last line.
            print text > file
            flush_lines(held - size + 1, times - 1)
        }' "$root/$example"
}

check() { # NUMBER
    local words status=0
    read -ra words <"$box/$1.command"
    if [[ $example == *.pipe && "${words[*]:0:2}" != "./dev run" ]]; then
        fail "the command must be \"./dev run FILE [OPTIONS]\": ${words[*]}"
    fi
    (cd "$box" && "$program" "${words[@]:1}" >actual 2>errors) || status=$?
    diff -u --label announced --label printed "$box/$1.expected" "$box/actual" >"$box/difference" || {
        head -n 40 "$box/difference" >&2
        fail "the output differs: ${words[*]}"
    }
    [[ $status == 0 && ! -s $box/errors ]] || fail "exit status $status, errors: $(<"$box/errors")"
}

ln -s "$root/examples" "$box/examples"
mkdir "$box/build"
for pair in "$@"; do
    mkdir -p "$box/$(dirname "${pair%%=*}")"
    ln -s "$(realpath "${pair#*=}")" "$box/${pair%%=*}"
done

IFS= read -r first <"$root/$example"
if [[ $first == "# Part of "* ]]; then
    grep -qx "pipe $example" "$root/${first#\# Part of }" || fail "not used by ${first#\# Part of }"
    exit 0
fi
read_header
[[ -e $box/1.command ]] || fail "no command in the opening comment"
[[ $example != *.pipe ]] || grep -qE "^\./dev run $example( |\$)" "$box"/*.command || fail "no command runs it"
for command in "$box"/*.command; do
    check "$(basename "$command" .command)"
done
