#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# fwpipe_test.sh GROUP FWPIPE PLUGIN: exit statuses, messages and streams of fwpipe. PLUGIN is the built
# examples/plugin; the last lines name the groups. Pipe files are made in a scratch folder, which is also the
# working directory.
# shellcheck disable=SC2317 # the groups are called by name
set -u

fwpipe=$(realpath "$2")
plugin=$(realpath "$3")
box=$(mktemp -d)
trap 'rm -rf "$box"' EXIT
cd "$box" || exit 1
ulimit -t 100 # seconds, should a loop that is to be ended go on
failures=0

fail() {
    printf 'FAILED: %s\n' "$1"
    [[ ! -s err ]] || printf 'standard error:\n%s\n' "$(head -c 2000 err)"
    failures=$((failures + 1))
}

# check STATUS OUT ERR ARGUMENT...: OUT and ERR are patterns for the whole of both streams.
check() {
    local status=0 wanted=$1 out=$2 err=$3
    shift 3
    "$fwpipe" "$@" >out 2>err </dev/null || status=$?
    [[ $status == "$wanted" ]] || fail "fwpipe $*: exit status $status, not $wanted"
    # shellcheck disable=SC2053 # patterns
    [[ $(<out) == $out ]] || fail "fwpipe $*: standard output: $(head -c 2000 out)"
    # shellcheck disable=SC2053
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
object='ESink::DataArrived: QObject'
pipe good "${produce[@]}" "${print[@]}" 'connect counter 0 printer 0'
pipe countdown "${print[@]}" "${launch[@]}" 'connect launch 0 printer 0'
pipe endless "${print[@]/ESink/EDevNull}" "${launch[@]}" 'property Start 2000000000' 'connect launch 0 printer 0'
pipe noline "${produce[@]}" 'conect counter 0 printer 0'
pipe nopad "${produce[@]}" "${print[@]}" 'connect counter 1 printer 0'
pipe nosink
pipe broken "${produce[@]}"
pipe drained-broken "${launch[@]}"
tees=()
for i in {1..8}; do
    tees+=('element ETee' "property Name tee$i" 'property TotalSourcePads 8')
done
for i in {1..7}; do
    for pad in {0..7}; do
        tees+=("connect tee$i $pad tee$((i + 1)) 0")
    done
done
pipe forever "${launch[@]}" "${tees[@]}" 'property TotalSourcePads 0' "${produce[@]}" 'connect counter 0 tee1 0'

usage() {
    check 2 '' 'fwpipe: *subcommand*--help*'
    check 2 '' 'fwpipe: *bogus*fwpipe --help*' bogus
    check 2 '' 'fwpipe: *FILE*fwpipe run --help*' run
    check 2 '' 'fwpipe: *second.pipe*' run good.pipe second.pipe
    check 2 '' 'fwpipe: *--bogus*' run --bogus good.pipe
    check 2 '' 'fwpipe: *--drain*--repeat*' run --repeat 2 --drain good.pipe
    check 2 '' 'fwpipe: *cannot read missing.cfg*' run --config missing.cfg good.pipe
    check 2 '' 'fwpipe: *cannot read .*' run --config . good.pipe
    local number
    for number in 0 -1 1.5 010 0x10 many '' 99999999999999999999; do
        check 2 '' 'fwpipe: --repeat: *' run --repeat "$number" good.pipe
    done
    check 0 'fwpipe [0-9]*.[0-9]*.[0-9]*' '' --version
    check 0 '*Usage: fwpipe *run*' '' --help
    check 0 '*Usage: fwpipe run *--config*--drain*--repeat*--quiet*fwpipe run counter.pipe*130*' '' run --help
}

steps() {
    check 0 "Processing pipe file: good.pipe*Connecting counter(0) -> printer(0)*$object" '' run good.pipe
    count 1000 "$object"
    check 1 $'Processing pipe file: missing.pipe\nUnable to open pipefile missing.pipe' \
        'fwpipe: building missing.pipe failed' run missing.pipe
    check 1 '*Unknown token conect' 'fwpipe: building noline.pipe failed' run noline.pipe
    check 1 '*' $'EPipeline::Initialize(): No sink or source pad\nfwpipe: initializing nopad.pipe failed' \
        run nopad.pipe
    check 1 '*' $'EPipeline::Run(): Error: No sink element.\nfwpipe: run 1 of nosink.pipe answered 0' \
        run nosink.pipe
    check 1 '*' 'ERROR: ESource - counter: *fwpipe: broken.pipe ran, but errors were reported' run broken.pipe

    printf '[ECountdown]\nStart=7\n' >seven.cfg
    check 0 '*launch: 7'$'\n'"$object*launch: 1 objects sent" '' run countdown.pipe --config seven.cfg
}

loops() {
    check 0 '*' '' run --repeat 3 good.pipe
    count 3000 "$object"
    check 0 '*launch: 3 objects sent' '' run --repeat 3 countdown.pipe
    check 1 '*launch: 3 objects sent' 'fwpipe: run 4 of countdown.pipe answered 0' run --repeat 9 countdown.pipe
    check 0 '*launch: 3 objects sent' '' run --drain countdown.pipe
    count 3 "$object"
    check 1 '*' 'ERROR: *fwpipe: drained-broken.pipe ran, but errors were reported' run --drain drained-broken.pipe
    check 1 '*' '*fwpipe: initializing nopad.pipe failed' run --drain nopad.pipe
}

quiet() {
    check 0 "$object*" '' run --quiet good.pipe
    count 1000 "$object"
    [[ $(wc -l <out) == 1000 ]] || fail "more than the objects: $(grep -vxF "$object" out)"
    check 0 "ECountdown - launch: 3*objects sent" '' run --quiet --drain countdown.pipe
    check 1 '' $'Processing pipe file: noline.pipe\n*\nUnknown token conect\nfwpipe: building noline.pipe failed' \
        run --quiet noline.pipe
    check 1 '' $'*No sink or source pad\nfwpipe: initializing nopad.pipe failed' run --quiet nopad.pipe
    # What is held must not take the place of a stream that is closed, or showing it there has no end.
    timeout 5 "$fwpipe" run --quiet noline.pipe >out 2>&-
    [[ $? == 1 && ! -s out ]] || fail "--quiet 2>&-"
}

# start: runs in the background, as $runner.
start() { # AWAITED ARGUMENT...: returns once the output holds the awaited text
    local awaited=$1
    shift
    : >out # or the lines of the run before would be taken for this one's
    "$fwpipe" "$@" >out 2>err </dev/null &
    runner=$!
    local tries=0
    until grep -q "$awaited" out || ((++tries > 600)); do
        sleep 0.05
    done
}

ended() { # STATUS LAST: how what was started came to its end, and the last line of its output
    local status=0
    wait "$runner" 2>/dev/null || status=$?
    [[ $status == "$1" ]] || fail "exit status $status, not $1"
    # shellcheck disable=SC2053
    [[ $(tail -n 1 out) == $2 ]] || fail "standard output ends with: $(tail -n 1 out)"
    [[ ! -s err ]] || fail "standard error is not empty"
}

signals() {
    local loop sent
    for loop in --repeat=999999999 --drain; do
        start 'launch: [0-9]' run endless.pipe "$loop" # the loop has begun
        kill -INT "$runner"
        ended 130 'ECountdown - launch: * objects sent' # told when the pipeline is destroyed
        start 'launch: [0-9]' run endless.pipe "$loop" # the loop has begun
        kill -TERM "$runner"
        ended 143 'ECountdown - launch: * objects sent'
        sent=$(sed -n '$s/.*: \([0-9]*\) objects.*/\1/p' out)
        [[ $(grep -c 'launch: [0-9]*$' out) == "$sent" ]] || fail "a run was cut short"
    done

    # While a run goes on: the first signal waits for its end, the second does not.
    start Connecting run forever.pipe --drain
    sleep 0.3 # its run prints nothing
    kill -TERM "$runner"
    sleep 0.3
    kill -0 "$runner" || fail "a run was ended by the first signal"
    kill -INT "$runner"
    ended 130 'Connecting *'
    start Connecting run forever.pipe
    kill -TERM "$runner"
    ended 143 'Connecting *'

    # While it waits for input: here for the lines of a pipe file.
    mkfifo waiting.pipe
    "$fwpipe" run --drain waiting.pipe >out 2>err </dev/null &
    runner=$!
    exec 3>waiting.pipe # goes on once the other end is open
    until [[ $(cut -d ' ' -f 3 "/proc/$runner/stat") == S ]]; do
        sleep 0.05
    done
    sleep 0.2
    kill -INT "$runner"
    ended 130 '*'
    exec 3>&-
}

output() {
    local arguments message='fwpipe: standard output could not be written: '
    for arguments in --help 'run --help' 'run good.pipe' 'run good.pipe --quiet' 'run good.pipe --repeat=9' \
        'run endless.pipe --drain' 'run endless.pipe --repeat=999999999'; do
        read -ra arguments <<<"$arguments"
        "$fwpipe" "${arguments[@]}" >/dev/full 2>err
        [[ $? == 1 && $(<err) == "${message}No space left on device" ]] || fail "${arguments[*]} > /dev/full"
        "$fwpipe" "${arguments[@]}" >&- 2>err
        [[ $? == 1 && $(<err) == "${message}Bad file descriptor" ]] || fail "${arguments[*]} >&-"
        { sleep 0.1 && "$fwpipe" "${arguments[@]}" 2>err; } | true
        [[ ${PIPESTATUS[0]} == 1 && $(<err) == "${message}Broken pipe" ]] || fail "${arguments[*]} | true"
    done
    "$fwpipe" run good.pipe --repeat 999999999 2>err | head -n 1 >out
    [[ ${PIPESTATUS[0]} == 1 && $(<out) == 'Processing pipe file: good.pipe' ]] || fail "| head -n 1"
}

"$1"
exit $((failures > 0))
