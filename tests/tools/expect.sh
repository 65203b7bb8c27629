# What the tests of the command line share. Sourced with the command as arguments, an emulator before it if need be; ends
# in a file's last line with: [ "$failures" = 0 ]
set -euo pipefail
quern=("$@")
failures=0

fail() {
  printf 'FAILED: %s\n' "$*"
  failures=$((failures + 1))
}

# expect STATUS OUTPUT ARGUMENTS...: what the command prints, on both streams, and its status. Reads standard input.
expect() {
  local status=0 wanted_status=$1 wanted=$2 output
  shift 2
  output=$("${quern[@]}" "$@" 2>&1) || status=$?
  [ "$status" = "$wanted_status" ] && [ "$output" = "$wanted" ] && return
  fail "$(printf 'quern %s\n-- status %s, wanted %s; printed:\n%s\n-- wanted:\n%s' \
    "$*" "$status" "$wanted_status" "$output" "$wanted")"
}
