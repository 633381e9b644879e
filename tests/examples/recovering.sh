# shellcheck shell=bash
# SPDX-License-Identifier: MIT
# The groups of fwpipe_test.sh on "fwpipe recover".
# shellcheck disable=SC2034,SC2154,SC2053 # names and patterns of fwpipe_test.sh
recover() {
    local ends=(0) i object reason place behind
    for object in 'QObject\nm_b2PropertyCount=2\nQObjectType=QObject\nCount=7\n' 'QObject\nm_b2PropertyCount=0\n' \
        '\nm_b2PropertyCount=3\n=\nexpression=a=b\n\xff\x80=\xc3\x28\r\n' \
        'ttttttttttttttttttttttttttttttt\nm_b2PropertyCount=1\nlong=xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx\n'; do
        printf '%b' "$object" >>all
        ends+=("$(wc -c <all)")
    done
    for ((cut = 0, whole = 0; cut <= ends[4]; ++cut)); do # a file that is cut anywhere
        ((whole == 4 || cut < ends[whole + 1])) || ((++whole))
        head -c "$cut" all >file
        reason='the last line is truncated'
        [[ -n $(tail -c 1 file) ]] || reason='the last lines are missing'
        if ((cut > 0 && whole == 0)); then
            check 1 '' "fwpipe: file does not begin with a complete object ($reason)" recover file -o none
            [[ ! -e none ]] || fail "a file without an object, at byte $cut"
            continue
        fi
        place="file: cut at byte ${ends[whole]}, $((cut - ends[whole])) bytes: no complete object there: $reason"
        ((cut != ends[whole])) || place='file: nothing to cut'
        check $((cut == ends[whole] ? 0 : 3)) '*' '' recover --force file -o kept
        [[ $(<out) == "file: $whole complete object$([[ $whole == 1 ]] || echo s), ${ends[whole]} bytes, kept in kept"$'\n'"$place" ]] ||
            fail "cut at byte $cut: $(<out)"
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
        check 3 $'0 @0 QObject QObjectType=QObject Count=7\n1 object' "fwpipe: no complete object at byte $place" dump --oneline file
        check 1 '' "ERROR: EDeserialize - replay: Run(): no complete object at byte $place"$'\n*' run --drain --quiet replay.pipe
        cmp front kept || fail "replayed: $object"
        behind=$'\nfile: cut with it: 2 complete objects behind the damage; --resync keeps them'
        check 3 "*: ${place#* file: }$behind" '' recover file -o kept --force
        cmp front kept || fail "recovered: $object"
        check 3 "file: 3 complete objects, *: cut at byte ${place%% *}, *: ${place#* file: }" '' recover --resync file -o kept --force
        cmp kept <(cat front front front) || fail "resynchronized: $object"
    done <<'END'
QObject\nm_b2PropertyCount=1\na=\0\n|a line contains a zero byte
QObject\nm_b2PropertyCount=1\nab\n|a property line has no '='
QObject\nm_b2PropertyCount=2\na=b\n|a property line has no '='
QObject\nm_b2PropertyCount=65521\n|the property count is not a number from 0 to 65,520
QObject\nm_b2PropertyCount=1x\na=b\n|the property count is not a number from 0 to 65,520
QObject\nm_b2PropertyCount=\n|expected m_b2PropertyCount=N
QObject\nm_b2PropertyCount=-1\n|expected m_b2PropertyCount=N
QObject\nm_b2PropertyCoun=0\n|expected m_b2PropertyCount=N
tttttttttttttttttttttttttttttttt\nm_b2PropertyCount=0\n|a type line is longer than 31 characters
END

    rm -- * && write 1 QObject a=b >whole && { cat whole && echo QObject; } >file && chmod 640 file && ln -s file link
    check 3 '*' '' recover --in-place link
    cmp file whole || fail "not the complete objects"
    [[ -L link && $(stat -c %a file) == 640 ]] || fail "not in place"
    i=$(stat -c %i file)
    check 0 '*nothing to cut' '' recover --in-place file
    [[ $i == $(stat -c %i file) ]] || fail "replaced although nothing was to be cut"
    echo a picture >file
    check 1 '' "fwpipe: file does not begin with a complete object (the last lines are missing); left unchanged; --force would empty it" \
        recover --in-place file
    [[ $(<file) == 'a picture' ]] || fail "a picture is no recording"
    check 1 '*0 complete objects*cut at byte 0, 10 bytes*' '' recover --in-place --force file
    [[ ! -s file ]] || fail "not emptied"
    check 0 '*nothing to cut' '' recover --in-place file
    { cat whole && echo QObject; } >file && chmod 600 file && ln file other && echo precious >kept
    mkfifo fifo # never a device: a faulty program would replace it for the whole machine
    while IFS='|' read -r object reason; do
        read -ra object <<<"$object"
        check 1 '' "fwpipe: $reason" recover "${object[@]}"
    done <<'END'
file -o kept|kept exists; --force would replace it
file -o file --force|file is the input itself; --in-place would replace it
file -o other --force|other is the input itself; --in-place would replace it
file -o missing/out|cannot write missing/out: No such file or directory
file -o kept/out|cannot write kept/out: Not a directory
file -o /proc/out|cannot write /proc/out: No such file or directory
missing|cannot read missing: No such file or directory
.|. is not a regular file
file -o fifo --force|fifo is not a regular file
END
    [[ $(<kept) == precious && $(tail -n 1 file) == QObject ]] || fail "something changed"
    check 3 '*' '' recover file -o kept --force
    cmp kept whole || fail "not the complete objects"
    [[ $(stat -c %a kept) == 600 ]] || fail "more readable than the input"
    [[ $(echo *) == 'err fifo file kept link other out whole' ]] || fail "left: $(echo *)"
}

