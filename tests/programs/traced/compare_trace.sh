#!/bin/sh
# compare_trace.sh PROGRAM GOLDEN: runs a program under the embedded host and compares the dump of its trace with a text
# worked out by hand, in which each instruction is told by its distance from the first traced one. From the environment:
#   QUERN_HOST      the embedded host's shared object
#   QUERN_COMMAND   the quern command
#   QUERN_EMULATOR  how to run a program on a processor without SVE; empty when this is one
set -eu
program=$1
golden=$2
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
export QUERN_TRACE="$folder/trace"

# The command in the variable is a list of words.
# shellcheck disable=SC2086
if [ -n "$QUERN_EMULATOR" ]; then
  $QUERN_EMULATOR -E LD_PRELOAD="$QUERN_HOST" "$program"
else
  LD_PRELOAD=$QUERN_HOST "$program"
fi
# shellcheck disable=SC2086
$QUERN_EMULATOR "$QUERN_COMMAND" trace dump --elements --format csv "$QUERN_TRACE" >"$folder/dump"

# Without the thread, which differs from run to run; there must be one only.
while IFS=, read -r count thread kind group size addr pc elements element_bytes lane_bytes; do
  if [ "$count" = count ]; then
    echo "$count $kind $group $size $addr $pc $elements $element_bytes $lane_bytes"
    continue
  fi
  if [ "${only_thread:=$thread}" != "$thread" ]; then
    echo "a second thread: $thread"
  fi
  if [ -z "$pc" ]; then
    echo "$count $kind"
  else
    echo "$count $kind $group $size $addr +$((pc - ${first_pc:=$pc})) $elements $element_bytes $lane_bytes"
  fi
done <"$folder/dump" >"$folder/told"
diff "$golden" "$folder/told" || {
  echo "the trace differs: < is wanted, > was told"
  exit 1
}
