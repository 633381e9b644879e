#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# fwpipe_test.sh GROUP FWPIPE PLUGIN PROBE: exit statuses, messages and streams of fwpipe. PLUGIN is the built
# examples/plugin, PROBE that of the language tests; GROUP is a function of one of the other files here. Pipe files and recordings are made in a scratch
# folder, which is also the working directory.
# shellcheck disable=SC2317 # the groups are called by name
# shellcheck disable=SC2053 # patterns
set -u
shopt -s extglob
export LC_ALL=C

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
export fwpipe
fwpipe=$(realpath "$2")
plugin=$(realpath "$3")
probe=$(realpath "$4")
box=$(mktemp -d -p "$([[ -w /dev/shm ]] && echo /dev/shm || echo /tmp)") # where bringing a file to the disk is fast
trap 'rm -rf "$box"' EXIT
cd "$box" || exit 1
ulimit -t 100 # seconds, should a loop that is to be ended go on
failures=0 input=/dev/null

fail() {
    printf 'FAILED: %s\n' "$1"
    [[ ! -s err ]] || printf 'standard error:\n%s\n' "$(head -c 2000 err)"
    failures=$((failures + 1))
}

# check STATUS OUT ERR ARGUMENT...: OUT and ERR are patterns for the whole of both streams.
check() {
    local status=0 wanted=$1 out=$2 err=$3
    shift 3
    "$fwpipe" "$@" >out 2>err <"$input" || status=$?
    [[ $status == "$wanted" ]] || fail "fwpipe $*: exit status $status, not $wanted"
    [[ $(<out) == $out ]] || fail "fwpipe $*: standard output: $(head -c 2000 out)"
    [[ $(<err) == $err ]] || fail "fwpipe $*: standard error is not $err"
}

count() { # NUMBER LINE: so many of that line on standard output
    [[ $(grep -cxF -- "$2" out) == "$1" ]] || fail "not $1 times: $2"
}

# The lines common to most pipe files, then those of the case.
pipe() { # NAME LINE...
    printf '%s\n' 'plugin libfwlib.so' "${@:2}" >"$1.pipe"
}

produce=('element ESource' 'property Name counter' 'sink counter')
print=('element ESink' 'property Name printer')
launch=("plugin $plugin" 'element ECountdown' 'property Name launch' 'property Debug 1' 'sink launch')
replay=('element EDeserialize' 'property Name replay' 'property Strict 1' 'property Filename file' 'sink replay')
object='ESink::DataArrived: QObject'
pipe good "${produce[@]}" "${print[@]}" 'connect counter 0 printer 0'
pipe countdown "${print[@]}" "${launch[@]}" 'connect launch 0 printer 0'
pipe endless "${print[@]/ESink/EDevNull}" "${launch[@]}" 'property Start 2000000000' 'connect launch 0 printer 0'
pipe noline "${produce[@]}" 'conect counter 0 printer 0'
pipe nopad "${produce[@]}" "${print[@]}" 'connect counter 1 printer 0'
pipe broken "${produce[@]}"
pipe drained-broken "${launch[@]}"

write() { # TIMES TYPE LINE...: so many objects; "%d" in a line is their number
    local text
    text=$(printf '%s\\n' "$2" "m_b2PropertyCount=$(($# - 2))" "${@:3}")
    awk -v times="$1" -v text="$text" 'BEGIN { for (i = 0; i < times; ++i) printf(text, i, i) }'
}

# shellcheck source-path=SCRIPTDIR
source "$here/running.sh"
# shellcheck source-path=SCRIPTDIR
source "$here/recordings.sh"
# shellcheck source-path=SCRIPTDIR
source "$here/recovering.sh"
# shellcheck source-path=SCRIPTDIR
source "$here/failing.sh"
# shellcheck source-path=SCRIPTDIR
source "$here/guards.sh"
# shellcheck source-path=SCRIPTDIR
source "$here/faults.sh"
# shellcheck source-path=SCRIPTDIR
source "$here/describing.sh"
"$1"
exit $((failures > 0))