# What stands behind damage. Objects are named by their numbers; what is between two of them is damage.
resync() {
    local name kept gaps text word
    object() { printf 'QObject\nm_b2PropertyCount=2\nQObjectType=QObject\nCount=%s\n' "$1"; } # 56 bytes
    while IFS='|' read -r name kept gaps text; do
        : >file
        for word in $text; do
            if [[ $word == [0-9] ]]; then object "$word"; else printf '%b' "$word"; fi >>file
        done
        check 3 "file: ${#kept} complete object*" '' recover --resync --force file -o kept
        [[ $(sed -n 's/^Count=//p' kept | tr -d '\n') == "$kept" ]] ||
            fail "resync: $name: $(<kept)"
        [[ $(sed -n 's/.*cut at byte \([0-9]*\), \([0-9]*\) bytes.*/\1+\2/p' out | tr '\n' ' ') == "$gaps " ]] ||
            fail "resync: $name: $(<out)"
        check 0 '*nothing to cut' '' recover --force kept -o again
    done <<'END'
a line between|123|56+8|1 damage\n\n 2 3
two gaps|12356|56+4 172+4|1 xxx\n 2 3 yyy\n 5 6
a cut object at the end|1234|112+4 228+8|1 2 xxx\n 3 4 QObject\n
a lone object behind damage stays out|1|56+64|1 xxx\n 2 yyy\n
the last object is followed by the end|12|56+4|1 xxx\n 2
an object that is cut in front of others|145|56+107|1 QObject\nm_b2PropertyCount=2\nQObjectType=QObject\nCou 2 4 5
a rest that makes another type of the next one|134|56+70|1 \nm_b2PropertyC 2 3 4
zeros|134|56+62|1 \0\0\0\0\0\0 2 3 4
a count that reaches too far|123|56+31|1 QObject\nm_b2PropertyCount=9999\n 2 3
END
    # Types that nothing contradicts, the longest ones, and the last of two.
    printf 'Q\nm_b2PropertyCount=0\nx\n\nm_b2PropertyCount=0\nlonglonglonglonglonglonglonglon\nm_b2PropertyCount=1\nQObjectType=longlonglonglonglonglonglonglonger\n' >file
    printf 'Q\nm_b2PropertyCount=2\nQObjectType=x\nQObjectType=Q\n' >>file
    check 3 'file: 4 complete objects, *cut at byte 22, 2 bytes*' '' recover --resync file
    # Without --resync they are counted, and only --force takes them away from the file itself.
    { object 1 && echo damage && object 2 && object 3; } >file
    cp file kept
    check 1 '' 'fwpipe: file is damaged at byte 56 (*); left unchanged; --force would cut it off there; --resync keeps 2 complete objects behind the damage' \
        recover --in-place file
    cmp file kept || fail "changed"
    check 3 '*--resync keeps them' '' recover --in-place --force file
    cmp file <(object 1) || fail "not cut off"
    { echo damage && object 2 && object 3; } >file
    check 1 '' 'fwpipe: file does not begin with a complete object (*); left unchanged; --force would empty it; --resync keeps 2 complete objects behind the damage' \
        recover --in-place file
    check 3 '*' '' recover --in-place --resync file
    cmp file <(object 2 && object 3) || fail "not resynchronized in place"
    printf 'QObject\r\nm_b2PropertyCount=0\r\n' >file
    check 1 '' 'fwpipe: file does not begin with a complete object (its lines end in CR LF)' recover file -o none
    check 1 '0 objects' 'fwpipe: no complete object at byte 0 of file: its lines end in CR LF' dump file
    # A hole costs neither memory nor time, and other endless lines no memory.
    for text in 'truncate -s 6G file' 'head -c 300000000 /dev/zero >>file' "head -c 300000000 /dev/zero | tr '\\0' '\\377' >>file"; do
        { object 1 && object 2; } >file
        eval "$text"
        (! ulimit -v 200000 || "$fwpipe" --version >out 2>&1) || continue # sanitizers need more than all
        (ulimit -v 200000 && ulimit -t 10 && "$fwpipe" recover --force file -o kept >out 2>err)
        [[ $? == 3 && $(<out) == *'cut at byte 112, '*': the last line is truncated' ]] || fail "recover behind $text"
        cmp kept <(object 1 && object 2) || fail "recovered behind $text"
        [[ $text == *377* ]] || (ulimit -v 200000 && ulimit -t 10 && "$fwpipe" dump --count file >out 2>err)
        [[ $? == 3 || $text == *377* ]] || fail "dump behind $text"
    done
    rm file # 6 GiB for who copies it
}

