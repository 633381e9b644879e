# shellcheck shell=bash
# SPDX-License-Identifier: MIT
# The groups of fwpipe_test.sh on what "fwpipe run" looks at besides the results of the steps: objects that get lost,
# files that are used twice, loops, and the report.
# shellcheck disable=SC2154,SC2034,SC2053 # names and patterns of fwpipe_test.sh
replaying=("${replay[@]/Strict 1/Strict 0}" 'element EDevNull' 'property Name end' 'connect replay 0 end 0')
sent='objects sent'

# receive NAME EVERY: the lines of an EProbe that refuses each EVERYth object
receive() {
    printf '%s\n' "plugin $probe" 'element EProbe' "property Name $1" 'property Answer 0' "property Every $2"
}

feed() { # NAME LINE...: a pipe whose EFeed "feed" has two receivers
    local lines
    mapfile -t lines < <(receive each 1 && receive third 3)
    pipe "$1" "${lines[@]}" 'element EFeed' 'property Name feed' 'property TotalSourcePads 2' "${@:2}" 'sink feed' \
        'connect feed 0 each 0' 'connect feed 1 third 0'
}

refused() {
    local name
    local lines line='12 of 1000 objects from "counter" were refused downstream'
    mapfile -t lines < <(receive each 83)
    pipe some "${lines[@]}" "${produce[@]}" 'connect counter 0 each 0'
    pipe inner 'element EPassthrough' 'property Name tap' "${produce[@]}" 'connect counter 0 tap 0' 'source tap'
    pipe outer "${lines[@]}" 'pipe inner.pipe' 'property Name inside' 'connect inside 0 each 0' 'sink inside'
    for name in some outer; do
        check 1 '*' "fwpipe: $line" run "$name.pipe"
        check 0 '*' "fwpipe: $line" run --ignore-refused "$name.pipe"
    done
    check 1 '*' 'fwpipe: 120 of 10000 objects from "counter" were refused downstream' run --repeat 10 some.pipe
    # Each pad counts, whatever the element does with its pads. Every run but the third returns 1.
    feed two
    check 1 '*' $'fwpipe: run 3 of two.pipe failed\nfwpipe: 4 of 6 objects from "feed" were refused downstream' \
        run --repeat 3 two.pipe
    feed turning 'property Turns 1' 'property Farewell 1'
    check 1 '*feed is gone' 'fwpipe: 1 of 2 objects from "feed" were refused downstream' run turning.pipe
    pipe box "${lines[@]}" 'element EBox' 'property Name box' 'connect box 0 each 0' 'sink box'
    check 0 '*' 'EPipeline::Run(): Error: No sink element.' run --drain box.pipe
}

rest() {
    local short=" did not reach the end of file, $sent: " lines
    pipe all "${replaying[@]}"
    pipe piped "${replaying[@]/#property Filename*/}"
    mapfile -t lines < <(receive each 3)
    pipe third "${replaying[@]:0:5}" "${lines[@]}" 'connect replay 0 each 0'
    write 5 QObject a=b >file
    check 0 '*' '' run --drain all.pipe
    check 0 '*' '' run --repeat 5 all.pipe
    check 0 '*' "fwpipe: \"replay\"${short}1 (--drain goes on to the end)" run all.pipe
    check 0 '*' "fwpipe: \"replay\"${short}4 (--drain *)" run --repeat 4 all.pipe
    check 1 '*' "fwpipe: \"replay\"${short}3"$'\n''fwpipe: 1 of 3 objects from "replay" were refused downstream' \
        run --drain third.pipe
    check 0 '*' "fwpipe: \"replay\"${short}3"$'\nfwpipe: 1 of 3 *' run --drain --ignore-refused third.pipe
    write 3 QObject a=b >file # the last one is refused, and there is no other
    check 1 '*' 'fwpipe: 1 of 3 objects from "replay" were refused downstream' run --drain third.pipe
    # What is left in a file stays there; what is left in a pipe is lost.
    input='file'
    check 0 '*' "fwpipe: \"replay\" did not reach the end of standard input, ${sent}: 1 (*)" run piped.pipe
    for end in '1 --quiet' '0 --repeat=2' '0 --drain'; do
        "$fwpipe" run "${end#* }" piped.pipe >out 2>err < <(cat file; exec >&-; sleep 1)
        [[ $? == "${end% *}" ]] || fail "standard input, a pipe: $end"
    done
    input=/dev/stdin # nothing is behind the only object
    check 0 '*' '' run piped.pipe < <(write 1 QObject a=b)
}

# pair TYPE FILE OTHER: an element of that type on the first file, and a recorder on the second
pair() {
    pipe pair "${produce[@]}" "element $1" 'property Name first' "property Filename $2" 'element ESerialize' \
        'property Name second' "property Filename $3" 'connect counter 0 second 0'
}

