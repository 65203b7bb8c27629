# What the tests of the command line share. Sourced with the command as arguments, an emulator before it if need be; ends
# in a file's last line with: [ "$failures" = 0 ]
set -euo pipefail
quern=("$@")
failures=0

# A folder of the test's own: the current one from here on, gone at the end.
enter_folder() {
  folder=$(realpath "$(mktemp -d)")
  trap 'rm -rf "$folder"' EXIT
  cd "$folder"
}

# For tests that start programs: none of the caller's settings, the compiler of AArch64 programs, and the vector length
# that the libraries' names have.
prepare_programs() {
  unset QUERN_TRACE QUERN_VL QUERN_LIB_DIR QUERN_DYNAMORIO LD_PRELOAD
  if [ "$(uname -m)" = aarch64 ]; then compiler=gcc; else compiler=aarch64-linux-gnu-gcc; fi
  bits=$("${quern[@]}" --version | sed -n 's/.*(\([0-9]*\)-bit.*/\1/p')
}

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