# What the new file is in the place of the old one.
place() {
    local status writer
    { write 1 QObject a=b && echo QObject; } >file
    exec 3>>file
    check 1 '' 'fwpipe: file is open for writing; left unchanged' recover --in-place file
    exec 3>&-
    [[ $(tail -n 1 file) == QObject ]] || fail "changed under its writer"
    # No more people than before may read it, whatever the folder gives to new files, and none less.
    python3 - <<'END' || fail "rights"
import os, struct, subprocess, sys
def acl(*entries):
    return struct.pack("<I", 2) + b"".join(struct.pack("<HHI", t, p, i & 0xffffffff) for t, p, i in entries)
ours = acl((1, 6, -1), (2, 4, 1234), (4, 0, -1), (16, 4, -1), (32, 0, -1))
folders = acl((1, 7, -1), (2, 7, 4321), (4, 7, -1), (16, 7, -1), (32, 7, -1))
os.mkdir("folder")
data = open("file", "rb").read()
try:
    os.setxattr("folder", "system.posix_acl_default", folders)
except OSError:
    sys.exit(0)  # no lists here
root = os.getuid() == 0
for mode, rights, owner in (0o640, None, 0), (0o640, ours, 0), (0o400, None, 0), (0o664, None, 1234), (0o640, ours, 1234):
    path = "folder/%o%s%d" % (mode, bool(rights), owner)
    open(path, "wb").write(data)
    os.removexattr(path, "system.posix_acl_access")
    if owner and root:
        os.chown(path, owner, owner)
    os.chmod(path, mode)
    if rights:
        os.setxattr(path, "system.posix_acl_access", rights)
    told = {"user.note": b"kept", "security.capability": bytes.fromhex("0100000200200000") + bytes(12)}
    for name, value in list(told.items()): # of which a change of the owner takes the second away
        try:
            os.setxattr(path, name, value)
        except OSError:
            del told[name]
    before = os.stat(path)
    done = subprocess.run([os.environ["fwpipe"], "recover", "--in-place", path], capture_output=True)
    after = os.stat(path)
    assert (done.returncode, done.stderr) == (3, b""), done
    assert before.st_ino != after.st_ino
    assert (before.st_mode, before.st_uid, before.st_gid) == (after.st_mode, after.st_uid, after.st_gid), path
    names = os.listxattr(path)
    assert ("system.posix_acl_access" in names) == bool(rights), path
    assert not rights or os.getxattr(path, "system.posix_acl_access") == rights
    assert told == {n: os.getxattr(path, n) for n in told if n in names}, (path, names)
END
    [[ $(find folder -name '.*' ! -name folder) == '' ]] || fail "left: $(ls -A folder)"
}

