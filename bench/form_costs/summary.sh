#!/usr/bin/env bash
# Writes docs/form-costs.md from the table of what each form costs: summary.sh TABLE.
set -euo pipefail

rows() { grep -Ev '^#|^form,' "$1"; }
# The value at a fraction of the sorted column: at COLUMN FRACTION, rows on the standard input.
at() { cut -d, -f"$1" | sort -n | awk -v f="$2" '{ v[NR] = $1 } END { print v[int((NR - 1) * f) + 1] }'; }

cat <<TEXT
# What each form costs

Executed AArch64 instructions for one call of a form's thunk, call and return included: exact, without the noise of
time. \`bench/form_costs/form_costs.csv\` has a line for each of the $(rows "$1" | wc -l) forms; this page sums it up. Configuration:
$(head -n 1 "$1" | cut -c3-).

    cmake --preset aarch64 && ninja -C build/aarch64 update_form_costs

writes both anew; the test \`form_costs\` fails when a form has grown by more than a tenth. *half*: every other lane is
active; *traced*: all lanes, with records going to a sink that costs next to nothing. Lanes hold ordinary numbers: an
invalid operation among halves, such as the root of a negative one, has the whole call computed in software, which takes
7,000 to 26,000 instructions.

| route | forms | median | nine tenths within | most | median, half | median, traced |
|---|---|---|---|---|---|---|
TEXT
for route in direct direct_fp library none; do
  of_route=$(rows "$1" | grep ",$route,")
  echo "| $route | $(wc -l <<<"$of_route") | $(at 3 0.5 <<<"$of_route") | $(at 3 0.9 <<<"$of_route")" \
    "| $(at 3 1 <<<"$of_route") | $(at 4 0.5 <<<"$of_route") | $(at 5 0.5 <<<"$of_route") |"
done
cat <<'TEXT'

The forty that cost most with all lanes active:

| form | route | all | half | traced |
|---|---|---|---|---|
TEXT
rows "$1" | sort -t, -k3,3nr -k1,1 | sed -n 1,40p | sed 's/,/ | /g; s/.*/| & |/'
