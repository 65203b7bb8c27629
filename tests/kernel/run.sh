#!/usr/bin/env bash
# Runs programs under the embedded host on a Linux kernel and a processor without SVE, and on the same kernel and a
# processor that has it; both must print the same and end in the same way. What the processor emulator's user mode plays
# in the kernel's place (signals, threads, process calls), the kernel itself does here. It prints "N passed, N failed".
#   tests/kernel/run.sh BUILD PROGRAM...
# BUILD is the folder of an AArch64 build, a PROGRAM one of its programs' files, or a script (*.gdb) for the debugger,
# which finds the programs in /programs. Ends with status 77 where there is no kernel: scripts/setup brings it to
# build/kernel/. From the environment:
#   QUERN_ARGUMENT  an argument for the programs
#   QUERN_LIMIT     the seconds that each may take; 120 unless told
#   QUERN_VL        the vector length in bits; the build's own unless told
#   QUERN_PATCH     off: under the embedded host each instruction traps
. "$(dirname "$0")/../../scripts/common.sh"

build=$1
shift
root=build/kernel/root
system=$(find $root/boot -name 'vmlinuz-*' 2>/dev/null | sort -V | tail -1) || true
if [ -z "$system" ] || ! command -v qemu-system-aarch64 >/dev/null || ! command -v cpio >/dev/null; then
  echo "LEFT OUT: there is no kernel, or no machine emulator to run it; scripts/setup brings them."
  exit 77
fi
vector_bits=${QUERN_VL:-$(sed -n 's/^VL_BITS:.*=//p' "$build/CMakeCache.txt")}
host=$build/lib/libquern_trap_$vector_bits.so
limit=${QUERN_LIMIT:-120}
libraries=/usr/aarch64-linux-gnu/lib
[ "$cross" = yes ] || libraries=/lib/aarch64-linux-gnu
log=$build/kernel${QUERN_PATCH:+-$QUERN_PATCH}
mkdir -p "$log"

image=$(mktemp -d)
trap 'rm -rf "$image"' EXIT
mkdir -p "$image"/{bin,debugger,dev,lib,proc,programs,quern,scripts,sys,tmp}
cp $root/bin/busybox "$image/bin/"
cp tests/kernel/init "$image/"
cp -L $libraries/{ld-linux-aarch64.so.1,libc.so.6,libm.so.6,libgcc_s.so.1,libstdc++.so.6} "$image/lib/"
cp "$host" "$build"/lib/libquern_utils.so "$image/quern/"
cp "$build"/programs/libraries/*.so "$image/lib/"
cp "$@" "$image/programs/"
if compgen -G "$image/programs/*.gdb" >/dev/null; then
  mv "$image"/programs/*.gdb "$image/scripts/"
  cp -L $root/usr/bin/gdb $root/lib/aarch64-linux-gnu/lib*.so.* $root/usr/lib/aarch64-linux-gnu/lib*.so.* "$image/debugger/"
fi
(cd "$image" && find . | cpio -o -H newc 2>/dev/null | gzip -1) >"$log/image.cpio.gz"

# boot CPU LOG [ARGUMENTS]: the console of one run, to its end. Guards against other programs' spying by the way that a
# processor guesses cost the emulated machine most of its time.
boot() {
  timeout -k 5 $((1500 + limit)) qemu-system-aarch64 -M virt -cpu "$1" -smp 2 -m 2048 -nographic -nic none -no-reboot \
    -kernel "$system" -initrd "$log/image.cpio.gz" \
    -append "console=ttyAMA0 quiet panic=-1 kpti=off mitigations=off vector_bytes=$((vector_bits / 8)) limit=$limit \
      ${QUERN_ARGUMENT:+argument=$QUERN_ARGUMENT} ${3:-}" </dev/null 2>&1 |
    tr -d '\r' >"$2" || true
  grep -q '^@@done$' "$2" || { tail -20 "$2" >&2 && die "the run on processor $1 did not come to its end: $2"; }
}
# A processor without SVE, but with the half-precision instructions that a program compiled for SVE may count on.
boot cortex-a76 "$log/emulated.log" "host=/quern/${host##*/} ${QUERN_PATCH:+patch=$QUERN_PATCH}" &
emulated=$!
boot "max,sve$vector_bits=on,pauth-impdef=on" "$log/reference.log"
wait $emulated

# What a processor with SVE is no judge of: it ends at the markers of vector_sum, and the kernel may clear vectors in a
# system call, over which the other two keep them. These judge themselves.
unjudged=" vector_sum fork_child handler_keeps_vectors "

# part LOG PROGRAM: what it printed and how it ended, without the process numbers that a debugger tells.
part() { sed -n "/^@@begin $2 /,/^@@stderr/p" "$1" | sed 's/(process [0-9]*)/(process)/'; }
# as_wanted PROGRAM: whether it did what it is to do; else the difference is in the file of that name. What calls its own
# results wrong is so, even if it does on a processor with SVE too.
as_wanted() {
  part "$log/emulated.log" "$1" >"$log/printed"
  ! grep ': WRONG' "$log/printed" >"$log/difference" || return 1
  if [[ $unjudged = *" $1 "* ]]; then
    diff <(echo "@@begin $1 0") <(head -1 "$log/printed") >"$log/difference"
  else
    part "$log/reference.log" "$1" | diff - "$log/printed" >"$log/difference" && [ -s "$log/printed" ]
  fi
}
passed=0 failed=0
for program in "$@"; do
  name=$(basename "$program")
  if as_wanted "$name"; then
    passed=$((passed + 1))
  else
    failed=$((failed + 1))
    echo "$name: < is wanted, > came under the embedded host"
    head -20 "$log/difference"
    sed -n "/^@@begin $name /,/^@@end/p" "$log/emulated.log" | sed -n '/^@@stderr/,$p' | head -10
  fi
done
echo "$passed passed, $failed failed"
[ "$failed" = 0 ]
