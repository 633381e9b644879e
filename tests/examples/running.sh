# shellcheck shell=bash
# SPDX-License-Identifier: MIT
# The groups of fwpipe_test.sh on "fwpipe run", and on what all commands have in common.
# shellcheck disable=SC2034,SC2154,SC2053 # names and patterns of fwpipe_test.sh
usage() {
    mkfifo fifo
    local number
    check 2 '' 'fwpipe: no command is given*--help*'
    check 2 '' 'fwpipe: *bogus'$'\n''*fwpipe --help*' bogus
    check 2 '' 'fwpipe: *chek; did you mean "check"[?]'$'\n*' chek good.pipe
    check 2 '' 'fwpipe: *; did you mean "run good.pipe"[?]'$'\n*' good.pipe
    check 2 '' 'fwpipe: *--quite; did you mean "--quiet"[?]'$'\n*' run good.pipe --quite
    check 2 '' 'fwpipe: *FILE*fwpipe run --help*' run
    check 2 '' 'fwpipe: *second.pipe*' run good.pipe second.pipe
    cp good.pipe dump
    check 0 '*' '' run dump # the name of a command
    check 2 '' 'fwpipe: *--drain*--repeat*' run --repeat 2 --drain good.pipe
    check 2 '' 'fwpipe: --config: cannot read missing.cfg*' run --config missing.cfg good.pipe
    check 2 '' 'fwpipe: *cannot read .*' run --config . good.pipe
    check 2 '' 'fwpipe: *cannot read fifo again for each element: *' run --config fifo good.pipe
    for number in 0 -1 1.5 010 0x10 many '' 99999999999999999999; do
        check 2 '' 'fwpipe: --repeat: *' run --repeat "$number" good.pipe
        check 2 '' 'fwpipe: --head: *' dump --head "$number" good.pipe
    done
    check 2 '' 'fwpipe: *' dump --where=Count good.pipe
    check 2 '' 'fwpipe: *' dump --json --oneline good.pipe
    check 2 '' 'fwpipe: *' recover good.pipe -o other --in-place
    check 0 'fwpipe [0-9]*.[0-9]*.[0-9]*' '' --version
    check 0 '*Usage: fwpipe *run*' '' --help
    check 0 '*Usage: fwpipe run *--config*--drain*--repeat*--quiet*fwpipe run counter.pipe*130*' '' run --help
}

steps() {
    check 0 "Processing pipe file: good.pipe*Connecting counter(0) -> printer(0)*$object" '' run good.pipe
    count 1000 "$object"
    check 1 '*Unable to open pipefile missing.pipe' 'fwpipe: building missing.pipe failed: No such file or directory' run missing.pipe
    check 1 '*' $'EPipeline::Initialize(): No sink or source pad\nfwpipe: nopad.pipe:7: initializing failed: "counter" has no source pad 1: only 0' \
        run nopad.pipe
    pipe nosink
    check 1 '*' $'EPipeline::Run(): Error: No sink element.\nfwpipe: run 1 of nosink.pipe failed' \
        run nosink.pipe
    check 1 '*' 'ERROR: *fwpipe: broken.pipe ran, but errors were reported' run broken.pipe
    printf '[ECountdown]\nStart=7\n' >seven.cfg
    check 0 '*launch: 7'$'\n'"$object*launch: 1 object sent" '' run countdown.pipe --config seven.cfg
}

loops() {
    check 0 '*' '' run --repeat 3 good.pipe
    count 3000 "$object"
    check 1 '*launch: 3 objects sent' 'fwpipe: run 4 of countdown.pipe failed' run --repeat 9 countdown.pipe
    check 0 '*launch: 3 objects sent' '' run --drain countdown.pipe
    count 3 "$object"
    check 1 '*' 'ERROR: *fwpipe: drained-broken.pipe ran, but errors were reported' run --drain drained-broken.pipe
}