# What others do to the file while it is copied, and what ends that.
meanwhile() {
    local words number signal way status runner only=()
    stopping() { # CALL WORD...: starts fwpipe, which is stopped after its first such call
        rm -f trace
        strace -qq -o trace "${only[@]}" -e trace="$1" -e "inject=$1:signal=SIGSTOP:when=1" "$fwpipe" "${@:2}" >out 2>err &
        runner=$!
        until grep -qs 'stopped by SIGSTOP' trace || ! kill -0 "$runner" 2>/dev/null; do sleep 0.05; done
    }
    ended() { # returns its exit status
        pkill -CONT -P "$runner"
        wait "$runner"
    }
    strace -qq -o trace true 2>err || {
        echo 'skipped: no program may trace another here'
        exit 77
    }
    export ASAN_OPTIONS=detect_leaks=0 LSAN_OPTIONS=detect_leaks=0
    { write 9 QObject a=b && echo QObject; } >damaged
    while IFS='|' read -r words number; do
        rm -f file moved && cp damaged file
        stopping fsync recover --in-place file
        eval "$words"
        status=0
        ended || status=$?
        wait
        [[ $status == 1 && $(<err) == "fwpipe: file $number" && ! -s out ]] || fail "meanwhile $words: exit status $status"
        cmp -n "$(wc -c <damaged)" damaged "$([[ -e moved ]] && echo moved || echo file)" || fail "meanwhile $words: changed"
    done <<'END'
(echo more >>file) & sleep 0.5|was opened for writing meanwhile; left unchanged
touch -hd @1 file|was changed meanwhile; left unchanged
mv file moved && cp damaged file|is another file by now; nothing is changed
mv file moved && ln -s moved file|is another file by now; nothing is changed
mv file moved|is another file by now; nothing is changed
END
    grep -q fsync trace || fail "no copy is seen"
    # A folder that another one takes the name of.
    mkdir folder other && cp damaged folder/file && write 1 QObject c=d >other/file && cp other/file precious
    stopping fsync recover --in-place folder/file
    mv folder old && mv other folder
    ended
    { cmp folder/file precious && cmp old/file <(write 9 QObject a=b); } || fail "another folder's file"
    # What is written until the end is read belongs to it.
    write 9 QObject a=b >file
    only=(-P "$PWD/file")
    stopping read recover file -o grown
    write 1 QObject a=b >>file
    ended
    cmp file grown || fail "another file than at its end"
    [[ $(<out) == "file: 10 complete objects, $(wc -c <file) bytes, kept in grown"* ]] || fail "another size: $(<out)"
    # Nobody may use a file that changes its owner meanwhile.
    if ((EUID == 0)) && chown 1234:1234 file; then
        { strace -qq -o trace -e inject=/access:error=ENOENT -e inject=/fchown:signal=KILL "$fwpipe" recover file -o owned; } 2>/dev/null
        [[ $(stat -c %a .fwpipe-*) == 0 ]] || fail "another owner's file: $(stat -c %a .fwpipe-*)"
        rm -f .fwpipe-*
    fi
    # Nothing is left, whatever ends it, with files without names and with others.
    for way in '' '-e inject=/access:error=ENOENT'; do
        for signal in HUP INT QUIT ALRM TERM USR1 USR2 XCPU PROF VTALRM ABRT SYS TRAP 34 64 KILL; do
            for words in 'damaged -o to/put' '--in-place to/file'; do
                rm -rf to && mkdir to && cp damaged to/file
                [[ $signal != KILL || -z $way ]] || continue # which nobody can catch
                # shellcheck disable=SC2086 # words
                { strace -qq -o trace $way -e inject=fsync:signal="$signal":when=1 "$fwpipe" recover $words 2>err >trash; } 2>/dev/null
                [[ $? -gt 128 && $(ls -A to) == file ]] || fail "$signal at recover $words, $way: $(ls -A to)"
                cmp damaged to/file || fail "$signal: changed"
            done
        done
        # But nothing ends it once the file has its name, nor does what its caller ignores.
        for words in TERM:when=2 HUP:when=1 QUIT:when=1; do
            cp damaged to/file
            # shellcheck disable=SC2086 # words
            (trap '' HUP QUIT && exec strace -qq -o trace $way -e inject=fsync:signal="$words" "$fwpipe" recover --in-place to/file) >trash 2>err
            [[ $? == 3 && $(ls -A to) == file ]] || fail "$words, $way: $(ls -A to)"
            cmp to/file <(write 9 QObject a=b) || fail "$words, $way: not recovered"
        done
    done
    cp damaged to/file
    { strace -qq -o trace -e inject=linkat:signal=QUIT "$fwpipe" recover --in-place to/file 2>err >trash; } 2>/dev/null
    [[ $? -gt 128 && $(ls -A to) == file ]] || fail "a signal while the file has two names: $(ls -A to)"
    rm -rf to && mkdir to && write 100000 QObject a=b >large && echo QObject >>large
    check 3 '*' '' recover large -o to/put && rm -f to/* # without the limit it works
    # A coverage build counts in a folder of its own here: the limit would truncate the counters of the other runs.
    local -x GCOV_PREFIX=$box GCOV_ERROR_FILE=/dev/null
    for way in '' '-e inject=/access:error=ENOENT'; do
        # shellcheck disable=SC2086 # words
        (ulimit -f 1 && exec strace -qq -o /dev/null $way "$fwpipe" recover large -o to/put) >trash 2>err
        [[ $? == 1 && $(<err) == 'fwpipe: cannot write to/put: File too large' && -z $(ls -A to) ]] || fail "a limit of files, $way"
    done
}
