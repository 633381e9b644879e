# shellcheck shell=bash
# SPDX-License-Identifier: MIT
# The group of fwpipe_test.sh on elements that throw or end the process: which one it was is told.
# shellcheck disable=SC2154,SC2034,SC2053 # names and patterns of fwpipe_test.sh

# Three elements of one class behind a source, of which the named one has the given properties: KEY=VALUE.
chain() { # NAME CLASS ELEMENT PROPERTY...
    local name=$1 class=$2 faulty=$3 element from=counter lines=("plugin ${probe%/*}/failing.so" "${produce[@]}")
    local properties=("${@:4}")
    for element in first second third; do
        lines+=("element $class" "property Name $element")
        [[ $element != "$faulty" ]] || lines+=("${properties[@]/#/property }")
        lines+=("connect $from 0 $element 0")
        from=$element
    done
    pipe "$name" "${lines[@]//=/ }"
}

# A fault: the status is that of the signal, unless a sanitizer goes on to report it.
struck() { # SIGNAL ERR NAME
    local status=0
    { "$fwpipe" run --quiet "$3.pipe" >out 2>err <"$input" || status=$?; } 2>/dev/null
    if grep -q __asan_init "$fwpipe"; then
        [[ $status != 0 && $(<err) == $2* ]] || fail "$3: exit status $status"
    else
        [[ $status == $((128 + $1)) && $(<err) == $2 ]] || fail "$3: exit status $status, not $((128 + $1))"
    fi
}

faults() {
    local class element fault text signal word
    ulimit -c 0
    # The counters of a coverage build change the code, so that the element cannot always be told.
    word=''
    ! grep -q __gcov_ "$fwpipe" || word='?( or one downstream)'
    while read -r fault text; do
        chain thrown EEvery second "Fault=$fault" At=5
        check 1 '*' "fwpipe: element \"second\" (EEvery)$word: $text" run --quiet thrown.pipe
        [[ $(wc -l <err) == 1 ]] || fail "$fault: an empty line"
    done <<'EOT'
error boom
special boom
odd an exception of type (anonymous namespace)::Odd
number an exception of type int
memory std::bad_alloc
EOT
    while read -r fault signal text; do
        chain struck EEvery third "Fault=$fault" At=5
        struck "$signal" "fwpipe: element \"third\" (EEvery)?( or one downstream): $text" struck
    done <<'EOT'
segv 11 Segmentation fault
null 11 Segmentation fault
sent 11 Segmentation fault
fpe 8 Floating point exception
ill 4 Illegal instruction
bus 7 Bus error
abort 6 Aborted
EOT
    # A search that fails in turn names no element, and does not begin anew.
    if [[ $(uname -m) == @(x86_64|i?86) ]]; then
        chain lost EEvery third Fault=lost At=5
        struck 4 'fwpipe: unknown element: Illegal instruction' lost
    fi
    # What all faults did before is back once one is told, here that the first is ignored.
    (trap '' FPE && exec "$fwpipe" run endless.pipe --drain) >out 2>err &
    for word in 'launch: [0-9]' 'Floating point'; do
        until grep -q "$word" out err || ! kill -0 $! 2>/dev/null; do sleep 0.05; done
        kill -"$([[ $word == l* ]] && echo FPE || echo SEGV)" $! 2>/dev/null
    done
    { wait $!; } 2>/dev/null
    [[ $(grep -c '^fwpipe: ' err) == 1 ]] || fail "a second fault is told: $(<err)"
    # Wherever it stands among elements of its class; what cannot be told is not guessed.
    for class in EEvery EBase EDerived EForgets; do
        for element in first second third; do
            chain place $class $element Fault=error At=2
            word="element \"$element\" ($class)?( or one downstream)"
            [[ $class != EForgets ]] || word="@($word|unknown element)"
            check 1 '*' "fwpipe: $word: boom" run --quiet place.pipe
        done
    done
    # In each operation, and within a nested pipeline.
    chain ready EEvery second Fault=odd In=Initialize
    check 1 '' 'fwpipe: element "second" (EEvery): an exception of type *Odd' run --quiet ready.pipe
    chain zero EEvery third Fault=zero
    check 1 '' $'fwpipe: element "third" (EEvery): Initialize returned 0\nfwpipe: zero.pipe:12: initializing failed: EEvery - third: *' \
        run --quiet zero.pipe
    chain open EEvery second Error=half
    check 1 '' $'ERROR: EEvery - second: half\nfwpipe: open.pipe ran, but errors were reported' run --quiet open.pipe
    chain runs EEvery first Fault=error In=Run
    echo 'sink first' >>runs.pipe
    check 1 '' 'fwpipe: element "first" (EEvery)?( or one downstream): boom' run --quiet runs.pipe
    chain gone EEvery second Fault=error In=Destructor
    struck 6 '*fwpipe: element "second" (EEvery): Aborted' gone
    # At the end of the runs: of an element itself, and of one that it sends to.
    for class in EEvery EBase; do
        chain last $class second Fault=error In=End
        check 1 '*' "fwpipe: element \"second\" ($class)?( or one downstream): boom" run --quiet last.pipe
        chain sent $class third Fault=error At=1001
        sed -i '/Name second/a property Sends 1' sent.pipe
        check 1 '*' "fwpipe: element \"third\" ($class)?( or one downstream): boom" run --quiet sent.pipe
    done
    chain inner EBase third Fault=error
    for element in inner zero ready; do
        pipe outer "pipe $element.pipe" 'property Name inside' 'sink inside'
        check 1 '' 'fwpipe: element "@(second|third)" (E*): *' run --quiet outer.pipe
    done
    # A loop of connections.
    chain loop EBase none
    printf '%s\n' 'element EBase' 'property Name back' 'connect third 0 back 0' 'connect back 0 second 0' >>loop.pipe
    # With a sanitizer, a class may leave no frame; then registers decide, which at the beginning of a function do not.
    word='element "@(second|third|back)" (EBase)'
    ! grep -q __asan_init "$fwpipe" || word="@($word|unknown element)"
    struck 11 $'*\nfwpipe: '"$word: Segmentation fault (the stack is full)" loop
}
