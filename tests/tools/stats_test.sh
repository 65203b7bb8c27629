#!/usr/bin/env bash
# stats_test.sh QUERN: what `quern run` tells of a program's SVE instructions, with the embedded host at work. Left out
# (status 77) where there is no build for AArch64 beside this one.
. "$(dirname "$0")/expect.sh" "$@"
enter_folder
prepare_programs
cat >program.c <<'C'
#include <signal.h>
#include <ucontext.h>
static void skip(int signal, siginfo_t* info, void* context) {
  (void)signal, (void)info;
  ((ucontext_t*)context)->uc_mcontext.pc += 4;
}
__attribute__((noinline)) static void kernel(void) {
  for (int i = 0; i < 10; ++i) __asm__ volatile("ptrue p0.b\n add z0.b, z0.b, z1.b\n" : : : "z0", "p0");
  __asm__ volatile("fabd z2.s, p0/m, z2.s, z3.s\n" : : : "z2");
}
__attribute__((noinline)) static void foreign(void) { __asm__ volatile(".inst 0x44826020\n"); }
int main(int count, char** words) {
  (void)words;
  struct sigaction action = {.sa_sigaction = skip, .sa_flags = SA_SIGINFO};
  if (count == 2) sigaction(SIGILL, &action, 0);
  kernel();
  if (count == 1) return 3;
  foreign();
  foreign();
  return 4;
}
C
cat >fault.c <<'C'
#include <signal.h>
#include <string.h>
__attribute__((noinline)) static long plain(const long* p) { return *(const volatile long*)p; }
__attribute__((noinline)) static void vectors(const long* p) {
  __asm__ volatile("ptrue p0.b\n add z0.b, z0.b, z1.b\n ld1d {z0.d}, p0/z, [%0]\n" : : "r"(p) : "z0", "p0");
}
int main(int count, char** words) {
  static long room[256];
  if (count < 2) return 1;
  vectors(room);  // the place is patched by the time that it faults
  if (!strcmp(words[1], "plain")) return plain(0);
  if (!strcmp(words[1], "raise")) raise(SIGSEGV);
  vectors(0);
}
C
$compiler -O2 -march=armv8-a+sve program.c -o program
$compiler -O1 -march=armv8-a+sve fault.c -o fault
if [[ $("${quern[@]}" run --dry-run ./program 2>&1) == *' no libquern_trap'* ]]; then exit 77; fi

# ends STATUS PATTERN ARGUMENTS...: how it ends, and what it says on standard error.
ends() {
  local wanted=$1 pattern=$2 status=0 output
  shift 2
  output=$("${quern[@]}" run "$@" 2>&1) || status=$?
  [ $status = "$wanted" ] && [[ $output == $pattern ]] ||
    fail "$(printf 'quern run %s\n-- status %s, wanted %s; printed:\n%s\n-- wanted:\n%s' \
      "$*" $status "$wanted" "$output" "$pattern")"
}
# The last is the vector library's.
counts="emulated: 21 instructions, of 3 kinds, at 3 places
by instruction:
          10  add
          10  ptrue
           1  fabd
by place:
          10  ptrue       kernel+0x*
          10  add         kernel+0x*
           1  fabd        kernel+0x*"
refused="quern: sqdmlalb (SVE2) at foreign+0x0 can't be emulated: met"
ends 3 '' ./program
ends 3 "$counts" --stats ./program
ends 3 '' --stats=counts ./program
[[ $(<counts) == $counts ]] || fail "counts in a file: $(<counts)"
ends 4 "$refused 2 times" ./program handled
ends 4 "$refused 2 times"$'\n'"$counts" --stats ./program handled
ends 132 "*was ended by signal 4 (Illegal instruction) at foreign+0x0"$'\n'"$refused 1 time" ./program not handled
ends 125 "$refused 1 time" --strict ./program handled
ends 3 '' --strict ./program
ends 125 '*absent/counts can'\''t be written: No such file or directory' --stats=absent/counts ./program

# Where a fault has ended the program is told by the instruction's symbol; of a signal that was sent there is no place.
ended="*quern: ./fault was ended by signal 11 (Segmentation fault)"
ends 139 "$ended at vectors+0x8" ./fault vectors
ends 139 "$ended at vectors+0x8" --traps ./fault vectors
ends 139 "$ended at plain+0x0" ./fault plain
ends 139 "$ended" ./fault raise
[ "$failures" = 0 ]
