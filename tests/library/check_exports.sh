#!/usr/bin/env bash
# usage: check_exports.sh [--renew] LIBRARY LIST MAJOR_VERSION
# What the shared library exports is what the list has, with the types of all arguments: no more, no
# less. Inline functions and tables of virtual functions, which each compiler places as it likes, do
# not count. A list that was published begins with "# published with major version N": while that
# stands, nothing of it may go, not by renewing either.
set -euo pipefail
renew=
[ "$1" = --renew ] && renew=yes && shift
library=$1 list=$2 major=$3

exported=$(nm -D --defined-only -C "$library" | sed -nE 's/^[0-9a-f]+ [ABDRT] //p' |
  grep -vE '^(std::|__gnu_cxx::|_init$|_fini$|(vtable|typeinfo( name)?) for )' | LC_ALL=C sort -u)
head=$(grep -xF "# published with major version $major" "$list" || true)
listed=$({ grep -v '^#' "$list" || true; } | LC_ALL=C sort -u)
lost=$(LC_ALL=C comm -23 - <(echo "$exported") <<<"$listed")
if [ -n "$head" ] && [ -n "$lost" ]; then
  echo "$library is to be compatible with what was published, and lacks:"
  echo "$lost"
  echo "what is meant to go needs another major version (project() in CMakeLists.txt)"
  exit 1
fi
if [ -n "$renew" ]; then
  printf '%s\n' ${head:+"$head"} "$exported" >"$list"
elif ! difference=$(diff -U 0 <(echo "$listed") - <<<"$exported"); then
  echo "the exports of $library (+) are not those of $list (-):"
  echo "$difference"
  echo "when that is meant, renew the list: $0 --renew $library $list $major"
  exit 1
fi
