#!/usr/bin/env bash
# Fails if a form costs over a tenth more than form_costs.csv says; with --write, writes that table and its summary anew.
#   compare.sh [--write] CONFIGURATION COMMAND...
# COMMAND writes the costs. They are compared where the table is of the same configuration, else this exits 77: skipped.
set -euo pipefail
folder=$(cd "$(dirname "$0")" && pwd)
table=$folder/form_costs.csv summary=$folder/../../docs/form-costs.md

write=no
if [ "$1" = --write ]; then
  write=yes
  shift
fi
configuration=$1
shift

skip() { echo "skipped: $*"; exit 77; }
[ $write = yes ] || [ "$(head -n 1 "$table")" = "# $configuration" ] ||
  skip "the table is of '$(head -n 1 "$table")', this build of '# $configuration'"
"$1" -help | grep -q -- -plugin || skip "$1 has no plugins"

fresh=$(mktemp)
trap 'rm -f "$fresh"' EXIT
{
  echo "# $configuration"
  echo "form,route,all,half,traced"
  "$@"
} >"$fresh"
! grep -Evq '^#|^form,|^[A-Za-z0-9_]+,[a-z_]+,[0-9]+,[0-9]+,[0-9]+$' "$fresh" || { echo "a form has no costs"; exit 1; }

if [ $write = yes ]; then
  cp "$fresh" "$table"
  "$folder/summary.sh" "$table" >"$summary"
  exit
fi
awk -F, -v OFS=' ' '
  /^#|^form,/ { next }
  NR == FNR { known[$1]; all[$1] = $3; half[$1] = $4; traced[$1] = $5; next }
  function judge(what, now, before) {
    if (now * 10 > before * 11) { print $1 ", " what ": " now " instructions, " before " before"; grown = 1 }
  }
  !($1 in known) { print $1 " is not in the table"; grown = 1; next }
  { judge("all lanes active", $3, all[$1]); judge("half of them", $4, half[$1]); judge("traced", $5, traced[$1]) }
  END { if (grown) print "if this has to be, build the target update_form_costs and commit what it writes"; exit grown }
' "$table" "$fresh"
