#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Usage: headers.sh INCLUDE_DIR [FLAG...]
# Every installed header stands alone, twice in one file, in each C++ since C++11, without a warning from g++ and (where
# there is one) clang++; the umbrella includes every other one but those for tests; nothing internal is installed.
set -euo pipefail
include=$1 failed=0
shift
strict=(-Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror -fsyntax-only "-I$include")

mapfile -t headers < <(cd "$include" && find fwlib -name '*.h' | sort)
if ((${#headers[@]} < 15)) || [ -e "$include/fwlib/internal" ]; then
    echo "not the public headers: ${headers[*]}"
    exit 1
fi
for compiler in g++ clang++; do
    command -v "$compiler" >/dev/null || continue
    for standard in c++11 c++14 c++17 c++20 c++2b; do
        for header in "${headers[@]}"; do
            printf '#include <%s>\n' "$header" "$header" | "$compiler" "$@" "${strict[@]}" "-std=$standard" -x c++ - || {
                echo "$compiler, $standard: $header does not stand alone"
                failed=1
            }
        done
    done
done
for header in "${headers[@]}"; do
    [[ $header == fwlib/testing/* || $header == fwlib/fwlib.h ]] && continue
    if ! grep -qF "#include \"$header\"" "$include/fwlib/fwlib.h"; then
        echo "fwlib/fwlib.h does not include $header"
        failed=1
    fi
done
exit "$failed"
