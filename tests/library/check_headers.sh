#!/usr/bin/env bash
# usage: check_headers.sh SOURCE_FOLDER
# Each header that users see compiles alone, and twice, with every compiler there is.
set -euo pipefail
cd "$1"

check() {  # COMPILER HEADER
  local include="#include \"$2\""
  printf '%s\n' "$include" "$include" |
    "$1" -std=c++20 -fsyntax-only -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror \
      -I include -x c++ - || { echo "$2 does not compile alone with $1" && return 1; }
}
export -f check

for compiler in g++ clang++; do
  command -v $compiler >/dev/null || continue
  find include -name '*.h' -printf '%P\n' |
    xargs -P "$(nproc)" -I {} bash -c "check $compiler {}"
done
