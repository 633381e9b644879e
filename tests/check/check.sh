#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# check.sh FWPIPE PLUGINS: runs each command of transcript.txt, a line that begins with "$ ", here, and compares what it
# prints, and its exit status, with the lines below it. With a third argument, prints the transcript anew.
set -u
cd "$(dirname "${BASH_SOURCE[0]}")" || exit 1
tool=$1
export LC_ALL=C FWLIB_PLUGIN_PATH=nowhere:$2
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
ln -s "$2" "$scratch/plugins"

fwpipe() {
    "$tool" "$@" 2>&1
    echo "exit $?"
}

# In a scratch folder: 0.pipe to N.pipe, each of which contains the next.
nest() { # N COMMAND...
    local n
    cd "$scratch" || exit 1
    for ((n = 0; n <= $1; ++n)); do
        printf 'plugin libfwlib.so\npipe %d.pipe\nproperty Name next\nsink next\n' $((n + 1)) >$n.pipe
    done
    printf 'plugin libfwlib.so\nelement ESource\nproperty Name a\nelement EDevNull\nproperty Name b\nconnect a 0 b 0\nsink a\n' \
        >"$1.pipe"
    "${@:2}"
}

on_a_terminal() { # ARGUMENT...
    script -qec "$(printf '%q ' "$tool" "$@")" /dev/null </dev/null | tr -d '\r' | sed 's/\x1b/<ESC>/g'
}

transcript() {
    local line
    while IFS= read -r line; do
        printf '%s\n' "$line"
        (eval "${line#\$ }") </dev/null
    done < <(grep '^\$ ' transcript.txt)
}

if (($# > 2)); then
    transcript
else
    diff -u transcript.txt <(transcript)
fi
