#!/bin/sh
# demo_test.sh VECTOR_SUM BITS: runs the demo's program under the embedded host of a vector length. Its sums are to be
# right, and its trace to tell of the length, and of each vector that its loops go through. From the environment:
#   QUERN_HOST      the embedded host's shared object
#   QUERN_COMMAND   the quern command
#   QUERN_EMULATOR  how to run a program on a processor without SVE; empty when this is one
set -eu
program=$1
bits=$2
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
export QUERN_TRACE="$folder/trace"

# The command in the variable is a list of words.
# shellcheck disable=SC2086
if [ -n "$QUERN_EMULATOR" ]; then
  $QUERN_EMULATOR -E LD_PRELOAD="$QUERN_HOST" "$program" >"$folder/printed"
else
  LD_PRELOAD=$QUERN_HOST "$program" >"$folder/printed"
fi
# shellcheck disable=SC2086
$QUERN_EMULATOR "$QUERN_COMMAND" trace info "$QUERN_TRACE" >>"$folder/printed"

# Two loads and a store for each vector of 32-bit numbers.
vectors=0
for length in 1 63 65 129 1001; do vectors=$((vectors + (length * 32 + bits - 1) / bits)); done
for line in 'all sums are right' "vector length  $bits bits" "  loads        $((2 * vectors)), of 10072 bytes" \
  "  stores       $vectors, of 5036 bytes"; do
  grep -q -x -e "$line" "$folder/printed" && continue
  cat "$folder/printed"
  echo "A line '$line' is wanted."
  exit 1
done
