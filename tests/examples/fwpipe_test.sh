#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# fwpipe_test.sh GROUP FWPIPE PLUGIN: exit statuses, messages and streams of fwpipe. PLUGIN is the built
# examples/plugin; GROUP is a function below. Pipe files and recordings are made in a scratch folder, which is also
# the working directory.
# shellcheck disable=SC2317 # the groups are called by name
# shellcheck disable=SC2053 # patterns
set -u
shopt -s extglob
export LC_ALL=C

fwpipe=$(realpath "$2")
plugin=$(realpath "$3")
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

usage() {
    local number
    check 2 '' 'fwpipe: *subcommand*--help*'
    check 2 '' 'fwpipe: *bogus*fwpipe --help*' bogus
    check 2 '' 'fwpipe: *FILE*fwpipe run --help*' run
    check 2 '' 'fwpipe: *second.pipe*' run good.pipe second.pipe
    check 2 '' 'fwpipe: *--drain*--repeat*' run --repeat 2 --drain good.pipe
    check 2 '' 'fwpipe: *cannot read missing.cfg*' run --config missing.cfg good.pipe
    check 2 '' 'fwpipe: *cannot read .*' run --config . good.pipe
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
    check 1 '*Unable to open pipefile missing.pipe' 'fwpipe: building missing.pipe failed' run missing.pipe
    check 1 '*' $'EPipeline::Initialize(): No sink or source pad\nfwpipe: initializing nopad.pipe failed' \
        run nopad.pipe
    pipe nosink
    check 1 '*' $'EPipeline::Run(): Error: No sink element.\nfwpipe: run 1 of nosink.pipe answered 0' \
        run nosink.pipe
    check 1 '*' 'ERROR: *fwpipe: broken.pipe ran, but errors were reported' run broken.pipe
    printf '[ECountdown]\nStart=7\n' >seven.cfg
    check 0 '*launch: 7'$'\n'"$object*launch: 1 objects sent" '' run countdown.pipe --config seven.cfg
}

loops() {
    check 0 '*' '' run --repeat 3 good.pipe
    count 3000 "$object"
    check 1 '*launch: 3 objects sent' 'fwpipe: run 4 of countdown.pipe answered 0' run --repeat 9 countdown.pipe
    check 0 '*launch: 3 objects sent' '' run --drain countdown.pipe
    count 3 "$object"
    check 1 '*' 'ERROR: *fwpipe: drained-broken.pipe ran, but errors were reported' run --drain drained-broken.pipe
}

quiet() {
    check 0 "$object*" '' run --quiet good.pipe
    [[ $(wc -l <out) == 1000 ]] || fail "more than the objects: $(grep -vxF "$object" out)"
    check 1 '' $'Processing pipe file: noline.pipe\n*\nUnknown token conect\nfwpipe: building noline.pipe failed' \
        run --quiet noline.pipe
    check 1 '' $'*No sink or source pad\nfwpipe: initializing nopad.pipe failed' run --quiet nopad.pipe
    # What is held must not take the place of a stream that is closed, or showing it there has no end.
    timeout 5 "$fwpipe" run --quiet noline.pipe >out 2>&-
    [[ $? == 1 && ! -s out ]] || fail "--quiet 2>&-"
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
    # While it waits for input.
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
}

write() { # TIMES TYPE LINE...: so many objects; "%d" in a line is their number
    local text
    text=$(printf '%s\\n' "$2" "m_b2PropertyCount=$(($# - 2))" "${@:3}")
    awk -v times="$1" -v text="$text" 'BEGIN { for (i = 0; i < times; ++i) printf(text, i, i) }'
}

