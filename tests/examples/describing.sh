# shellcheck shell=bash
# SPDX-License-Identifier: MIT
# Part of fwpipe_test.sh: inspect, graph and new.
# shellcheck disable=SC2154 # the variables are those of fwpipe_test.sh

common=$'  Name *\n  Debug *number; default 0\n*\n' # the properties of every element

inspect() {
    local type described wanting
    described=$(dirname "$probe")/described.so
    wanting=$(dirname "$probe")/wanting.so

    check 0 $'EDevNull      accepts *\n*\nEPipeline     *\nQObject       *\nQEOF          *' '' inspect
    # shellcheck disable=SC2013 # types are words
    for type in $(cut -d ' ' -f 1 out | grep '^E'); do # each example can be run
        check 0 "$type: *"$'\n\noriginates   *\n\nproperties\n*\n\nexample\n*' '' inspect "$type"
        sed '1,/^example$/d; s/^  //' out >"$type.pipe"
        pipe numbers "${produce[@]}" 'source counter'
        write 1 QObject 'Count=%d' >object
        input=object check 0 '*' '*' run --quiet "$type.pipe"
    done

    check 0 $'EOdd    \\\\x1b[[]31m red \\\\\\\\ é\nEPlain\nQThing  a thing' '' inspect "$described"
    check 0 'EOdd: \\x1b[[]31m red \\\\ é

originates   yes: it may be the sink element
sink pads    2
source pads  as property Whole says; 3 if it is absent

properties
  Whole   number -5 to 18446744073709551615, in m; default 7
          a number
  Real    real from -1e3; default 0.5
          a real number
  Flag    flag; default yes
  Choice  choice of red, green; must be set
          a choice
  File    file to read; default empty
          a file
  Later   of a kind that is not known; must be set
          a \\xff
'"$common"$'
example
  plugin libfwlib.so
  plugin */described.so
  element EOdd
  property Name example
  property Whole 7
  property Real 0.5
  property Flag yes
  property Choice red
  property Later text
  element ESink
  property Name printer
  connect example 0 printer 0
  connect example 1 printer 0
  connect example 2 printer 0
  sink example' '' inspect "$described" EOdd
    check 0 '{"types":[[]{"type":"EOdd","meaning":"\\u001b[[]31m red \\\\ é","originates":true,"sinkPads":{"count":2},"sourcePads":{"property":"Whole","default":3},"properties":[[]{"key":"Whole","kind":"number","default":7,"min":-5,"max":18446744073709551615,"choices":null,"unit":"m","meaning":"a number","required":false},{"key":"Real","kind":"real","default":0.5,"min":-1000.0,"max":null,*"key":"Flag","kind":"flag","default":true,*"key":"Choice","kind":"choice","default":null,"min":null,"max":null,"choices":[[]"red","green"],*"required":true},{"key":"File","kind":"file to read","default":"",*"key":"Later","kind":null,"default":"two words",*"meaning":"a �","required":null},{"key":"Name",*{"key":"Debug",*}]},{"type":"EPlain","meaning":null,*}],"objects":[[]{"type":"QThing","meaning":"a thing"}]}' \
        '' inspect --json "$described"
    check 0 $'QThing: a thing\n\na data object' '' inspect "$described" QThing
    [[ -z $(tail -c 1 out) ]] || fail 'the page of a data object does not end its line'
    check 0 $'EPlain\n*\nexample\n  plugin libfwlib.so\n  plugin *\n  element EPlain\n  property Name example' '' inspect "$described" EPlain
    check 0 '{"types":[[]],"objects":[[]{"type":"QThing","meaning":"a thing"}]}' '' inspect --json "$described" QThing

    # What the plugin does not describe.
    check 0 $'EBare: not described; *\n\noriginates   no\nsink pads    0\nsource pads  1\n\nproperties\n  Colour  of a kind that is not known\n  Width   of a kind that is not known\n  Name*' \
        'fwpipe: Initialize of EBare failed, so pads and keys may be missing here' inspect "$described" EBare
    "$fwpipe" inspect "$described" EThreads | grep '^  k' >out
    [[ $(wc -l <out) == 300 && $(sort -u out | wc -l) == 300 ]] || fail 'keys that threads ask for'
    check 0 '{"types":[[]{"type":"ECountdown","meaning":null,"originates":true,"sinkPads":{"count":0},"sourcePads":{"count":1},"properties":[[]{"key":"Start","kind":null,*' \
        '' inspect --json "$plugin" ECountdown
    check 0 '' "fwpipe: $plugin does not describe its types; name one *" inspect "$plugin"
    check 0 $'QGood\n\na data object' '' inspect "${described/described/good}" QGood
    check 1 '' 'fwpipe: *exception*GoodFactory' inspect "${described/described/good}" Thrown

    check 1 '' "fwpipe: no type EOd in $described; similar: EOdd" inspect "$described" EOd
    check 1 '' "fwpipe: no type QTing in $described; similar: QThing" inspect "$described" QTing
    check 1 '' 'fwpipe: no type esnik in libfwlib.so; similar: ESink' inspect libfwlib.so esnik
    check 1 '' 'fwpipe: no type Quite/other in libfwlib.so' inspect libfwlib.so Quite/other

    # Plugins that cannot be loaded.
    FWLIB_PLUGIN_PATH=some/where check 1 '' $'FWPLUGIN: dlopen() Error: none.so: *\nfwpipe: none.so was looked for in FWLIB_PLUGIN_PATH (some/where), /*/fwlib/plugins, LD_LIBRARY_PATH *' inspect none.so
    check 1 '' 'FWPLUGIN: dlopen() Error: ./ESink: cannot open *' inspect ./ESink
    sed 's/libfwlib\.so\.0/libgoner.so.0/g' "$described" >lost.so
    check 1 '' $'FWPLUGIN: dlopen() Error: libgoner*\nfwpipe: ./lost.so, or a library that it needs, needs libgoner.so.0*, which was looked for in *' inspect ./lost.so
    check 1 '' "FWPLUGIN: dlopen() Error: *fwpipe: $wanting needs Absent::Give(int), which neither *" inspect "$wanting"
    check 1 '' "FWPLUGIN: dlsym() Error: *fwpipe: ${described/described/noentry} is not a plugin: *" inspect "${described/described/noentry}"
    pipe wants "plugin $wanting"
    check 1 '*' "FWPLUGIN: *fwpipe: $wanting needs Absent::Give(int), which neither *"$'\nfwpipe: wants.pipe:2: building failed: *undefined symbol*' run wants.pipe
    pipe nests 'pipe inner.pipe'
    echo 'plugin none.so' >inner.pipe
    check 1 '' $'*\nfwpipe: none.so was looked for in *\nfwpipe: inner.pipe:1: building failed: the loader finds no none.so' run --quiet nests.pipe
    pipe untyped 'element none.so' 'plugin none.so'
    check 1 '*' $'*\nfwpipe: untyped.pipe:2: building failed: no plugin has a type none.so' run untyped.pipe
    mkfifo piped
    cat inner.pipe >piped &
    check 1 '*' $'*\nfwpipe: piped:1: building failed: FWPLUGIN: *none.so: *' run piped # which is not read again
    check 2 '' '*' inspect a b c
    [[ ! -e /dev/full ]] || { "$fwpipe" inspect >/dev/full 2>err && fail 'inspect on a full disk'; }
}

