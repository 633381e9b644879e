#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# completion.sh FWPIPE SCRIPT: what the completion for bash offers for the last word of a command line.
set -u
PATH=$(dirname "$1"):$PATH
# shellcheck source=/dev/null
source "$2"
cd "$(dirname "${BASH_SOURCE[0]}")/../../examples" || exit 1

offers() { # EXPECTED WORD...
    COMP_WORDS=("${@:2}")
    COMP_CWORD=$(($# - 2))
    COMPREPLY=()
    _fwpipe
    [[ ${COMPREPLY[*]-} == "$1" ]] || { echo "${*:2}: offers ${COMPREPLY[*]-} instead of $1" && status=1; }
}

status=0
offers 'recover' fwpipe re
offers '--help --head' fwpipe dump --h
offers 'counter.pipe config.pipe config.cfg' fwpipe run co
offers 'nested' fwpipe run -C ne
offers 'svg' fwpipe graph --format s
offers 'QEOF' fwpipe inspect QE
offers 'ESource ESink ESerialize' fwpipe launch ES
offers 'TotalSourcePads=' fwpipe launch ESource ! ETee T
offers '' fwpipe launch ESource ! T
offers 'plugin' fwpipe new ''
exit $status
