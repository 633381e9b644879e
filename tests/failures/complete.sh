#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Usage: complete.sh LIBRARY CALL...
# Every function that the library calls is among the calls that are made to fail, or cannot fail, or reports itself.
set -euo pipefail
library=$1 called=$(nm -D --undefined-only "$1" | awk '{ print $2 }' | sed 's/@.*//' | sort -u)
shift
harmless='__u?(div|mod)[dt]i[34]|_ITM.*|_Unwind.*|_Z.*|__(asan|ubsan|gmon|gxx|cxa|dynamic|errno|stack|assert|popcount|isoc99).*|_?_?(mem|str|is|to).*'
harmless+='|(__)?v?(f|s|sn)?printf(_chk)?|puts|putchar|fputc|std(in|out|err)|clock|ftell|feof|ferror|fileno|__fpending'
harmless+='|dlerror|dlinfo|dladdr1?|stat(64)?|bcmp|abort|pthread.*|___tls_get_addr|free'
missing=$(grep -vxE "$harmless" <<<"$called" | grep -vxF "$(printf '%s\n' "$@")" || true)
[ -z "$missing" ] || { echo "$library calls what no test lets fail:" "$missing"; exit 1; }
