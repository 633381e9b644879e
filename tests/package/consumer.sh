#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Usage: consumer.sh ROAD STAGE WORK COMPILER [FLAG...]
# Uses the installed tree the way a user would, and runs the result far from it. ROAD is
#   cmake        the consumer, which finds the CMake package
#   pkgconfig    the consumer, compiled by hand with what pkg-config says
#   fwpipe       the installed tool
#   examples     the host program and the plugin, built as their own comments say
# None of them is told where the library lies: "plugin libfwlib.so" has to find it.
set -euo pipefail
unset LD_LIBRARY_PATH
consumer=$(cd "$(dirname "$0")" && pwd)/consumer
road=$1 stage=$2 work=$3 compiler=$4
shift 4
flags=$*
rm -rf "$work" && mkdir -p "$work"

# Runs a command from the root folder and wants this last line from it.
expect() {
    local wanted=$1 last
    shift
    last=$(cd / && "$@" | tail -n 1)
    [ "$last" = "$wanted" ] || { echo "wanted \"$wanted\", got \"$last\"" && exit 1; }
}

build() { # SOURCE FOLDER
    cmake -S "$1" -B "$2" -DCMAKE_PREFIX_PATH="$stage" -DCMAKE_CXX_COMPILER="$compiler" -DCMAKE_CXX_FLAGS="$flags"
    cmake --build "$2"
}

case $road in
cmake)
    build "$consumer" "$work"
    expect "consumer: 1000 objects" "$work/consumer" "$consumer/consumer.pipe"
    ;;
pkgconfig)
    PKG_CONFIG_PATH=$(dirname "$(find "$stage" -name fwlib.pc)")
    export PKG_CONFIG_PATH
    read -ra package <<<"$(pkg-config --cflags --libs fwlib)"
    "$compiler" "$@" -std=c++17 -o "$work/consumer" "$consumer/consumer.cpp" "${package[@]}" \
        "-Wl,-rpath,$(pkg-config --variable=libdir fwlib)"
    expect "consumer: 1000 objects" "$work/consumer" "$consumer/consumer.pipe"
    ;;
fwpipe)
    cat >"$work/print.pipe" <<'PIPE'
plugin libfwlib.so
element ESource
property Name numbers
element ESink
property Name printer
sink numbers
connect numbers 0 printer 0
PIPE
    expect "ESink::DataArrived: QObject" "$stage/bin/fwpipe" run --quiet "$work/print.pipe"
    ;;
examples)
    root=$(cd "$(dirname "$0")/../.." && pwd)
    check=$root/tests/examples/check_example.sh
    build "$root/examples/host" "$work/host"
    "$check" examples/host/sum.cpp "$work/host/sum"
    "$check" examples/host/image.cpp "$work/host/image"
    build "$root/examples/plugin" "$work/plugin"
    "$check" examples/plugin/countdown.pipe "$stage/bin/fwpipe" \
        "build/plugin/libcountdown.so=$work/plugin/libcountdown.so"
    ;;
*)
    echo "no such road: $road"
    exit 2
    ;;
esac
