#!/usr/bin/env bash
# manual_test.sh FOLDER QUERN...: the manual's pages are sound, and each command that there is has one.
set -euo pipefail
folder=$1
shift
quern=("$@")
failures=0

fail() {
  printf 'FAILED: %s\n' "$*"
  failures=$((failures + 1))
}

pages=("$folder"/*.[15])
[ ${#pages[@]} -gt 2 ] || fail "there are no pages in $folder"
for page in "${pages[@]}"; do
  complaints=$(groff -K utf8 -t -man -ww -W break -Tutf8 -z "$page" 2>&1)
  [ -z "$complaints" ] || fail "$page: $complaints"
  for part in NAME DESCRIPTION 'SEE ALSO'; do
    grep -qx "\.SH $part" "$page" || fail "$page has no section $part"
  done
  ! grep -q '@' "$page" || fail "$page has a place that was not filled"
done

# What the manual tells of each command is what its help tells.
commands=$("${quern[@]}" --help | sed -n '/^Subcommands:/,$s/^  \([a-z]*\) .*/\1/p')
[ -n "$commands" ] || fail "there are no commands"
for command in '' $commands; do
  page=$folder/quern${command:+-$command}.1
  [ -e "$page" ] || { fail "quern $command has no page" && continue; }
  text=$(groff -K utf8 -t -man -Tascii -P-cbou "$page")
  for option in $("${quern[@]}" $command --help | sed -n 's/^  \(-[^ ]*\).*/\1/p' | tr ',' ' '); do
    grep -q -- "$option" <<<"$text" || fail "$page does not tell of $option"
  done
done
[ "$failures" = 0 ]
