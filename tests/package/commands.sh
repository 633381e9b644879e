#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Usage: commands.sh FWPIPE [DOCUMENT]
# Prints the document about fwpipe's commands, from their help; or compares it with DOCUMENT.
# shellcheck disable=SC2016 # backquotes of Markdown
set -euo pipefail
export LC_ALL=C
fwpipe=$1

# The commands below the given one, each after its parents.
commands() {
    local command
    while read -r command; do
        echo "$* $command"
        commands "$@" "$command"
    done < <("$fwpipe" "$@" --help | sed -n '/^Subcommands:/,/^$/s/^  \([a-z]*\) .*/\1/p')
}

print() {
    local -a command
    printf '%s\n' '# Commands of fwpipe' '' 'The output of `fwpipe --help`, and of `--help` after each command.' \
        '`tests/package/commands.sh build/release/fwpipe >docs/commands.md` renews this file.' '' \
        '```' "$("$fwpipe" --help)" '```'
    while read -ra command; do
        printf '%s\n' '' "## ${command[*]}" '' '```' "$("$fwpipe" "${command[@]}" --help)" '```'
    done < <(commands)
}

if (($# == 1)); then
    print
elif ! diff -u "$2" <(print); then
    echo 'docs/commands.md is not current. To renew it: tests/package/commands.sh build/release/fwpipe >docs/commands.md'
    exit 1
fi
