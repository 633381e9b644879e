#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Usage: headers.sh INCLUDE_DIR [FLAG...]
# Every installed header stands alone, twice in one file, in the oldest and the newest C++, without a warning from g++ and
# (where there is one) clang++; the umbrella, in each C++ since C++11, includes every other one but those for tests; nothing
# internal is installed.
# Mistakes in a plugin are explained by the compiler.
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
            [[ $standard != @(c++14|c++17|c++20) || $header == fwlib/fwlib.h ]] || continue
            printf '#include <%s>\n' "$header" "$header" | "$compiler" "$@" "${strict[@]}" "-std=$standard" -x c++ - || {
                echo "$compiler, $standard: $header does not stand alone"
                failed=1
            }
        done
    done
done
# Mistakes that the compiler explains, in one line each.
while IFS='|' read -r explained code; do
    printf '#include <fwlib/fwlib.h>\nusing namespace VESK;\n%s\n' "$code" |
        { g++ "$@" -fsyntax-only -std=c++11 "-I$include" -x c++ - 2>&1 || true; } | grep -F "$explained" >/dev/null || {
        echo "not explained by \"$explained\": $code"
        failed=1
    }
done <<'EOF'
Text fills a std::string|struct E : Element<E> { char* m; static void Declare(Declaration<E>& c) { c.Text("T", &E::m, "", ""); } };
is private|class E : public Element<E> { int RunsEnded(); public: static const char* TypeName; static void Declare(Declaration<E>&); } e;
plugin's types are classes|FWLIB_PLUGIN(int)
EOF
object=$(mktemp)
printf '#include <fwlib/fwlib.h>\nnamespace { FWLIB_PLUGIN() }\n' |
    g++ "$@" -std=c++11 "-I$include" -c -x c++ - -o "$object"
if (($(nm -g "$object" | grep -cE ' T Get(Factory|PluginDescription)$') != 2)); then
    echo "a plugin in a namespace does not export its functions"
    failed=1
fi
rm "$object"
for header in "${headers[@]}"; do
    [[ $header == fwlib/testing/* || $header == fwlib/fwlib.h ]] && continue
    if ! grep -qF "#include \"$header\"" "$include/fwlib/fwlib.h"; then
        echo "fwlib/fwlib.h does not include $header"
        failed=1
    fi
done
exit "$failed"
