#!/usr/bin/env bash
# usage: check_calls.sh LIBRARY...
# The library prints nothing, ends no process, throws nothing, and gets its memory in one place: none
# of its undefined symbols is one of forbidden.txt, and one object alone calls the allocator. And it
# defines no symbol that is bound once for the whole process, which would keep it loaded for ever.
set -euo pipefail
here=$(dirname "${BASH_SOURCE[0]}")

status=0
refuse() {  # WHAT LINES
  [ -z "$2" ] && return
  printf '%s:\n%s\n' "$1" "$2"
  status=1
}

for library in "$@"; do
  dynamic=-D
  [[ $library == *.a ]] && dynamic=
  # Without the compiler's plugin, which does not show what objects to be optimised as one call.
  called=$(nm --plugin=/dev/null -A -u -C $dynamic "$library" | sed -nE 's/^(.*): +[Uvw] ([^@]*).*/\2\t\1/p' | sort -u)
  [ -n "$called" ] || refuse "$library: no undefined symbols were found" "-"
  names=$(cut -f 1 <<<"$called" | grep -xE -f "$here/forbidden.txt" || true)
  refuse "$library calls what the library must not" "$names"
  refuse "$library is never unloaded" "$(nm -C $dynamic "$library" | grep ' u ' || true)"
  if [ -z "$dynamic" ]; then
    refuse "$library gets memory outside of frame/memory.cpp" \
      "$(grep -E $'^(malloc|calloc|realloc|free|strdup|aligned_alloc)\t' <<<"$called" |
        grep -v ':memory\.cpp' || true)"
  fi
done
exit $status
