#!/usr/bin/env bash
# Runs the loops of host_loops.c under the embedded host, with traps and with patched places, under the framework client
# where QUERN_DYNAMORIO names the framework's folder, and on the processor emulator's own SVE; all are to have the same
# results. With --write it measures them, and writes docs/host-costs.md.
#   host_costs.sh [--write] PROGRAM
# From the environment, by CMake: QUERN_QEMU, QUERN_SYSROOT, QUERN_COUNTER, QUERN_VL_BITS, QUERN_HOST, and
# QUERN_CLIENT_FOLDER with the framework's client. From the user: QUERN_DYNAMORIO; QUERN_LIB_DIR, another folder with the
# client; QUERN_COMMAND, the command that runs it (build/native/bin/quern unless told).
set -euo pipefail
root=$(cd "$(dirname "$0")/../.." && pwd)
page=$root/docs/host-costs.md
write=no
if [ "$1" = --write ]; then
  write=yes
  shift
fi
program=$1
loops="vector_sum byte_copy strided_gather matrix_product fourier_transform"
hosts="traps patched"
[ -z "${QUERN_DYNAMORIO:-}" ] || hosts+=" framework"
rounds=7

qemu=("$QUERN_QEMU")
[ -z "$QUERN_SYSROOT" ] || qemu+=(-L "$QUERN_SYSROOT")
without_sve=("${qemu[@]}" -cpu "max,sve=off,sme=off" -E "LD_PRELOAD=$QUERN_HOST")
with_sve=("${qemu[@]}" -cpu "max,sve$QUERN_VL_BITS=on,sve-default-vector-length=$((QUERN_VL_BITS / 8))")
"$QUERN_QEMU" -help | grep -q -- -plugin || { echo "skipped: $QUERN_QEMU has no plugins" && exit 77; }

# run HOST LOOP [PASSES]: ",COUNT,DIGEST,NANOSECONDS", the first where passes are counted. Only what qemu executes is.
run() {
  local host=$1
  shift
  case $host in
    traps) "${without_sve[@]}" -E QUERN_PATCH=off "$program" "$@" ;;
    patched) "${without_sve[@]}" "$program" "$@" ;;
    framework) "${QUERN_COMMAND:-$root/build/native/bin/quern}" run --host dynamorio \
      --lib-dir "${QUERN_LIB_DIR:-$QUERN_CLIENT_FOLDER}" -- "$program" "$@" ;;
    processor) "${with_sve[@]}" "$program" "$@" ;;
  esac
}
# Under the framework more passes are counted, and so run before: it goes on making code for a while.
counted() {
  local passes=4
  [ "$1" != framework ] || passes=20
  awk -v n="$(QEMU_PLUGIN=$QUERN_COUNTER${3:-} run "$1" "$2" $passes | cut -d, -f2)" -v p=$passes 'BEGIN { print int(n / p) }'
}
ratio() { awk -v a="$1" -v b="$2" -v digits="${3:-1}" 'BEGIN { printf "%.*f", digits, a / b }'; }

# same_results LOOP: whether each host leaves those of the processor.
same_results() {
  local wanted host got
  wanted=$(run processor "$1" 2 | cut -d, -f2)
  for host in $hosts; do
    got=$(run "$host" "$1" 2 | cut -d, -f2)
    if [ -z "$wanted" ] || [ "$got" != "$wanted" ]; then
      echo "$1, $host: $got, not $wanted" >&2
      return 1
    fi
  done
}

# costs_row LOOP: the executed instructions that take the place of each SVE instruction.
costs_row() {
  local all sve host
  all=$(counted processor "$1")
  sve=$(counted processor "$1" ,sve=on)
  printf '| %s | %s | %s ' "$1" "$sve" "$(ratio "$((all - sve))" "$sve" 2)"
  for host in $hosts; do
    printf '| %s ' "$(ratio "$(($(counted "$host" "$1") - all + sve))" "$sve" 0)"
  done
  echo "|"
}

# times_row LOOP: the least of several rounds in which the hosts take turns, against the processor emulator's own SVE.
times_row() {
  local -A least=()
  local round host now
  for ((round = 0; round != rounds; ++round)); do
    for host in processor $hosts; do
      now=$(run "$host" "$1" | cut -d, -f3)
      [ "${least[$host]:-$now}" -lt "$now" ] || least[$host]=$now
    done
  done
  printf '| %s ' "$1"
  for host in $hosts; do printf '| %s ' "$(ratio "${least[$host]}" "${least[processor]}")"; done
  echo "| $(ratio "${least[traps]}" "${least[patched]}") |"
}

# header FIRST LAST: a table's, with the hosts between.
header() {
  local columns="$1 ${hosts// / | }${2:+ | $2}"
  echo "| $columns |"
  sed 's/[^|]*/---/g; s/^/|/; s/$/|/' <<<"$columns"
}

version() { "$QUERN_QEMU" --version | sed -n '1s/.*version \([0-9.]*\).*/\1/p'; }

page() {
  cat <<TEXT
# What the hosts cost

The same loops under each host, on \`qemu-aarch64\` $(version), with $QUERN_VL_BITS bits a vector. They are plain C that
the compiler has turned into SVE (\`bench/host_costs/host_loops.c\`): sums of two arrays of 8,192 numbers; a copy of
32 KiB; every fifth of 8,192 numbers; the product of two matrices of 64 rows; and the Fourier transform of 1,024 complex
numbers, whose first stages have short loops. This page is written by

    cmake --preset aarch64 && ninja -C build/aarch64 update_host_costs

\`QUERN_DYNAMORIO=\$DR\` before it adds the framework's column, if the preset \`native\` has the command and
\`build/aarch64\` the client ([how](dynamorio.md)).

## Executed instructions

What a host executes in the place of one SVE instruction, exactly: the loop's other instructions, *others* for each, are
left out, as are start-up, the making of code, and what the kernel does for a trap, which the emulator does itself.

TEXT
  header "loop | SVE instructions a pass | others |" ""
  for loop in $loops; do costs_row "$loop"; done
  cat <<TEXT

## Time

Processor time as a multiple of that of the emulator's own SVE, the least of $rounds rounds in which all take turns, and
how many times faster patched places are than traps. On a real processor a trap also takes the kernel's microseconds.

TEXT
  header "loop |" "traps / patched"
  for loop in $loops; do times_row "$loop"; done
}

for loop in $loops; do same_results "$loop"; done
if [ $write = yes ]; then
  fresh=$(mktemp)
  trap 'rm -f "$fresh"' EXIT
  page >"$fresh"
  cp "$fresh" "$page"
fi
