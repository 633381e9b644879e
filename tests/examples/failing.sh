# shellcheck shell=bash
# SPDX-License-Identifier: MIT
# The group of fwpipe_test.sh in which the system refuses: each call that a command makes fails in turn, or finds a
# signal. Either all is done as without that, or nothing has changed and standard error says why.
# shellcheck disable=SC2154,SC2034 # names of fwpipe_test.sh
unprinted='fwpipe: standard output could not be written: '

refill() {
    rm -rf place
    cp -a ready place
}

state() { # what is there, and how the input may be used
    (shopt -s dotglob && cd place && stat -c '%n %F' -- * && tail -n +1 -- * && stat -c %a file)
}

# Sets $status and $left.
traced() { # OPTION...: the command in its folder, under strace with these options
    status=0
    { # or the shell tells which ones a signal ends
        (cd place && exec strace -qq -f "$@" "$fwpipe" "${command[@]}" >../out 2>../err <whole) || status=$?
    } 2>/dev/null
    left=$(state 2>&1)
}

# What can happen to a call. A file may become shorter while it is copied.
events() { # CALL
    case $1 in
    read) echo error=EIO error=EINTR signal=TERM ;;
    write) echo error=EIO error=EINTR retval=0 signal=TERM ;;
    pread*) echo error=EIO retval=0 signal=TERM ;;
    rename* | link*) echo error=EIO error=EINVAL error=EEXIST signal=TERM ;;
    open* | fsync) echo error=EIO signal=TERM ;;
    *) echo error=EIO ;;
    esac
}

