#!/usr/bin/env bash
# source_lines_test.sh QUERN: the lines of source that a trace's places are named by, of programs and of a library that
# were run under the embedded host. Left out (status 77) where there is no build for AArch64 beside this one, or this one
# was built without libdw.
. "$(dirname "$0")/expect.sh" "$@"
include=$(realpath "$(dirname "$0")/../../include")
enter_folder
prepare_programs
cat >main.c <<'C'
#include "quern/roi.h"
void load(const void* from);
int main(void) {
  static float room[64];
  quern_roi_begin();
  load(room);
  quern_roi_end();
}
C
cat >load.c <<'C'
void load(const void* from) {
  __asm__ volatile("ptrue p0.s" : : : "p0");
  __asm__ volatile("ld1w {z0.s}, p0/z, [%0]" : : "r"(from) : "z0", "memory");

  __asm__ volatile("ld1w {z0.s}, p0/z, [%0]" : : "r"(from) : "z0", "memory");
}
C
build() { $compiler -O1 -march=armv8-a+sve -I"$include" "$@"; }
build -g -shared -fPIC load.c -o libload.so
build -g main.c load.c -o alone
build -g -no-pie main.c load.c -o fixed
build -g main.c ./libload.so -o linked
build main.c load.c -o bare
if [[ $("${quern[@]}" run --dry-run ./alone 2>&1) == *' no libquern_trap'* ]]; then
  echo 'LEFT OUT: there is no build for AArch64'
  exit 77
fi
if "${quern[@]}" --version | grep -q '^lines     none'; then
  echo 'LEFT OUT: this quern tells no lines, as libdw is not there or was not when it was built'
  exit 77
fi

# lines PROGRAM PLACES: the last column of the statistics.
lines() {
  "${quern[@]}" run --trace "$1.trace" "./$1"
  "${quern[@]}" trace stats "$1.trace" >stats
  [ "$(grep -o 'load+.*' stats | sort)" = "$2" ] || fail "$(printf '%s: wanted\n%s\n-- printed\n%s' "$1" "$2" "$(<stats)")"
}
lines alone 'load+0x4  load.c:3
load+0x8  load.c:5'
lines fixed 'load+0x4  load.c:3
load+0x8  load.c:5'
lines linked 'load+0x4 (libload.so)  load.c:3
load+0x8 (libload.so)  load.c:5'
lines bare 'load+0x4
load+0x8'
"${quern[@]}" trace stats --format csv alone.trace >printed
grep -q "^0x[0-9a-f]*,load+0x8,$folder/load.c:5,1," printed || fail "as CSV: $(<printed)"
[ "$failures" = 0 ]
