#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Usage: graph.sh FWPIPE FOLDER
# Opens pages of "fwpipe graph" in headless Chromium: every element is in the document, the search finds one, no request is
# made; pointer, wheel, buttons and keys do what they should. Writes screenshots of 5, 50 and 500 elements, light and dark,
# into FOLDER, for a person to look at.
set -euo pipefail
fwpipe=$(realpath "$1") gestures=$(realpath "$(dirname "$0")/gestures.js")
mkdir -p "$2"
cd "$2"

browser() { # DARK ARGUMENT...
    timeout 100 chromium --headless --no-sandbox --disable-gpu --disable-background-networking \
        --disable-component-update --hide-scrollbars --window-size=1280,720 \
        --blink-settings=preferredColorScheme="$((1 - $1))" "${@:2}" 2>/dev/null
}

for count in 5 50 500; do
    {
        printf 'plugin libfwlib.so\nelement ESource\nproperty Name element0\nsink element0\n'
        for ((i = 1; i < count; ++i)); do
            printf 'element ETee\nproperty Name element%d\nconnect element%d %d element%d 0\n' \
                "$i" "$((i == 1 ? 0 : i / 2))" "$((i == 1 ? 0 : i % 2))" "$i"
        done
    } >"$count.pipe"
    "$fwpipe" graph -o "$count.html" "$count.pipe" 2>/dev/null
    url=file://$PWD/$count.html
    browser 0 --log-net-log="$PWD/net.json" --dump-dom "$url#element4" >dom
    for ((i = 0; i < count; ++i)); do
        if ! grep -q "id=\"n$i\"" dom || ! grep -q ">element$i</text>" dom; then
            echo "element$i is not in the page"
            exit 1
        fi
    done
    grep -q '<h2>element4</h2>' dom || { echo "the search does not find element4"; exit 1; }
    # Requests of the browser itself have "not an origin".
    if grep '"initiator"' net.json | grep -v '"initiator":"not an origin"' | grep -oE '"url":"(https?|wss?):[^"]*'; then
        echo "the page of $count elements makes requests"
        exit 1
    fi
    { sed '/<\/body>/,$d' "$count.html" && echo '<script>' && cat "$gestures" && echo '</script></body></html>'; } >used.html
    browser 0 --dump-dom "file://$PWD/used.html" >dom
    grep -q '<p id="faults">none</p>' dom || { grep -o '<p id="faults">.*' dom || echo "no result of gestures.js"; exit 1; }
    browser 0 --screenshot="$PWD/$count-light.png" "$url" >/dev/null
    browser 1 --screenshot="$PWD/$count-dark.png" "$url" >/dev/null
    [[ -s $count-light.png && -s $count-dark.png ]]
done
echo "look at the screenshots in $PWD"
