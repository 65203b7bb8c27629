#!/bin/sh
# refused_trace.sh PROGRAM: where the trace can't be written the embedded host says so in one line, and the program does
# not start. From the environment: QUERN_HOST and QUERN_EMULATOR, as for compare.sh.
set -u
program=$1
folder=$(mktemp -d) || exit 2
trap 'rm -rf "$folder"' EXIT
export QUERN_TRACE="$folder/missing/trace"

# The command in the variable is a list of words.
# shellcheck disable=SC2086
if [ -n "$QUERN_EMULATOR" ]; then
  $QUERN_EMULATOR -E LD_PRELOAD="$QUERN_HOST" "$program" >"$folder/out" 2>"$folder/err"
else
  LD_PRELOAD=$QUERN_HOST "$program" >"$folder/out" 2>"$folder/err"
fi
status=$?
cat "$folder/err"
[ "$status" = 125 ] || { echo "status $status; 125 is wanted" && exit 1; }
[ ! -s "$folder/out" ] || { echo "the program ran" && exit 1; }
[ "$(grep -c '^quern: .*QUERN_TRACE' "$folder/err")" = 1 ] || { echo "one line about QUERN_TRACE is wanted" && exit 1; }
[ "$(wc -l <"$folder/err")" = 1 ] || { echo "more than one line" && exit 1; }
