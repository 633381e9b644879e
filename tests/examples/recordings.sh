# shellcheck shell=bash
# SPDX-License-Identifier: MIT
# The groups of fwpipe_test.sh on recordings: "fwpipe dump", and the progress of long runs.
# shellcheck disable=SC2034,SC2154,SC2053 # names and patterns of fwpipe_test.sh
dump() {
    local form value all status
    {
        printf 'Q\x1f[2J\nm_b2PropertyCount=4\nk=1\nk=2\ntwo words=say "hi" \\ \xc2\x9bm\x7f\n\xff=\xc3\x28\xc2\x28\xc2\xa0\r\n'
        printf '\nm_b2PropertyCount=0\nQObject\nm_b2PropertyCount=5\nk=2\ne=a=b\n=\n\xc3\xa4=\t\\\nk=\xe2\x80\xae\xc2\x85\n'
        printf '\xed\xa0\x80\xc0\xaf\xf4\x90\x80\x80\xe2\x81\nm_b2PropertyCount=1\n\xf0\x9f\x92\xa1\xef\xbf\xbf=\xe2\x80\xa9\xe2\x81\xa6\xe2\x81\xa9\xe2\x80\xaa\n'
    } >hostile
    cat >expected <<'END'
object 0 at byte 0: Q\x1f[2J
  k = 1
  k = 2
  two words = say "hi" \\ \xc2\x9bm\x7f
  \xff = \xc3(\xc2(@\x0d

object 1 at byte 70: ""

object 2 at byte 91: QObject
  k = 2
  e = a=b
   = 
  ä = \x09\\
  k = \xe2\x80\xae\xc2\x85

object 3 at byte 145: \xed\xa0\x80\xc0\xaf\xf4\x90\x80\x80\xe2\x81
  💡￿ = |\xe2\x81\xa6\xe2\x81\xa9\xe2\x80\xaa

4 objects
END
    cat >expected--oneline <<'END'
0 @0 Q\x1f[2J k=1 k=2 "two words"="say \"hi\" \\ \xc2\x9bm\x7f" \xff=\xc3(\xc2(@\x0d
1 @70 ""
2 @91 QObject k=2 e=a=b ""="" ä=\x09\\ k=\xe2\x80\xae\xc2\x85
3 @145 \xed\xa0\x80\xc0\xaf\xf4\x90\x80\x80\xe2\x81 💡￿=|\xe2\x81\xa6\xe2\x81\xa9\xe2\x80\xaa
4 objects
END
    cat >expected--json <<'END'
{"type":"Q\u001f[2J","offset":0,"escaped":true,"properties":{"k":["1","2"],"two words":"say \"hi\" \\\\ \u009bm\u007f","\\xff":"\\xc3(\\xc2(@\r"}}
{"type":"","offset":70,"properties":{}}
{"type":"QObject","offset":91,"properties":{"k":["2","\u202e\u0085"],"e":"a=b","":"","ä":"\t\\"}}
{"type":"\\xed\\xa0\\x80\\xc0\\xaf\\xf4\\x90\\x80\\x80\\xe2\\x81","offset":145,"escaped":true,"properties":{"💡￿":"|\u2066\u2069\u202a"}}
END
    cat >expected--json=pairs <<'END'
{"type":"Q\u001f[2J","offset":0,"escaped":true,"properties":[["k","1"],["k","2"],["two words","say \"hi\" \\\\ \u009bm\u007f"],["\\xff","\\xc3(\\xc2(@\r"]]}
{"type":"","offset":70,"properties":[]}
{"type":"QObject","offset":91,"properties":[["k","2"],["e","a=b"],["",""],["ä","\t\\"],["k","\u202e\u0085"]]}
{"type":"\\xed\\xa0\\x80\\xc0\\xaf\\xf4\\x90\\x80\\x80\\xe2\\x81","offset":145,"escaped":true,"properties":[["💡￿","|\u2066\u2069\u202a"]]}
END
    sed -i $'s/@\\(\\\\\\|"\\|\\\\r\\)/\xc2\xa0\\1/; s/|/\xe2\x80\xa9/' expected* # a space and a line end that nobody sees here
    for form in '' --oneline --json --json=pairs; do
        for input in /dev/null hostile; do
            check 0 '*' '*' dump ${form:+"$form"} "$([[ $input == hostile ]] && echo - || echo hostile)"
            diff "expected$form" out || fail "dump $form"
        done
    done
    [[ $(<err) == '4 objects' ]] || fail "no summary of --json"
    "$fwpipe" dump --json=pairs --raw hostile >out 2>err # back to the same bytes
    python3 - <<'END' || fail "--raw --json"
import json
text = b""
for line in open("out", "rb"):
    o = json.loads(line.decode("utf-8", "surrogateescape"))
    text += ("%s\nm_b2PropertyCount=%d\n" % (o["type"], len(o["properties"])) +
        "".join(k + "=" + v + "\n" for k, v in o["properties"])).encode("utf-8", "surrogateescape")
assert text == open("hostile", "rb").read()
END
    check 0 $'object 0 at byte 0: Q\x1f\\[2J\n*say "hi" \\\\ \xc2\x9bm\x7f\n*' '' dump --raw hostile
    script -qec "'$fwpipe' dump 'missing"$'\e'"[2J'" /dev/null </dev/null >terminal
    grep -qF 'cannot read missing\x1b[2J: ' terminal || fail "a message acts on the terminal"

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
--tail=3|789 10 objects
--tail=11|0123456789 10 objects
--tail=1 --where=x=a=b|9 10 of 10 objects
END
    check 0 10 '' dump --count
    check 0 1 '' dump --count --where Count=7
    { cat ten && echo QObject; } >damaged # and --head reads no further than it shows
    for value in '0 --head 10' '3 --head 11' '3 --count' '3 --tail 1' '3 --where Count=x'; do
        read -ra form <<<"$value"
        status=0
        "$fwpipe" dump "${form[@]:1}" damaged >out 2>err || status=$?
        [[ $status == "${form[0]}" ]] || fail "dump of $value: exit status $status"
    done
    check 0 $'*\n2 of 2 objects, the rest not read' '' dump --where x=a=b --head 2
    check 0 '0 of 10 objects' '' dump --where Count=1 --where Count=2
    check 1 '' 'fwpipe: cannot read missing: No such file or directory' dump missing
    check 1 '0 objects' 'fwpipe: cannot read /: Is a directory' dump /
    "$fwpipe" dump <&- >out 2>err
    [[ $? == 1 && $(<err) == 'fwpipe: cannot read standard input: Bad file descriptor' ]] || fail "dump <&-"
    value=$(head -c 3000000 /dev/zero | tr '\0' v) # lines and objects of any length
    { printf 'QObject\nm_b2PropertyCount=1\nk=%s\nQObject\nm_b2PropertyCount=65520\n' "$value" && yes k=v | head -n 65520 && printf QObj; } >long
    input=long
    check 3 "*\"$value\"*" $'2 objects\nfwpipe: no complete object at byte * of standard input: the last line is truncated' dump --json
    [[ $(tail -n 1 out | grep -o '"v"' | wc -l) == 65520 ]] || fail "a long object"
    if (ulimit -v 200000 && "$fwpipe" --version >out 2>&1); then # sanitizers need more than all
        head -c 300000000 /dev/zero | tr '\0' v | (ulimit -v 200000 && "$fwpipe" dump >out 2>err)
        [[ $? == 1 && $(<err) == 'fwpipe: not enough memory: '* ]] || fail "a line longer than memory"
    fi
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

# On a terminal, with longer and longer files until one takes the tenth of a second after which the line appears.
progress() {
    local command times text shown share
    pipe replay "${replay[@]}" 'element EDevNull' 'property Name end' 'connect replay 0 end 0'
    pipe print "${replay[@]}" "${print[@]}" 'connect replay 0 printer 0'
    pipe unsized "${replay[@]/file/unsized}" 'element EDevNull' 'property Name end' 'connect replay 0 end 0'
    mkfifo unsized
    for command in 'recover --force file' 'dump --oneline file >/dev/null' 'dump - <file >/dev/null' \
        'run --drain replay.pipe' 'dump unsized >/dev/null' 'run --drain unsized.pipe' 'run --drain counts.pipe'; do
        share=', [0-9]{1,2}%'
        [[ $command != *@(unsized|counts)* ]] || share=''
        shown="\\r[0-9]+ $([[ $command == *counts* ]] && echo runs || echo objects), [0-9]+/s$share *\\r"
        for ((times = 50000; times < 20000000; times *= 3)); do
            write "$times" QObject a=b >file
            [[ $command != *unsized* ]] || cat file >unsized &
            pipe counts "${print[@]/ESink/EDevNull}" "${launch[@]/Debug 1/Debug 0}" "property Start $times" 'connect launch 0 printer 0'
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