quiet() {
    local number
    check 0 "$object*" '' run --quiet good.pipe
    [[ $(wc -l <out) == 1000 ]] || fail "more than the objects: $(grep -vxF "$object" out)"
    check 1 '' $'Processing pipe file: noline.pipe\n*\nUnknown token conect\nfwpipe: noline.pipe:5: building failed: unknown keyword "conect"' \
        run --quiet noline.pipe
    check 1 '' $'*No sink or source pad\nfwpipe: nopad.pipe:7: initializing failed: "counter" has *' run --quiet nopad.pipe
    # It leaves no file open, which an element could take for its own.
    for number in 3 4 5; do
        pipe leak 'element EDeserialize' "property Filename /proc/self/fd/$number"
        check 1 '' "*Unable to open /proc/self/fd/$number: No such file or directory"$'\n*' run --quiet leak.pipe 3>&- 4>&- 5>&-
    done
    if ! grep -q __asan_init "$fwpipe"; then # the sanitizer needs files of its own to look at memory
        (ulimit -n 4 && exec "$fwpipe" run --quiet good.pipe) >out 2>err 3>&- 4>&- 5>&-
        [[ $(<err) == $'fwpipe: cannot hold back the progress lines: Too many open files\nfwpipe: building good.pipe failed' ]] ||
            fail "--quiet without files to hold lines"
    fi
    # Held lines that could not be held are no output that got lost.
    (ulimit -f 0 && exec "$fwpipe" run --quiet good.pipe) 2>err | cat >out
    [[ ${PIPESTATUS[0]} == 0 && $(wc -l <out) == 1000 ]] || fail "--quiet and a full disk"
    # What is held must not take the place of a stream that is closed, or showing it there has no end.
    timeout 5 "$fwpipe" run --quiet noline.pipe >out 2>&-
    [[ $? == 1 && ! -s out ]] || fail "--quiet 2>&-"
    # What is printed on standard error meanwhile: in its place when the build fails or ends the process, alone otherwise.
    local plugin="plugin ${probe%/*}/failing.so" said=$'born\nborn too'
    pipe born "$plugin" 'element EBorn_' "${produce[@]}" "${print[@]/ESink/EDevNull}" 'connect counter 0 printer 0'
    check 0 '' "$said" run --quiet born.pipe
    pipe fails "$plugin" 'element EBorn_' 'conect'
    check 1 '' $'*\nInstantiating EBorn_\n'"$said"$'\nUnknown token conect\nfwpipe: *' run --quiet fails.pipe
    pipe exits "$plugin" 'element EBorn_exit'
    check 3 '' $'*\nInstantiating EBorn_exit\n'"$said" run --quiet exits.pipe
    pipe aborts "$plugin" 'element EBorn_abort'
    struck 6 $'*\nInstantiating EBorn_abort\n'"$said"$'\nfwpipe: unknown element: Aborted' aborts
    pipe waits "$plugin" 'element EBorn_wait'
    timeout 0.5 "$fwpipe" run --quiet waits.pipe >out 2>err
    [[ $? == 124 && $(<err) == *$'\nInstantiating EBorn_wait\n'"$said" ]] || fail "a signal ends --quiet"
}

# start: runs in the background, as $runner.
start() { # AWAITED ARGUMENT...: returns once the output holds the awaited text
    local awaited=$1 tries=0
    shift
    : >out # or the lines of the run before would be taken for this one's
    "$fwpipe" "$@" >out 2>err <"$input" &
    runner=$!
    until grep -q "$awaited" out || ((++tries > 600)); do
        sleep 0.05
    done
}

ended() { # STATUS LAST: how what was started came to its end, and the last line of its output
    local status=0
    wait "$runner" 2>/dev/null || status=$?
    [[ $status == "$1" ]] || fail "exit status $status, not $1"
    [[ $(tail -n 1 out) == $2 ]] || fail "standard output ends with: $(tail -n 1 out)"
    [[ ! -s err ]] || fail "standard error is not empty"
}

signals() {
    local loop i pad tees=()
    for loop in --repeat=999999999 --drain; do
        start 'launch: [0-9]' run endless.pipe "$loop" # the loop has begun
        kill -INT "$runner"
        ended 130 'ECountdown - launch: * objects sent' # told when the pipeline is destroyed
        [[ $(grep -c 'launch: [0-9]*$' out) == "$(sed -n '$s/.*: \([0-9]*\) objects.*/\1/p' out)" ]] || fail "cut short"
    done
    # Some programs send the signal twice: it is one request.
    for pad in HUP TERM; do
        start 'launch: [0-9]' run endless.pipe --drain
        kill -$pad "$runner"
        kill -TERM "$runner"
        ended "$([[ $pad == HUP ]] && echo 129 || echo 143)" 'ECountdown - launch: * objects sent'
    done
    # While a run goes on: the first signal waits for its end, the second does not.
    for i in {1..8}; do
        tees+=('element ETee' "property Name tee$i" 'property TotalSourcePads 8')
    done
    for i in {1..7}; do
        for pad in {0..7}; do
            tees+=("connect tee$i $pad tee$((i + 1)) 0")
        done
    done
    pipe forever "${tees[@]}" 'property TotalSourcePads 0' "${produce[@]}" 'connect counter 0 tee1 0'
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
    # While it waits for input, or for who is to write it.
    mkfifo waiting.pipe
    for loop in 'run --drain' dump; do
        # shellcheck disable=SC2086 # words
        "$fwpipe" $loop waiting.pipe >out 2>err </dev/null &
        runner=$!
        [[ $loop == dump ]] || exec 3>waiting.pipe # goes on once the other end is open
        until [[ $(cut -d ' ' -f 3 "/proc/$runner/stat") == S ]]; do
            sleep 0.05
        done
        sleep 0.2
        kill -INT "$runner"
        ended 130 '*'
        exec 3>&-
    done
}

