#!/usr/bin/env bash
# check_test.sh QUERN...: what `quern check` tells of programs whose code is written here.
. "$(dirname "$0")/expect.sh" "$@"
enter_folder
prepare_programs

cat >code.s <<'S'
.arch armv8.6-a+sve2+sme
.text
.global _start
.type _start, %function
_start:
  ptrue p0.b
  ld1b {z0.b}, p0/z, [x0]
  .inst 0x2520e03f  // start
  add z0.b, z0.b, z1.b
  sqdmlalb z0.s, z1.h, z2.h
  ret
  .word 0x44826020  // data: it would be one more SQDMLALB
  .size _start, . - _start
.type _Z4manyi, %function
_Z4manyi:
  sqdmlalb z0.s, z1.h, z2.h
  sqdmlalb z0.s, z1.h, z2.h
  sqdmlalb z0.s, z1.h, z2.h
  usmmla z0.s, z1.b, z2.b
  .inst 0x2520e040  // stop
  .inst 0x2520e05f  // and once more
  smstart
  .inst 0x45a28020  // of no instruction
  ret
S
$compiler -c code.s -o code.o
link() { $compiler -nostdlib "${@:2}" code.o -o "$1"; }
link static -static
link dynamic -pie -Wl,-e,_start,--dynamic-linker=/lib/ld-linux-aarch64.so.1
link library.so -shared -Wl,-e,0
cp static stripped && ${compiler%gcc}objcopy --strip-all stripped
cp static headless && ${compiler%gcc}strip --strip-section-headers headless 2>/dev/null || cp stripped headless
echo 'int main(void) { return 0; }' >plain.c
$compiler plain.c -o plain

found='  markers   1 start, 2 stop
  SVE       6 instructions that quern emulates, 7 that it can'\''t
  I8MM         usmmla        1
      many(int)+0xc
  SME          smstart       1
      many(int)+0x18
  SVE2         sqdmlalb      4
      _start+0x10
      many(int)+0x0
      many(int)+0x4
      and 1 more (--all lists them)
  unknown      45a28020      1
      many(int)+0x1c'
expect 1 "static
  linked    statically
  host      dynamorio
$found" check static
expect 1 "dynamic
  linked    dynamically
  host      embedded
$found" check dynamic
expect 1 "library.so
  linked    a library
  host      that of the program that loads it
$found" check library.so
expect 0 'plain
  linked    dynamically
  host      embedded
  markers   0 start, 0 stop
  SVE       0 instructions that quern emulates, 0 that it can'\''t' check --no-libraries plain
[[ $("${quern[@]}" check --all static) == *'many(int)+0x8'* ]] || fail 'not all places are listed with --all'
[ "$("${quern[@]}" check --no-libraries plain static | grep -c '  linked ')" = 2 ] || fail 'two programs are not two reports'
# Nor are two files that can be read and have no name any more.
cp static gone && cp plain gone_too
exec 8<gone 9<gone_too
rm gone gone_too
[ "$("${quern[@]}" check --no-libraries /proc/self/fd/8 /proc/self/fd/9 | grep '  linked ')" = \
  $'  linked    statically\n  linked    dynamically' ] || fail 'two removed files are not two reports'
exec 8<&- 9<&-

# Without symbols, places are addresses, and data is taken for code.
[[ $("${quern[@]}" check stripped) == *'sqdmlalb      5'*'0x'* ]] || fail "stripped: $("${quern[@]}" check stripped)"
expect 1 "$("${quern[@]}" check stripped | sed 's/^stripped/headless/')" check headless

expect 1 '{"file":"library.so","linked":"a library","host":"that of the program that loads it","starts":1,"stops":2,'\
'"emulated":6,"not_emulated":7,"instructions":['\
'{"extension":"I8MM","mnemonic":"usmmla","places":["many(int)+0xc"]},'\
'{"extension":"SME","mnemonic":"smstart","places":["many(int)+0x18"]},'\
'{"extension":"SVE2","mnemonic":"sqdmlalb","places":["_start+0x10","many(int)+0x0","many(int)+0x4","many(int)+0x8"]},'\
'{"extension":"unknown","mnemonic":"45a28020","places":["many(int)+0x1c"]}]}' check --format jsonl library.so

