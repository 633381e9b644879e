#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Installs Debian packages in a root folder with nothing but a bare system, tries what they contain, and removes them:
# debian.sh PACKAGE.deb... Needs root rights and a mirror of Debian.
# shellcheck disable=SC2016 # expressions for the shell in the new root
set -euo pipefail
packages=("$@")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
bare=$work/root

fail() {
    echo "debian.sh: $1" >&2
    exit 1
}
in_root() { chroot "$bare" /usr/bin/env -i PATH=/usr/bin:/usr/sbin:/bin:/sbin LC_ALL=C.UTF-8 HOME=/root "$@"; }
files() { (cd "$bare" && find . -xdev -not -path './var/*' -not -path './tmp/*' -not -path './root/*' -not -path './etc/ld.so.cache' | sort); }

suite=$(sed -n 's/^VERSION_CODENAME=//p' /etc/os-release)
mmdebstrap --quiet --variant=minbase --include=g++,pkgconf,make,man-db "$suite" "$bare"
rm -f "$bare/etc/dpkg/dpkg.cfg.d/"* # which may exclude manual pages
cp "${packages[@]}" "$bare/tmp/"
files >"$work/before"
in_root bash -c 'dpkg --install /tmp/*.deb'

echo "the tool"
in_root fwpipe --version
in_root bash -c 'cd /usr/share/doc/fwpipe && fwpipe run --quiet examples/counter.pipe | tail -n 1'
in_root fwpipe check /usr/share/doc/fwpipe/examples/counter.pipe
for page in $(in_root bash -c 'ls /usr/share/man/man1 | sed -n "s/\.1\.gz$//p" | grep "^fwpipe"'); do
    in_root man --pager=cat "$page" | grep -q NAME || fail "no manual page $page"
done
in_root man --pager=cat 5 fwpipe-pipe | grep -q KEYWORDS || fail "no manual page fwpipe-pipe"
in_root man --pager=cat 5 fwpipe-recording | grep -q m_b2PropertyCount || fail "no manual page fwpipe-recording"
[[ -e $bare/usr/share/bash-completion/completions/fwpipe ]] || fail "no completion"

echo "the commands of the pages of section 5"
in_root bash -ec 'mkdir /tmp/try && cd /tmp/try
    man --pager=cat 5 fwpipe-pipe | sed -n "s/^ *//; /^plugin libfwlib.so/,/^sink/p" >counter.pipe
    fwpipe check counter.pipe
    fwpipe run --quiet counter.pipe | tail -n 1
    fwpipe graph counter.pipe | head -n 1
    fwpipe launch --quiet ESource ! ESerialize Filename=objects.rec
    fwpipe dump --tail 1 objects.rec'

echo "a plugin, and a program that uses the library"
in_root bash -ec 'cd /tmp/try
    g++ -std=c++17 /usr/share/doc/fwpipe/examples/host/sum.cpp $(pkg-config --cflags --libs fwlib) -o sum
    ./sum
    g++ -std=c++17 -fPIC -shared /usr/share/doc/fwpipe/examples/plugin/countdown.cpp $(pkg-config --cflags fwlib) \
        -o libcountdown.so
    fwpipe inspect ./libcountdown.so'

echo "removal"
in_root rm -rf /tmp/try
mapfile -t names < <(for package in "${packages[@]}"; do dpkg-deb -f "$package" Package; done)
in_root dpkg --purge "${names[@]}"
files >"$work/after"
diff "$work/before" "$work/after" || fail "files remain"
echo "the packages work and are removed cleanly"