dump() {
    local form value all
    {
        printf 'Q\x1b[2J\nm_b2PropertyCount=4\nk=1\nk=2\ntwo words=say "hi" \\ \xc2\x9bm\x7f\n\xff=\xc3\x28\r\n'
        printf '\nm_b2PropertyCount=0\nQObject\nm_b2PropertyCount=4\nk=2\ne=a=b\n=\n\xc3\xa4=\t\n'
    } >hostile
    printf '%s\n' 'object 0 at byte 0: Q\x1b[2J' '  k = 1' '  k = 2' $'  two words = say "hi" \\\\ \xc2\\x9bm\\x7f' \
        $'  \xff = \xc3(\\x0d' '' 'object 1 at byte 66: ""' '' 'object 2 at byte 87: QObject' '  k = 2' '  e = a=b' \
        '   = ' $'  \xc3\xa4 = \\x09' '' '3 objects' >expected
    printf '%s\n' $'0 @0 Q\\x1b[2J k=1 k=2 "two words"="say \\"hi\\" \\\\ \xc2\\x9bm\\x7f" \xff=\xc3(\\x0d' \
        '1 @66 ""' $'2 @87 QObject k=2 e=a=b ""="" \xc3\xa4=\\x09' '3 objects' >expected--oneline
    printf '%s\n' '{"type":"Q\u001b[2J","offset":0,"properties":[["k","1"],["k","2"],["two words","say \"hi\" \\ '$'\xc2\x9bm\x7f"],["\xef\xbf\xbd","\xef\xbf\xbd(\\r"]]}' \
        '{"type":"","offset":66,"properties":[]}' \
        $'{"type":"QObject","offset":87,"properties":[["k","2"],["e","a=b"],["",""],["\xc3\xa4","\\t"]]}' >expected--json
    for form in '' --oneline --json; do
        for input in /dev/null hostile; do
            check 0 '*' '*' dump ${form:+"$form"} "$([[ $input == hostile ]] && echo - || echo hostile)"
            diff "expected$form" out || fail "dump $form"
        done
    done
    [[ $(<err) == '3 objects' ]] || fail "no summary of --json"

    write 10 QObject Count=%d x=a=b >ten
    input=ten
    while IFS='|' read -r all value; do
        read -ra form <<<"$all"
        check 0 '*' '' dump --oneline "${form[@]//,/ }"
        [[ $(sed -n 's/ @.*//p' out | tr -d '\n')' '$(tail -n 1 out) == "$value" ]] || fail "dump $all: $(<out)"
    done <<'END'
-|0123456789 10 objects
--head=3|012 3 objects, the rest not read
--head=1|0 1 object, the rest not read
--head=11|0123456789 10 objects
--where=Count=7|7 1 of 10 objects
--where=Count=| 0 of 10 objects
END
    check 0 $'*\n2 of 2 objects, the rest not read' '' dump --where x=a=b --head 2
    check 0 '0 of 10 objects' '' dump --where Count=1 --where Count=2
    check 1 '' 'fwpipe: cannot read missing: No such file or directory' dump missing
    check 1 '0 objects' 'fwpipe: cannot read /: Is a directory' dump /
    value=$(head -c 3000000 /dev/zero | tr '\0' v) # lines and objects of any length
    { printf 'QObject\nm_b2PropertyCount=1\nk=%s\nQObject\nm_b2PropertyCount=65520\n' "$value" && yes k=v | head -n 65520 && printf QObj; } >long
    input=long
    check 1 "*\"$value\"*" $'2 objects\nfwpipe: no whole object at byte * of standard input: its last line is cut' dump --json
    [[ $(tail -n 1 out | grep -o '\["k","v"\]' | wc -l) == 65520 ]] || fail "a long object"
    mkfifo to from # a program that feeds it slowly sees its objects at once
    local runner status=0
    "$fwpipe" dump --oneline <to >from 2>err &
    runner=$!
    exec 3>to 4<from
    for form in 0 1 2; do
        write 1 QObject a=b >&3
        read -r -t 20 -u 4 value
        [[ $value == "$form @"* ]] || fail "dump shows nothing yet"
    done
    exec 4<&- # and it ends when nobody takes them
    write 1 QObject a=b >&3
    exec 3>&-
    wait "$runner" || status=$?
    [[ $status == 1 ]] || fail "dump went on"
}

