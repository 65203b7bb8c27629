#!/bin/sh
# compare.sh PROGRAM [ARGUMENTS...]: runs a program under the embedded host and, where there is one, on a processor with
# SVE; both must print the same and end in the same way. Without a reference the program's own judgement is all. From the
# environment:
#   QUERN_HOST       the embedded host's shared object
#   QUERN_EMULATOR   how to run a program on a processor without SVE; empty when this is one
#   QUERN_REFERENCE  how to run it on a processor with SVE; empty when there is none
set -u
program=$1
shift
name=$(basename "$program")
folder=$(mktemp -d) || exit 2
trap 'rm -rf "$folder"' EXIT
cd "$folder" || exit 2  # for core files and traces

# The status that a program must end with.
case $name in
  sigill_*) [ "$name" = sigill_handler_kept ] && wanted=0 || wanted=132 ;;
  segv_*) [ "$name" = segv_handler_kept ] && wanted=0 || wanted=139 ;;
  *) wanted=0 ;;
esac

# A program that hangs may heed no signal but SIGKILL.
limit="timeout -k 1 ${QUERN_LIMIT:-120}"

# The commands in the variables are lists of words.
# shellcheck disable=SC2086
if [ -n "$QUERN_EMULATOR" ]; then
  $limit $QUERN_EMULATOR -E LD_PRELOAD="$QUERN_HOST" "$program" "$@" >emulated.out 2>emulated.err
else
  $limit env LD_PRELOAD="$QUERN_HOST" "$program" "$@" >emulated.out 2>emulated.err
fi
status=$?
cat emulated.out emulated.err
if [ "$status" != "$wanted" ]; then
  echo "$name ended with status $status under the embedded host; $wanted is wanted."
  exit 1
fi
if grep -q 'failed to emulate' emulated.err; then
  echo "$name has instructions that the emulator does not carry out."
  exit 1
fi
[ -n "$QUERN_REFERENCE" ] || exit 0

# shellcheck disable=SC2086
$limit $QUERN_REFERENCE "$program" "$@" >reference.out 2>reference.err
reference_status=$?
if [ "$reference_status" != "$status" ]; then
  echo "$name ended with status $reference_status on a processor with SVE, with $status under the embedded host."
  cat reference.out reference.err
  exit 1
fi
if ! diff reference.out emulated.out; then
  echo "$name printed < on a processor with SVE, > under the embedded host."
  exit 1
fi