new() {
    local name
    check 0 $'Rate is written. The next commands:\n  cd Rate\n  cmake *\n  ctest *\n  fwpipe run rate.pipe' '' new plugin Rate
    [[ $(cd Rate && echo *) == 'CMakeLists.txt CMakePresets.json README.md rate.cpp rate.pipe rate_test.cpp' ]] ||
        fail "files of the project: $(ls Rate)"
    ! grep -ri placeholder Rate || fail 'a placeholder remains'
    cp -r Rate before
    check 1 '' 'fwpipe: cannot create Rate: File exists' new plugin Rate
    diff -r Rate before || fail 'the project has changed'
    : >Taken
    check 1 '' 'fwpipe: cannot create Taken: File exists' new plugin Taken
    check 1 '' 'fwpipe: cannot create nowhere/Rate: No such file or directory' new plugin Rate --dir nowhere
    mkdir sub
    check 0 'sub/x1y is written.*' '' new plugin x1y --dir sub
    grep -q 'class EX1y : ' sub/x1y/x1y.cpp || fail 'name of the class'
    check 0 'sub/azAZ09 is written.*' '' new plugin azAZ09 --dir sub
    [[ -e sub/azAZ09/azaz09.cpp ]] || fail 'name of the file'
    check 0 'sub/zaZ is written.*' '' new plugin zaZ --dir sub
    grep -q 'class EZaZ : ' sub/zaZ/zaz.cpp || fail 'name of the class in capitals'
    for name in '' 1a a-b ../a é 'ab{' 'ab`' 'ab[' 'ab@' ab/ ab: IO fwLib Sink Object "$(printf 'a%.0s' {1..65})"; do
        check 2 '' 'fwpipe: *NAME: *' new plugin "$name"
    done
    check 2 '' '*' new
    check 2 '' '*' new plugin
    # No file may grow beyond 512 bytes, so the first long one fails.
    (ulimit -f 1 && "$fwpipe" new plugin Big 2>&1 | sed '/^libgcov /d' >err) # coverage builds write more files
    [[ $(<err) == 'fwpipe: cannot write Big/'*': File too large' && ! -e Big ]] || fail 'a project that cannot be written'
}