recover() {
    local ends=(0) i object reason place
    for object in 'QObject\nm_b2PropertyCount=2\nQObjectType=QObject\nCount=7\n' 'QObject\nm_b2PropertyCount=0\n' \
        '\nm_b2PropertyCount=3\n=\nexpression=a=b\n\xff\x80=\xc3\x28\r\n' \
        'ttttttttttttttttttttttttttttttt\nm_b2PropertyCount=1\nlong=xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx\n'; do
        printf '%b' "$object" >>all
        ends+=("$(wc -c <all)")
    done
    for ((cut = 0, whole = 0; cut <= ends[4]; ++cut)); do # a file that is cut anywhere
        ((whole == 4 || cut < ends[whole + 1])) || ((++whole))
        head -c "$cut" all >file
        reason='its last line is cut'
        [[ -n $(tail -c 1 file) ]] || reason='its last lines are missing'
        place="file: cut at byte ${ends[whole]}, $((cut - ends[whole])) bytes: no whole object there: $reason"
        ((cut != ends[whole])) || place='file: nothing to cut'
        check 0 "file: $whole whole object$([[ $whole == 1 ]] || echo s), ${ends[whole]} bytes, kept in kept"$'\n'"$place" \
            '' recover --force file -o kept
        cmp -s kept <(head -c "${ends[whole]}" all) || fail "cut at byte $cut"
    done
    check 0 '*nothing to cut' '' recover kept
    cmp kept.recovered all || fail "not the whole file"

    # The tools and the strict element agree on what is whole, and on the reason why the rest is not.
    pipe replay "${replay[@]}" 'element ESerialize' 'property Name record' 'property Filename kept' 'connect replay 0 record 0'
    write 1 QObject QObjectType=QObject Count=7 >front
    while IFS='|' read -r object reason; do
        { cat front && printf '%b' "$object" && cat front front; } >file
        place="$(wc -c <front) of file: $reason"
        check 1 $'0 @0 QObject QObjectType=QObject Count=7\n1 object' "fwpipe: no whole object at byte $place" dump --oneline file
        check 1 '' "ERROR: EDeserialize - replay: Run(): no whole object at byte $place"$'\n*' run --drain --quiet replay.pipe
        cmp front kept || fail "replayed: $object"
        check 0 "*: ${place#* file: }" '' recover file -o kept --force
        cmp front kept || fail "recovered: $object"
    done <<'END'
QObject\nm_b2PropertyCount=1\na=\0\n|a line holds a zero byte
QObject\nm_b2PropertyCount=1\nab\n|a property line holds no "="
QObject\nm_b2PropertyCount=2\na=b\n|a property line holds no "="
QObject\nm_b2PropertyCount=65521\n|a count line holds no number that a list may have
QObject\nm_b2PropertyCount=1x\na=b\n|a count line holds no number that a list may have
QObject\nm_b2PropertyCount=\n|a count line is not one
QObject\nm_b2PropertyCount=-1\n|a count line is not one
QObject\nm_b2PropertyCoun=0\n|a count line is not one
tttttttttttttttttttttttttttttttt\nm_b2PropertyCount=0\n|a type line is longer than 31 characters
END

    rm -- * && write 1 QObject a=b >whole && { cat whole && echo QObject; } >file && chmod 640 file && ln -s file link
    check 0 '*' '' recover --in-place link
    cmp file whole || fail "not the whole objects"
    [[ -L link && $(stat -c %a file) == 640 ]] || fail "not in place"
    i=$(stat -c %i file)
    check 0 '*nothing to cut' '' recover --in-place file
    [[ $i == $(stat -c %i file) ]] || fail "replaced although nothing was to be cut"
    echo a picture >file
    check 1 '' 'fwpipe: *' recover --in-place file
    [[ $(<file) == 'a picture' ]] || fail "a picture is no recording"
    check 0 '*' '' recover --in-place --force file
    [[ ! -s file ]] || fail "not emptied"
    { cat whole && echo QObject; } >file && chmod 600 file && ln file other && echo precious >kept
    for object in 'file -o kept' 'file -o file --force' 'file -o other --force' 'file -o missing/out' missing . \
        'file -o /dev/null --force'; do
        read -ra object <<<"$object"
        check 1 '' 'fwpipe: *' recover "${object[@]}"
    done
    [[ $(<kept) == precious && $(tail -n 1 file) == QObject ]] || fail "something changed"
    check 0 '*' '' recover file -o kept --force
    cmp kept whole || fail "not the whole objects"
    [[ $(stat -c %a kept) == 600 ]] || fail "more readable than the input"
    [[ $(echo *) == 'err file kept link other out whole' ]] || fail "left: $(echo *)"
}

# On a terminal, with longer and longer files until one takes the tenth of a second after which the line appears.
progress() {
    local command times text shown='\r[0-9]+ objects, [0-9]+/s, [0-9]{1,2}% *\r'
    pipe replay "${replay[@]}" 'element EDevNull' 'property Name end' 'connect replay 0 end 0'
    pipe print "${replay[@]}" "${print[@]}" 'connect replay 0 printer 0'
    for command in 'recover --force file' 'dump --oneline file >/dev/null' 'dump - <file >/dev/null' \
        'run --drain replay.pipe'; do
        for ((times = 200000; times < 20000000; times *= 3)); do
            write "$times" QObject a=b >file
            script -qec "$fwpipe $command" /dev/null >terminal </dev/null || fail "$command"
            ! grep -qP "$shown" terminal || break
        done
        grep -qP "$shown" terminal || fail "no progress: $command"
        text=$(cat terminal && echo x)
        [[ ${text##*$'\n'} == ?(*$'\r'*( )$'\r')x ]] || fail "left on the terminal: $command"
    done
    write 200000 QObject a=b >file
    for command in 'run --drain print.pipe' 'dump --oneline file'; do # a terminal belongs to what is printed there
        script -qec "$fwpipe $command" /dev/null </dev/null | grep -q ' objects, ' && fail "progress: $command"
    done
    check 0 '*' '' run --drain replay.pipe
}

"$1"
exit $((failures > 0))
