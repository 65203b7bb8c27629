#!/bin/sh
# ends_test.sh PROGRAM: of each way to end, the embedded host's trace tells whether it is one in good order. From the
# environment:
#   QUERN_HOST      the embedded host's shared object
#   QUERN_COMMAND   the quern command
#   QUERN_EMULATOR  how to run a program on a processor without SVE; empty when this is one
set -u
program=$1
folder=$(mktemp -d) || exit 2
trap 'rm -rf "$folder"' EXIT
cd "$folder" || exit 2
export QUERN_TRACE="$folder/trace"
failures=0

# ends WAY STATUS LOADS ENDS: the program's status, the loads in all traces, and how these tell that they ended.
# shellcheck disable=SC2086  # the command in the variable is a list of words
ends() {
  if [ -n "$QUERN_EMULATOR" ]; then
    $QUERN_EMULATOR -E LD_PRELOAD="$QUERN_HOST" "$program" "$1"
  else
    LD_PRELOAD=$QUERN_HOST "$program" "$1"
  fi
  status=$?
  for trace in trace*; do $QUERN_EMULATOR "$QUERN_COMMAND" trace info "$trace"; done >told
  rm -f trace*
  loads=$(sed -n 's/^  loads *\([0-9]*\),.*/\1/p' told | tr '\n' ' ')
  told=$(sed -n 's/^ended *\([a-z ]*\).*/\1/p' told | sort | tr '\n' ',')
  [ "$status, $loads, $told" = "$2, $3 , $4," ] && return
  echo "FAILED: $1: status $status, loads $loads, ended $told"
  failures=$((failures + 1))
}
ends exit 7 1 'in good order'
ends _exit 7 1 'in good order'
ends _Exit 7 1 'in good order'
ends quick_exit 7 2 'in good order'
ends fork 137 '1 1' 'in good order,not in good order'
ends vfork 137 1 'not in good order'
ends kill 137 1 'not in good order'
[ $failures = 0 ]
