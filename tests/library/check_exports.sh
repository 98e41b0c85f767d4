#!/usr/bin/env bash
# usage: check_exports.sh [--renew] LIBRARY LIST
# What the shared library exports is what the list has: no more, no less. Inline functions and tables
# of virtual functions, which each compiler places as it likes, do not count.
set -euo pipefail
renew=
[ "$1" = --renew ] && renew=yes && shift
library=$1 list=$2

exported=$(nm -D --defined-only -C "$library" | sed -nE 's/^[0-9a-f]+ [ABDRT] //p' |
  grep -vE '^(std::|__gnu_cxx::|_init$|_fini$|(vtable|typeinfo( name)?) for )' | LC_ALL=C sort -u)
if [ -n "$renew" ]; then
  echo "$exported" >"$list"
elif ! difference=$(diff -U 0 "$list" - <<<"$exported"); then
  echo "the exports of $library (+) are not those of $list (-):"
  echo "$difference"
  echo "when that is meant, renew the list: $0 --renew $library $list"
  exit 1
fi
