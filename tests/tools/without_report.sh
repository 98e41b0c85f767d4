#!/bin/sh
# A tool that was built without its report: without_report.sh LQ.
set -eu
said=$("$1" report a.lqt -o a.html 2>&1) && exit 1
[ "$said" = "lq: this lq was built without its report" ]
for text in --help "--generate man" "--generate bash" "--generate zsh" "--generate fish"; do
  # shellcheck disable=SC2086  # words
  "$1" $text | grep show >/dev/null
  if "$1" $text | grep report; then exit 1; fi
done
