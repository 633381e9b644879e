#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Usage: examples.sh FWPIPE DOCUMENT PLUGIN COUNTDOWN
# Runs each example of the commands' help, of which DOCUMENT and the manual pages consist, in a folder with the files that
# they name; each succeeds. PLUGIN has EFilter and ERate.
set -euo pipefail
fwpipe=$(realpath "$1") document=$(realpath "$2") plugin=$(realpath "$3") countdown=$(realpath "$4")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir -p "$work/bin" "$work/ready/build" "$work/ready/src"
ln -s "$fwpipe" "$work/bin/fwpipe"
export PATH=$work/bin:$PATH FWLIB_PLUGIN_PATH=$work/place

cd "$work/ready"
cp "$countdown" libcountdown.so
cp "$plugin" librate.so
cp "$plugin" build/librate.so
cat >counter.pipe <<'END'
plugin libfwlib.so
element ESource
property Name counter
element EPassthrough
property Name tap
element EDevNull
property Name end
connect counter 0 tap 0
connect tap 0 end 0
sink counter
source tap
END
cp counter.pipe lab.pipe
cp counter.pipe nested.pipe
printf '%s\n' '[ECountdown]' 'Start=7' >lab.cfg
printf '%s\n' 'plugin libfwlib.so' 'element ESource' 'property Name counter' 'element ESerialize' 'property Name recorder' \
    'connect counter 0 recorder 0' 'sink counter' >record.pipe
"$fwpipe" run --quiet record.pipe >objects.txt
"$fwpipe" launch --print EDeserialize Filename=objects.txt ! EDevNull >replay.pipe
"$fwpipe" test --help | sed -n '/^  --- case/,/^docs/{ /^docs/!s/^  //p; /^$/p; }' >filter.test

examples=0
while IFS= read -r command; do
    rm -rf "$work/place"
    cp -a "$work/ready" "$work/place"
    (cd "$work/place" && bash -o pipefail -c "$command" >"$work/output" 2>&1) || {
        cat "$work/output"
        echo "fails: $command"
        exit 1
    }
    examples=$((examples + 1))
done < <(sed -n '/^Examples:/,/^$/s/^  \(fwpipe .*\)/\1/p' "$document" | sed '/ETee Name/!s/  .*//')
((examples > 30))