# A batch, which an element keeps until the runs are over, and a recorder behind it.
ending() {
    local loop batch=("plugin $probe" 'element EBatch' 'property Name batch')
    local record=('element ESerialize' 'property Name tap' 'property Filename file' 'connect batch 0 tap 0')
    stored() { [[ $(grep -cx QObject file) == "$1" ]] || fail "not $1 objects in the recording"; }
    pipe batch "${produce[@]}" "${batch[@]}" "${record[@]}" 'connect counter 0 batch 0'
    check 0 'batch ends' 'fwpipe: 1 run, 1000 objects sent, 0 refused, *' run --quiet --report batch.pipe
    stored 1000
    sed 's/Name batch/&\nproperty Ends 0/' batch.pipe >unended.pipe
    check 1 '*' 'fwpipe: ending unended.pipe failed' run unended.pipe
    stored 1000
    # When an element requests the end of a replay, which has data left; then after runs that failed.
    pipe replayed "${replay[@]}" "${batch[@]}" 'property Stop 3' "${print[@]}" 'connect replay 0 batch 0' \
        'connect batch 0 printer 0'
    check 0 'batch ends*' '' run --quiet --drain replayed.pipe
    count 3 "$object"
    pipe thrown "plugin ${probe%/*}/failing.so" "${produce[@]}" "${batch[@]}" "${record[@]}" 'element ETee' \
        'property Name tee' 'element EEvery' 'property Name bad' 'property Fault error' 'property At 5' \
        'connect counter 0 tee 0' 'connect tee 0 batch 0' 'connect tee 1 bad 0'
    check 1 'batch ends' 'fwpipe: element "bad" (EEvery): boom' run --quiet thrown.pipe
    stored 5
    pipe few "${launch[@]}" "${batch[@]}" "${record[@]}" 'connect launch 0 batch 0'
    check 1 '*batch ends*' 'fwpipe: run 4 of few.pipe failed' run --repeat 9 few.pipe
    stored 3
    sed 's/Name batch/&\nproperty Stop 5/; s/Name launch/&\nproperty Start 2000000000/' few.pipe >stop.pipe
    for loop in --drain --repeat=9; do
        check 0 '*batch ends*' 'fwpipe: 5 runs, 5 objects sent, 0 refused, *' run --report stop.pipe $loop
        stored 5
    done
    # An element that asks for the end learns of a signal, also in a single run.
    pipe wait "${batch[@]}" "${record[@]}" 'sink batch'
    for loop in '' --drain; do
        # shellcheck disable=SC2086 # none or one
        start 'batch waits' run --quiet wait.pipe $loop
        kill -INT "$runner"
        ended 130 'batch ends'
        stored 1
        [[ $(wc -l <out) == 2 ]] || fail "runs after the signal"
    done
    # What the element that runs sends at the end arrives before the next one is told, wherever that stands in the file.
    sed 's/Name batch/Name second/; s/connect batch/connect second/; s/sink batch//' wait.pipe >two.pipe
    printf '%s\n' "${batch[@]:1}" 'property Stop 1' 'connect batch 0 second 0' 'sink batch' >>two.pipe
    check 0 $'batch waits\nbatch ends\nsecond ends' '' run --quiet two.pipe
    stored 1
    # What is sent at the end counts as what runs send.
    pipe late "${batch[@]}" 'property Stop 1' "${print[@]/ESink/EProbe}" 'property Answer 0' 'connect batch 0 printer 0' \
        'sink batch'
    check 1 '*printer(10): *' 'fwpipe: 1 of 1 objects from "batch" were refused downstream' run late.pipe
    "$fwpipe" run --quiet batch.pipe >/dev/full 2>err
    [[ $? == 1 && $(<err) == 'fwpipe: standard output could not be written: No space left on device' ]] ||
        fail "late output is lost"
}

output() {
    local arguments message='fwpipe: standard output could not be written: '
    write 20000 QObject a=b >many
    for arguments in --help 'run --help' 'run good.pipe' 'run good.pipe --quiet' 'run good.pipe --repeat=9' \
        'run endless.pipe --drain' 'dump many' 'dump --json many' 'dump --oneline many'; do
        read -ra arguments <<<"$arguments"
        "$fwpipe" "${arguments[@]}" >/dev/full 2>err
        [[ $? == 1 && $(<err) == *"${message}No space left on device" ]] || fail "${arguments[*]} > /dev/full"
        "$fwpipe" "${arguments[@]}" >&- 2>err
        [[ $? == 1 && $(<err) == *"${message}Bad file descriptor" ]] || fail "${arguments[*]} >&-"
        { sleep 0.1 && "$fwpipe" "${arguments[@]}" 2>err; } | true
        [[ ${PIPESTATUS[0]} == 1 && $(<err) == *"${message}Broken pipe" ]] || fail "${arguments[*]} | true"
    done
    # Where both streams go to one file or pipe, their lines stand in the order they were printed.
    pipe mixed "${produce[@]}" 'element ETee' 'property Name tee' "${print[@]}" 'element EPassthrough' \
        'property Name loose' 'connect counter 0 tee 0' 'connect tee 0 printer 0' 'connect tee 1 loose 0'
    "$fwpipe" run --quiet mixed.pipe >log 2>&1
    "$fwpipe" run --quiet mixed.pipe 2>&1 | cat >piped
    for arguments in log piped; do
        [[ $(grep -c broken "$arguments") == 1000 && $(head -n 2000 "$arguments" | cut -c 1-5 | uniq | wc -l) == 2000 ]] ||
            fail "lines out of order: $arguments"
    done
}