# The calls that the command makes from the beginning of main, each with its number among those of its name.
calls() {
    awk '{ name = $2; sub(/\(.*/, "", name); ++count[name] }
        /SIGPIPE/ { begun = 1 }
        /\.gcda/ { exit } # a build that counts what is reached writes that down in the end
        /pipe2?\(/ { skipped = 4 } # a sanitizer asks so whether memory can be read: pipe, write, close, close
        skipped-- <= 0 && begun && name ~ /^(open|p?read|p?write|f?trunc|(new)?[fl]?stat|_?l?lseek|fsync|rename|f?access|fch|linkat|unlinkat|f[a-z]*xattr|dup|fcntl|memfd|close|getcwd|ioctl)/ {
            print name, count[name]
        }' trace
}

judge() { # WHAT HAPPENED
    [[ $(<trace) =~ INJECTED|SIGTERM ]] || fail "${command[*]}: no $1"
    if [[ $status == "$wanted" && $left == "$after" ]] && cmp -s out out.wanted; then
        return
    elif [[ $status == 143 && $left == "$before" && (${command[0]} == run || ! -s err) ]]; then
        return
    elif [[ $status == 1 && $(tail -n 1 err) == 'fwpipe: '?* && (${command[0]} == run || $(wc -l <err) == 1) ]]; then
        [[ $(<err) != "$unprinted"* || $left != "$after" ]] || return
        # A write that took nothing, or was interrupted, is tried again; only stdio gives up then.
        [[ $left != "$before" || "${command[0]} $1" == recover\ @(*=EINTR*|retval=0\ at\ write*) ]] || return
    fi
    fail "fwpipe ${command[*]}, $1: exit status $status"
    diff <(echo "$before") <(echo "$left")
}

# The command without and with each event.
endure() {
    local wanted before after made number name event stop
    refill
    before=$(state 2>&1)
    traced -o ../trace
    mv out out.wanted
    after=$left wanted=$status
    mapfile -t made < <(calls)
    ((${#made[@]} > 5)) || fail "fwpipe ${command[*]}: its calls are not seen"
    for number in "${made[@]}"; do
        name=${number% *}
        for event in $(events "$name"); do
            [[ $left == "$before" ]] || refill
            stop=--seccomp-bpf # at those calls only; but signals come only without it
            [[ $event != signal* ]] || stop=-f
            traced "$stop" -o ../trace -e trace="$name" -e inject="$name:$event:when=${number#* }"
            judge "$event at $number"
        done
    done
}

failing() {
    local command status left wanted before event words made
    strace -qq -o trace true 2>err || {
        echo 'skipped: no program may trace another here'
        exit 77
    }
    export ASAN_OPTIONS=detect_leaks=0:exitcode=99 LSAN_OPTIONS=detect_leaks=0 # leaks are looked for by tracing, too
    mkdir ready
    write 3 QObject a=b >ready/whole
    { cat ready/whole && echo QObject; } >ready/file && chmod 640 ready/file
    ln -s file ready/link
    echo old >ready/old
    pipe replay "${replay[@]/file/whole}" "${print[@]}" 'connect replay 0 printer 0'
    printf '[ECountdown]\nStart=7\n' >ready/seven.cfg
    mv ./*.pipe ready
    for words in 'run countdown.pipe' 'run --quiet good.pipe' 'run --quiet nopad.pipe' 'run --drain replay.pipe' \
        'dump file' 'dump -' 'recover file' 'recover --force link -o old' 'recover file -o old' \
        'recover --force file -o link' 'recover --in-place link'; do
        read -ra command <<<"$words"
        endure
    done
    # Not every file system has that call, and all modes. A name that is taken meanwhile is not replaced.
    while IFS='|' read -r wanted event words; do
        read -ra command <<<"$words"
        read -ra event <<<"$event"
        refill
        before=$(state 2>&1)
        traced -o /dev/null "${event[@]}"
        [[ $status == "$wanted" ]] || fail "$words, ${event[*]}: exit status $status, not $wanted"
        made=file.recovered
        [[ $words != *' -o '* ]] || made=${words##* }
        [[ $words != *--in-place* ]] || made='file'
        [[ $status != 3 && $left == "$before" ]] || cmp place/whole "place/$made" || fail "$words, ${event[*]}"
    done <<'EOF'
3|-e inject=/access:error=ENOENT -e inject=renameat2:error=EINVAL|recover file
1|-e inject=/access:error=ENOENT -e inject=renameat2:error=EINVAL -e inject=renameat:error=EIO|recover file
3|-e inject=fchmod:error=EPERM|recover file
1|-e inject=fchmod:error=EPERM|recover --in-place link
3|-e inject=fgetxattr:error=EOPNOTSUPP|recover --in-place link
3|-e inject=linkat:error=EEXIST:when=1|recover --force file -o old
1|-P old -e inject=/stat:error=ENOENT:when=1|recover file -o old
1|-P old -e inject=/stat:error=ENOENT:when=1 -e inject=renameat2:error=EINVAL|recover file -o old
2|-P seven.cfg -e inject=/stat:error=EIO|run --config seven.cfg good.pipe
EOF
    # A temporary file with a name is removed, also where a signal comes as soon as it is there.
    command=(recover file)
    event=(-e inject=/access:error=ENOENT)
    traced -o ../trace "${event[@]}"
    stop=$(awk '/rt_sigaction/ { ++count } /fwpipe-.*O_CREAT/ { print count + 1 }' trace)
    refill
    before=$(state 2>&1)
    traced -o /dev/null "${event[@]}" -e "inject=rt_sigaction:signal=TERM:when=$stop"
    [[ $status == 143 && $left == "$before" ]] || fail "a signal at a new file: exit status $status"
    # The folder is brought to the disk too.
    command=(recover --in-place link)
    refill
    traced -o ../trace -e trace=fsync
    [[ $(grep -c 'fsync(' trace) == 2 ]] || fail "synced: $(<trace)"
    # A hole is not read.
    command=(dump --count file)
    truncate -s 1G place/file
    traced -o ../trace -e trace=read
    (($(wc -l <trace) < 1000)) || fail "reads of a file with a hole: $(wc -l <trace)"
    # Held lines are shown whole where signals interrupt that.
    command=(run --quiet noline.pipe)
    traced -o /dev/null
    mv err err.wanted
    traced -o /dev/null -P "$box/err" -e trace=write -e inject=write:error=EINTR:when=1
    cmp err err.wanted || fail "held lines, interrupted"
    # A recorder goes on where a signal interrupts it.
    command=(run --quiet --drain record.pipe)
    for stop in 0 1; do
        pipe record 'element ESerialize' 'property Name recorder' "property Strict $stop" 'property Filename record' \
            "${launch[@]:0:3}" 'sink launch' 'connect launch 0 recorder 0'
        for event in '' '-e inject=write:error=EINTR:when=1..9+2'; do
            read -ra event <<<"$event"
            refill
            cp record.pipe place && : >place/record # or strace does not know it
            traced -o ../trace -P record -e trace=write "${event[@]}"
            [[ $status == 0 && $(grep -c INJECTED trace) -ge ${#event[@]} ]] || fail "recording: exit status $status"
            [[ -n ${event[*]} ]] || cp place/record record.wanted
            cmp place/record record.wanted || fail "recording, interrupted"
        done
    done
}
