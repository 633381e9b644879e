#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# fwpipe test itself: verb.sh FWPIPE DOCUMENT TEST-FILE PLUGINS. The commands of the document print what it shows; a
# changed expectation fails, and --update restores it.
set -euo pipefail
fwpipe=$(realpath "$1") document=$(realpath "$2") cases=$(realpath "$3") plugins=$(realpath "$4")
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cd "$scratch"
fwpipe() { "$fwpipe" "$@"; }

awk '/^```test/ { on = 1; next } /^```/ { on = 0 } on' "$document" >tee.test
awk '/^```console/ { on = 1; next } /^```/ { on = 0 } on' "$document" >shown
while IFS= read -r line; do
    printf '%s\n' "$line"
    [[ $line != '$ '* ]] || eval "${line#??}" 2>&1 || true
done < <(grep '^\$ ' shown) >printed
diff shown printed

# Every expectation of the file's first cases is changed, one at a time; each change is noticed, and undone by --update.
sed '/^--- case what is wrong/,$d' "$cases" >whole.test
fwpipe test --link "$plugins" whole.test >all
changed=0
while IFS=: read -r number _; do
    sed "$number s/.\$/&9/" whole.test >changed.test
    if fwpipe test --link "$plugins" changed.test >found; then
        echo "a change in line $number is not noticed: $(sed -n "$number p" changed.test)"
        exit 1
    fi
    fwpipe test --link "$plugins" --update changed.test >found
    diff whole.test changed.test
    changed=$((changed + 1))
done < <(awk '/^--- / { on = /^--- (printed|stdout|stderr|left|output|built)/ }
              /^--- (answers|exit) / || (on && !/^---/ && NF) { print NR ":" }' whole.test)
((changed > 20))

# A long difference is shortened; a case whose files cannot be written says which.
pipe='--- pipe\nplugin libfwlib.so\nelement ESource\nproperty Name a\nelement ESink\nproperty Name b\nconnect a 0 b 0\nsink a\n'
printf -- '--- case many\n%b--- printed\n' "$pipe" >many.test
! fwpipe test many.test >out || exit 1
diff <(tail -n 2 out) <(printf '(903 more lines)\n0 passed, 1 failed\n')
printf -- '--- case taken\n--- file a\nx\n--- file a/b\ny\n%b' "$pipe" >taken.test
! fwpipe test taken.test 2>out || exit 1
grep -q '^fwpipe: cannot write /.*/a/b: Not a directory$' out

# A case that waits ends with the program, also when only that gets the signal.
mkfifo forever
printf -- '--- case waits\n--- pipe\nplugin libfwlib.so\nelement EDeserialize\nproperty Filename %s\n' "$PWD/forever" >waits.test
"$fwpipe" test --timeout 0 waits.test >out &
tester=$!
{ sleep 20 && kill -KILL "$tester"; } >/dev/null 2>&1 &
until pgrep -P "$tester" >/dev/null; do
    sleep 0.05
done
kill -TERM "$tester"
status=0
wait "$tester" || status=$?
kill %2
[[ $status == 143 ]] || { echo "a test that gets SIGTERM ends with $status" && exit 1; }
