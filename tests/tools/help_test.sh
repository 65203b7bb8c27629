#!/usr/bin/env bash
# help_test.sh QUERN: the help of all commands, at 80 columns.
. "$(dirname "$0")/expect.sh" "$@"

# fits COMMAND...: no line is wider.
fits() {
  local help
  help=$("${quern[@]}" "$@" --help)
  [ -z "$(grep -E '^.{81}' <<<"$help")" ] || fail "$* --help is wider than 80 columns: $(grep -E '^.{81}' <<<"$help")"
}
commands() { "${quern[@]}" "$@" --help | sed -n '/^Subcommands:/,$s/^  \([a-z]\+\) .*/\1/p'; }

fits
for command in $(commands); do fits "$command"; done
for command in $(commands trace); do fits trace "$command"; done
[ "$(commands | wc -l)" -ge 5 ] && [ "$(commands trace | wc -l)" -ge 8 ] || fail "commands: $(commands) $(commands trace)"

# What is broken goes on in the column that it began in, and loses nothing.
wanted="  --vl BITS:{128,256,512,1024,2048}
                              The vector length in bits, one that quern
                              --version lists; else that of QUERN_VL, else the
                              one that quern --version has in brackets"
[ "$("${quern[@]}" run --help | sed -n '/--vl/,/brackets/p')" = "$wanted" ] || fail "$("${quern[@]}" run --help)"
wanted="The exit status is the program's, or 128 plus the number of the signal that
ended it."
[ "$("${quern[@]}" run --help | sed -n '/^The exit/,$p')" = "$wanted" ] || fail "$("${quern[@]}" run --help)"
[ "$failures" = 0 ]