# The libraries that a program needs, and those that they need: found as the dynamic linker finds them, each told once.
mkdir -p elsewhere root/lib root/usr/lib wrong
shared() { $compiler -nostdlib -shared -Wl,-e,0 -x assembler code.s -o "$@"; }
shared elsewhere/liblast.so
middle() { $compiler -nostdlib -shared -Wl,-e,0,--no-as-needed "$@" -Lelsewhere -llast -x c /dev/null -o root/lib/libmiddle.so; }
middle
shared libfirst.so
echo 'not for AArch64' >wrong/liblast.so
# needs OPTIONS...: links a program that needs libfirst.so and libmiddle.so, the latter of which needs liblast.so.
needs() {
  $compiler -nostdlib -pie -Wl,-e,main,--no-as-needed,--dynamic-linker=/lib/ld-linux-aarch64.so.1,--allow-shlib-undefined \
    -L. -Lroot/lib -Wl,-rpath-link,elsewhere "$@" -x c - -x none -lfirst -lmiddle -o needing <<<'int main(void) { return 0; }'
}
# libraries WANTED ARGUMENTS...: the libraries that are told, and whether they are found.
libraries() {
  local wanted=$1 printed
  shift
  printed=$("${quern[@]}" check --sysroot root "$@" | sed -n "s,^$folder/,,; s/^\(.*\), which \(.*\) needs/\1 \2/p" | tr '\n' ';') || true
  [ "$printed" = "$wanted" ] || fail "check $*: $printed, wanted $wanted"
}
last=' libmiddle.so;'
missing=', is not found (see --sysroot);'
# shellcheck disable=SC2016
needs -Wl,--enable-new-dtags,-rpath,'/none:$ORIGIN'
libraries "libfirst.so needing;root/lib/libmiddle.so needing;liblast.so libmiddle.so$missing" needing
LD_LIBRARY_PATH=wrong:elsewhere libraries "libfirst.so needing;root/lib/libmiddle.so needing;elsewhere/liblast.so$last" needing
LD_LIBRARY_PATH=elsewhere libraries "libfirst.so needing;root/lib/libmiddle.so needing;elsewhere/liblast.so$last" needing libfirst.so
LD_LIBRARY_PATH=elsewhere libraries '' --no-libraries needing
cp elsewhere/liblast.so root/usr/lib
libraries "libfirst.so needing;root/lib/libmiddle.so needing;root/usr/lib/liblast.so$last" needing
rm root/usr/lib/liblast.so
# RPATH holds for the libraries of libraries, too; RUNPATH does not.
# shellcheck disable=SC2016
needs -Wl,--disable-new-dtags,-rpath,'$ORIGIN:${ORIGIN}/elsewhere'
libraries "libfirst.so needing;root/lib/libmiddle.so needing;elsewhere/liblast.so$last" needing
# shellcheck disable=SC2016
needs -Wl,--enable-new-dtags,-rpath,'$ORIGIN:${ORIGIN}/elsewhere'
libraries "libfirst.so needing;root/lib/libmiddle.so needing;liblast.so libmiddle.so$missing" needing
# What the user says comes before RUNPATH, and after RPATH.
mkdir other
shared other/libfirst.so
all_found=" needing;root/lib/libmiddle.so needing;elsewhere/liblast.so$last"
# shellcheck disable=SC2016
needs -Wl,--enable-new-dtags,-rpath,'$ORIGIN'
LD_LIBRARY_PATH=other:elsewhere libraries "other/libfirst.so$all_found" needing
# shellcheck disable=SC2016
needs -Wl,--disable-new-dtags,-rpath,'$ORIGIN'
LD_LIBRARY_PATH=other:elsewhere libraries "libfirst.so$all_found" needing
needs elsewhere/liblast.so
LD_LIBRARY_PATH=. libraries "elsewhere/liblast.so needing;./libfirst.so needing;root/lib/libmiddle.so needing;liblast.so libmiddle.so$missing" \
  needing
# A library with a RUNPATH of its own has nothing of others' RPATH.
middle -Wl,--enable-new-dtags,-rpath,/none
# shellcheck disable=SC2016
needs -Wl,--disable-new-dtags,-rpath,'$ORIGIN:${ORIGIN}/elsewhere'
libraries "libfirst.so needing;root/lib/libmiddle.so needing;liblast.so libmiddle.so$missing" needing
# shellcheck disable=SC2016
needs -Wl,-rpath,'$ORIGIN'
expect 1 'needing
  linked    dynamically
  host      embedded
  markers   0 start, 0 stop
  SVE       0 instructions that quern emulates, 0 that it can'\''t
'"$folder/libfirst.so, which needing needs
$found"'
libmiddle.so, which needing needs, is not found (see --sysroot)' check --sysroot wrong needing
[ "$("${quern[@]}" check --format jsonl --sysroot wrong needing | tail -1)" = \
  '{"file":"libmiddle.so","needed_by":"needing","missing":true}' ] || fail 'a missing library in JSON'

# A dynamic section whose names lie nowhere: d_val of DT_STRTAB (5) made enormous. What it needs has no name then.
at=$(LC_ALL=C grep -obUaP '\x05\0{7}.{8}\x06\0{7}' needing | head -1 | cut -d: -f1)
printf '\377\377\377\377\377\377\377\377' | dd of=needing bs=1 seek=$((at + 8)) conv=notrunc status=none
status=0 && "${quern[@]}" check needing >printed 2>&1 || status=$?
[ $status = 1 ] && grep -qx ', which needing needs, is not found (see --sysroot)' printed || fail "no names: status $status, $(<printed)"

# Files that are no programs, and command lines that make no sense.
expect 126 'quern: code.s is not a program (no ELF file)' check code.s
expect 126 'quern: code.o is not a program, but an object file' check code.o
expect 127 'quern: there is no program ./absent' check ./absent
expect 126 'quern: /dev/null is no file that can be a program' check /dev/null
expect 2 'quern: --sysroot: there is no folder absent' check --sysroot absent plain
expect 2 'quern: PROGRAM is required (see quern check --help)' check
head -c 200 static >cut
expect 126 'quern: cut is cut short: it ends before what its headers tell of; copy or link it again' check cut
[ "$failures" = 0 ]
