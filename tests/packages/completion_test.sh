#!/usr/bin/env bash
# completion_test.sh FOLDER: what the shells offer for a command line that was begun. zsh is asked if it is here.
set -euo pipefail
folder=$1
failures=0

fail() {
  printf 'FAILED: %s\n' "$*"
  failures=$((failures + 1))
}

# offers WANTED WORDS...: bash's offers for the last word; "files" where it completes names of files by itself.
offers() {
  local wanted=$1 got
  shift
  got=$(
    compopt() { echo files; }
    . "$folder/quern"
    COMP_WORDS=("$@") COMP_CWORD=$(($# - 1)) COMPREPLY=()
    _quern
    echo "${COMPREPLY[*]}"
  )
  [ "$(echo $got)" = "$wanted" ] || fail "$* is completed by '$got', wanted '$wanted'"
}

offers 'run' quern ru
offers 'trace' quern tr
offers 'info' quern trace i
offers '--version' quern --v
offers '--help --host --hide-sve' quern run --h
offers 'embedded' quern run --host e
offers 'dynamorio' quern run --host d
offers '128 256 512 1024 2048' quern run --vl ''
offers 'dynamorio' quern run --host = d
offers 'text csv jsonl' quern trace dump --format ''
offers 'text csv jsonl' quern trace dump --format =
offers 'files' quern run --trace ''
offers '--lib-dir' quern run --trace my.trace --l
offers '--lib-dir' quern run --trace = my.trace --l
offers 'files' quern run --host dynamorio ''
offers 'files' quern run ./program --l
offers 'files' quern run -- ./program --l
offers 'files' quern run -- ''
offers 'files' quern trace dump my
offers '--format' quern trace dump my.trace --f
offers 'place' quern trace stats my.trace --by p
offers 'files' quern trace plot my.trace --output ''

# zsh_offers WANTED LINE: the same, of a zsh at a terminal, with the functions that come with it.
zsh_offers() {
  local got
  got=$(zsh -f "$(dirname "$0")/zsh_offers.zsh" "$folder" "$2")
  [ "$got" = "$1" ] || fail "zsh completes '$2' by '$got', wanted '$1'"
}
if command -v zsh >/dev/null; then
  zsh_offers 'run' 'quern ru'
  zsh_offers 'check decode list run trace' 'quern '
  zsh_offers 'cache check diff dump export info plot stats' 'quern trace '
  zsh_offers 'csv jsonl text' 'quern trace dump --format '
  zsh_offers '--lib-dir' 'quern run --trace my.trace --l'
else
  echo 'zsh is not here: its completion was not tried'
fi
[ "$failures" = 0 ]
