#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Usage: complete.sh LIBRARY CALL...
# Every function that the library calls is among the calls that are made to fail, or cannot fail, or reports itself.
# What takes memory is never among the last two: neither realloc and strdup nor an operator new that throws.
set -euo pipefail
library=$1 called=$(nm -D --undefined-only "$1" | awk '{ print $2 }' | sed 's/@.*//' | sort -u)
shift
harmless='__u?(div|mod)[dt]i[34]|_ITM.*|_Unwind.*|__(asan|ubsan|gmon|gcc|ctype|gxx|cxa|dynamic|errno|stack|assert|popcount|isoc99).*'
harmless+='|_ZT[ISV].*|_ZSt(7nothrow|9terminatev)|_Zd[al].*|_?_?(is|to).*'
harmless+='|_?_?(mem(chr|cmp|cpy|move|set)|str(n?(case)?cmp|n?(cat|cpy|len)|r?chr|c?spn|error|pbrk|str|to[a-z]+))(_chk)?'
harmless+='|(__)?v?(f|s|sn)?printf(_chk)?|puts|putchar|fputc|std(in|out|err)|clock(_gettime|_nanosleep)?|ftell|feof|ferror|clearerr|fileno|__fpending'
harmless+='|newlocale|strto[df]_l|_ZN?St(3__1)?8to_charsE?PcS0?_[df].*' # the locale "C" and numbers need no memory
harmless+='|dl_iterate_phdr|_ZSt[0-9]+__glibcxx_assert_fail.*'
harmless+='|secure_getenv|fcntl64|dlerror|dlinfo|dladdr1?|stat(64)?|bcmp|abort|pthread.*|___tls_get_addr|free'
# A Debug build keeps a list of the living objects, in which those are missing that there is no memory for.
[[ $called != *Rb_tree_insert* ]] || harmless+='|_ZSt[0-9]+_(_throw|Rb_tree)_.*|_Znw[jm]'
missing=$(grep -vxE "$harmless" <<<"$called" | grep -vxF "$(printf '%s\n' "$@")" || true)
[ -z "$missing" ] || { echo "$library calls what no test lets fail:" "$missing"; exit 1; }