onefile() {
    local type first second
    mkdir folder
    write 2 QObject a=b >kept
    while read -r first second; do
        for type in EDeserialize ESerialize; do
            rm -f recording hard soft dangling
            cp kept recording
            ln recording hard
            ln -s recording soft
            ln -s folder/new dangling
            pair "$type" "$first" "$second"
            check 1 '*' 'fwpipe: "@(first|second)" would write *, which "@(first|second)" uses too; --shared-files *' \
                run pair.pipe
            cmp kept recording || fail "$first, $second: written"
        done
    done <<'END'
recording recording
recording ./folder/../recording
hard recording
recording soft
new new
new folder/../new
dangling folder/new
dangling dangling
END
    [[ ! -e new && ! -e folder/new ]] || fail "a refused file was created"
    # What keeps nothing, and what only has the same name.
    while read -r first second; do
        pair ESerialize "$first" "$second"
        check 0 '*' '' run pair.pipe
    done <<'END'
/dev/null /dev/null
new folder/new
END
    pair EDeserialize recording recording
    mv pair.pipe inner.pipe
    pipe outer "${replaying[@]/file/recording}" 'pipe inner.pipe'
    check 1 '*' 'fwpipe: "second" would write recording, which "replay" uses *' run outer.pipe
    pipe readers "${replaying[@]/file/recording}" "${replay[@]:0:1}" 'property Filename recording'
    check 0 '*' '' run --repeat 2 readers.pipe
    # With leave, and what is there is kept unless its recorder says otherwise.
    cp kept recording
    pair EDeserialize recording hard
    check 0 '*' '' run --shared-files pair.pipe
    [[ $(grep -c Count recording) != 0 ]] || fail "not shared"
    cp kept recording
    pair ESerialize recording other
    check 1 '*' '*Unable to open recording: File exists*' run --keep pair.pipe
    cmp kept recording || fail "not kept"
    rm -f other
    pipe own "${produce[@]}" 'element ESerialize' 'property Name first' 'property Filename recording' \
        'property Existing replace' 'connect counter 0 first 0'
    check 0 '*' '' run --keep own.pipe
    ! cmp -s kept recording || fail "kept against its property"
    cp kept recording
    pipe standard 'element EDeserialize' 'property Name replay' 'element ESerialize' 'property Name record' \
        'connect replay 0 record 0' 'sink replay'
    # shellcheck disable=SC2094 # it is what is tested
    "$fwpipe" run --quiet --drain standard.pipe <recording >>recording 2>err # would have no end
    [[ $? == 1 && $(<err) == *'"record" would write standard output, which "replay" uses'* ]] || fail "onto itself"
    "$fwpipe" run --quiet --drain standard.pipe <kept >recording || fail "a copy"
    [[ $(grep -c '^a=b' recording) == 2 ]] || fail "not copied"
}

feedback() {
    local line='fwpipe: warning: connections lead back to where they came from: '
    pipe inner 'element EPassthrough' 'property Name tap' 'sink tap' 'source tap'
    # The nested element's pads are shown by its pipeline, and nothing runs into the loops.
    pipe loops "${produce[@]}" 'element ETee' 'property Name fork' 'pipe inner.pipe' 'property Name inside' \
        'element ETee' 'property Name self' "${print[@]/ESink/EDevNull}" 'connect counter 0 printer 0' \
        'connect fork 0 inside 0' 'connect inside 0 self 0' 'connect self 0 self 0' 'connect self 1 fork 0'
    check 0 '*' "$line\"self\" -> \"self\""$'\n'"$line\"fork\" -> \"tap\" -> \"self\" -> \"fork\"" run loops.pipe
    # Two ways to one element are no loop.
    pipe diamond "${produce[@]}" 'element ETee' 'property Name fork' 'element EPassthrough' 'property Name tap' \
        'element EDevNull' 'property Name end' 'connect counter 0 fork 0' 'connect fork 0 tap 0' 'connect fork 1 end 0' \
        'connect tap 0 end 0'
    check 0 '*' '' run diamond.pipe
}

report() {
    local line='fwpipe: 1 run, 1000 objects sent, 0 refused, +([0-9.]) s, +([0-9]) objects/s'
    check 0 '*' "$line" run --report good.pipe
    script -qec "$fwpipe run --quiet good.pipe" /dev/null </dev/null | tr -d '\r' >terminal
    [[ $(tail -n 1 terminal) == $line ]] || fail "no report on a terminal"
    check 0 '*' 'fwpipe: 3 runs, 3 objects sent, 0 refused, *' run --report --drain countdown.pipe
    check 0 '*' 'fwpipe: 1 run, 1 object sent, 0 refused, *' run --report countdown.pipe
    check 1 '*' $'fwpipe: 3 runs, 3 objects sent, *\nfwpipe: run 4 of countdown.pipe failed' \
        run --report --repeat 9 countdown.pipe
    "$fwpipe" run --quiet --report --repeat 9 good.pipe >/dev/full 2>err
    [[ $(<err) == *$'\nfwpipe: 1 run, '* ]] || fail "the run whose output is lost is not counted"
    start 'launch: [0-9]' run --report endless.pipe --drain
    kill -INT "$runner"
    wait "$runner" 2>/dev/null
    [[ $? == 130 && $(<err) == 'fwpipe: '*' runs, '*' objects sent, 0 refused, '* ]] || fail "a signal: no report"
}