graph() {
    local odd=$'a<b>"&\\N</script>' note='fwpipe: odd.pipe has mistakes; "fwpipe check" reports them' format
    printf '%s\n' 'element EPassthrough' 'property Name in' 'sink in' 'source in' >inner.pipe
    pipe odd 'element ESource' "property Name $odd" 'element ETee' 'property Name tee' 'pipe inner.pipe' \
        'property Name nested' 'element EDevNul' $'property Name \xff' 'element ESink' 'property Name lonely' $'property Note x\x7fy' \
        "connect $odd 0 tee 0" 'connect tee 0 nested 0' $'connect nested 0 \xff 0' 'connect tee 7 gone 0' "sink $odd"
    for format in dot svg mermaid html json; do
        check 0 '*' "$note" graph --format $format odd.pipe
        cp out "odd.$format"
        [[ $format == json ]] || # the backslash is doubled or a number
            grep -q 'not reached' out || fail "$format: the unreachable element is not marked"
    done
    dot -Tsvg odd.dot >drawn.svg || fail 'dot refuses the drawing'
    cmp -s odd.svg drawn.svg || fail 'the SVG is not that of the DOT form'
    grep -qF '>a&lt;b&gt;&quot;&amp;\N&lt;/script&gt;<' odd.svg || fail 'the odd name is not in the SVG'
    [[ $(sed -n 's/ *\(n.*->.*\) \[.*/\1/p' odd.dot | paste -sd,) == \
        'n0:o0:e -> n1:i0:w,n1:o0:e -> n3:i0:w,n3:o0:e -> n4:i0:w,n1:o7:e -> n6:i0:w' ]] || fail 'the connections are not drawn'
    [[ $(grep -o '<td port="[io][0-9]*"' odd.dot | cut -d '"' -f 2 | sort | uniq -c | tr -d ' \n') == 5i03o01o11o7 ]] || fail 'the pads are not drawn'
    [[ $(grep -c 'bgcolor="#ffcf70">1<' odd.dot) == 1 ]] || fail 'the unconnected pad is not marked'
    [[ $(grep -c '</script>' odd.html) == 2 ]] || fail 'a name ends the script'
    grep -q $'Note = x\xef\xbf\xbdy' odd.dot || fail 'DEL is drawn'
    diff - odd.mermaid <<'END' || fail 'the Mermaid form differs'
flowchart LR
  n0["a#60;b#62;#34;#38;#92;N#60;/script#62;<br/>ESource<br/>sink element"]
  n1["tee<br/>ETee"]
  subgraph n2["nested<br/>inner#46;pipe"]
    n3["in<br/>EPassthrough"]
  end
  n4["�<br/>EDevNul"]
  n5["lonely<br/>ESink<br/>not reached"]
  n6["gone<br/>no such element"]
  n0 -- "0 to 0" --> n1
  n1 -- "0 to 0" --> n3
  n3 -- "0 to 0" --> n4
  n1 -- "7 to 0" --> n6
  style n0 stroke-width:3px
  n1 -. "1" .-x n1o1["not connected"]
  style n5 stroke-dasharray:5 5
  style n6 stroke:#c00000,stroke-dasharray:2 2
END
    python3 - <<'END' || fail 'the JSON form differs'
import json, re
all = json.load(open("odd.json", encoding="utf-8"))
odd = 'a<b>"&\\N</script>'
assert (all["file"], all["sink"]) == ("odd.pipe", odd)
rows = [[e[k] for k in ("name", "type", "line", "parent", "sinkPads", "sourcePads")] for e in all["elements"]]
assert rows == [[odd, "ESource", 2, None, 0, 1], ["tee", "ETee", 4, None, 1, 2],
                ["nested", "inner.pipe", 6, None, 1, 1], ["nested/in", "EPassthrough", 1, "nested", 1, 1],
                ["\ufffd", "EDevNul", 8, None, None, None], ["lonely", "ESink", 10, None, 1, 0]], rows
assert all["elements"][0]["properties"] == {"Name": odd}
assert [list(c.values()) for c in all["connections"]] == [
    [odd, 0, "tee", 0, 13], ["tee", 0, "nested", 0, 14], ["nested", 0, "\ufffd", 0, 15], ["tee", 7, "gone", 0, 16]]
page = json.loads(re.search('id="data".*?>(.*?)</script>', open("odd.html", encoding="utf-8").read())[1])
assert page["elements"][1] == {
    "name": "tee", "type": "ETee", "line": 4, "known": True, "sink": False, "reached": True, "sinkPads": 1, "sourcePads": 2,
    "properties": {"Name": "tee"}, "tooltip": "tee\ntype: ETee\nline: 4\nsink pads: 1\nsource pads: 2\nName = tee"}
assert [e["name"] for e in page["elements"] if e["sink"] or not e["known"]] == [odd, "\ufffd", "gone"], page
assert page["connections"][0] == {"from": 0, "fromPad": 0, "to": 1, "toPad": 0, "tooltip": odd + " 0 to tee 0\nline: 13"}
END
    check 0 '' "$note" graph -o new.json odd.pipe
    cmp -s new.json odd.json || fail '-o new.json is not the JSON form'
    check 2 '' 'fwpipe: the name new.txt tells no format*' graph -o new.txt odd.pipe
    pipe unloaded 'plugin ./none.so' 'element EOther' 'property Name other' 'sink other'
    check 0 '*"EOther"*"sinkPads": null*' 'fwpipe: unloaded.pipe has mistakes; *' graph --format json unloaded.pipe
    check 1 '' 'fwpipe: cannot read none.pipe: No such file or directory' graph none.pipe
    check 1 '' "$note"$'\nfwpipe: cannot write nowhere/x.dot: No such file or directory' graph -o nowhere/x.dot odd.pipe
    PATH=$PWD check 1 '' 'fwpipe: cannot run dot: *the package graphviz' graph -o no.svg odd.pipe
    [[ ! -e no.svg ]] || fail 'a file without a drawing'
}
