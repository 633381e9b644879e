#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Usage: use.sh ROAD STAGE WORK COMPILER [FLAG...]
# Uses the installed tree the way a user would, and compares what the examples print then. ROAD is
#   cmake        the host programs and the plugins, which find the CMake package
#   pkgconfig    a host program, compiled by hand with what pkg-config says
#   fwpipe       the installed tool
#   new          a plugin project that it writes, with the commands that its message and README name
#   plain        a host program and the plugins without run-time type information and exceptions, in the oldest and newest C++
# None of them is told where the library lies: "plugin libfwlib.so" has to find it.
set -euo pipefail
unset LD_LIBRARY_PATH
root=$(cd "$(dirname "$0")/../.." && pwd)
check=$root/tests/examples/check_example.sh
road=$1 stage=$2 work=$3 compiler=$4
shift 4
flags=$*
rm -rf "$work" && mkdir -p "$work"

build() { # FOLDER
    cmake -S "$root/examples/$1" -B "$work/$1" -DCMAKE_PREFIX_PATH="$stage" \
        -DCMAKE_CXX_COMPILER="$compiler" -DCMAKE_CXX_FLAGS="$flags"
    cmake --build "$work/$1"
}

case $road in
cmake)
    build host
    "$check" examples/host/sum.cpp "$work/host/sum"
    "$check" examples/host/image.cpp "$work/host/image"
    build plugin
    "$check" examples/plugin/countdown.pipe "$stage/bin/fwpipe" \
        "build/plugin/libcountdown.so=$work/plugin/libcountdown.so"
    build csv
    "$check" examples/csv/warm.pipe "$stage/bin/fwpipe" "build/csv/libcsv.so=$work/csv/libcsv.so"
    ;;
pkgconfig)
    PKG_CONFIG_PATH=$(dirname "$(find "$stage" -name fwlib.pc)")
    export PKG_CONFIG_PATH
    read -ra package <<<"$(pkg-config --cflags --libs fwlib)"
    "$compiler" "$@" -std=c++17 -o "$work/sum" "$root/examples/host/sum.cpp" "${package[@]}" \
        "-Wl,-rpath,$(pkg-config --variable=libdir fwlib)"
    "$check" examples/host/sum.cpp "$work/sum"
    ;;
plain)
    library=$(dirname "$(find "$stage" -name libfwlib.so)")
    plain=("$@" -fno-exceptions -fno-rtti -Wall -Wextra -Wpedantic -Werror "-I$stage/include")
    fixed=()
    for standard in c++11 c++2b; do
        "$compiler" "${plain[@]}" "${fixed[@]}" "-std=$standard" -o "$work/plain" "$root/tests/package/plain.cpp" \
            -L"$library" -lfwlib "-Wl,-rpath,$library"
        fixed=(-fno-pie -no-pie) # for the next one
        (cd "$work" && ./plain)
        "$compiler" "${plain[@]}" "-std=$standard" -fPIC -shared -o "$work/libcountdown.so" \
            "$root/examples/plugin/countdown.cpp"
        "$check" examples/plugin/countdown.pipe "$stage/bin/fwpipe" \
            "build/plugin/libcountdown.so=$work/libcountdown.so"
        "$compiler" "${plain[@]}" "-std=$standard" -fPIC -shared -o "$work/libcsv.so" "$root/examples/csv/csv.cpp"
        "$check" examples/csv/warm.pipe "$stage/bin/fwpipe" "build/csv/libcsv.so=$work/libcsv.so"
    done
    ;;
new)
    cd "$work"
    "$stage/bin/fwpipe" new plugin Rate
    cd Rate
    export CMAKE_PREFIX_PATH=$stage CXX=$compiler CXXFLAGS="$flags -Werror"
    cmake --workflow --preset build
    ctest --preset build
    "$stage/bin/fwpipe" run rate.pipe >output
    [[ $(grep -c '^ESink::DataArrived: QObject$' output) == 10 ]] || { cat output && exit 1; }
    "$stage/bin/fwpipe" inspect build/librate.so ERate | sed '1,/^example$/d; s/^  //' >example.pipe
    [[ $("$stage/bin/fwpipe" run example.pipe | grep -c QObject) == 500 ]]
    cp -a "$stage/." copy # the plugin is found in it by its name
    cmake --install build --prefix copy
    sed 's|build/librate|librate|' rate.pipe >installed.pipe
    copy/bin/fwpipe run installed.pipe >installed
    cmp <(grep ESink::D installed) <(grep ESink::D output)
    sed -i 's/++m_uDropped < m_uEvery/++m_uDropped <= m_uEvery/' rate.cpp # the unit test finds a fault
    cmake --workflow --preset build
    if ctest --preset build; then exit 1; fi
    ;;
fwpipe) "$check" examples/counter.pipe "$stage/bin/fwpipe" ;;
*) exit 2 ;;
esac
