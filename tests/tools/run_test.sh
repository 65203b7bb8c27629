#!/usr/bin/env bash
# run_test.sh QUERN: how `quern run` finds, checks, starts and ends programs. The emulator's libraries are stood in for by
# ones that only say that they were loaded, so that this can be told without them.
. "$(dirname "$0")/expect.sh" "$@"
enter_folder
prepare_programs
host=libquern_trap_$bits.so

cat >program.c <<'C'
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
int main(int count, char** words) {
  const char* trace = getenv("QUERN_TRACE");
  for (int i = 0; i < count; ++i) printf("<%s>", words[i]);
  printf(" %s\n", trace ? trace : "no trace");
  fflush(stdout);
  if (count == 3 && !strcmp(words[1], "exit")) return atoi(words[2]);
  if (count == 3 && !strcmp(words[1], "raise")) raise(atoi(words[2]));
  if (count == 3 && !strcmp(words[1], "wait")) getchar();
}
C
cat >library.c <<'C'
#include <unistd.h>
__attribute__((constructor)) static void loaded(void) { (void)!write(2, TEXT "\n", sizeof TEXT); }
C
mkdir lib bin
$compiler program.c -o program
$compiler -c program.c -o object
$compiler -shared -fPIC '-DTEXT="host"' library.c -o "lib/$host"
$compiler -shared -fPIC '-DTEXT="utils"' library.c -o lib/libquern_utils.so
chmod +x object
cp program list
cp program bin/inpath
cp program bin/noexec && chmod -x bin/noexec
printf '#!/bin/sh\n' >script && echo text >text && chmod +x script text
export QUERN_LIB_DIR=$folder/lib PATH=$PATH:$folder/bin
loaded=$'utils\nhost'

# Arguments reach the program as they are.
expect 0 "$loaded"$'\n<./program> no trace' run -- ./program
expect 0 "$loaded"$'\n<./program><-x><--help><--><><[a,b]><a b> no trace' run ./program -x --help -- '' '[a,b]' 'a b'
expect 0 "$loaded"$'\n<./program><--trace><--> no trace' run -- ./program --trace --
expect 0 "$loaded"$'\n<./list><list> no trace' run ./list list
expect 0 "$loaded"$'\n<inpath> no trace' run -- inpath
expect 0 "$loaded"$'\n<./program> no trace' run --lib-dir lib ./program

# So does its end reach the caller.
expect 0 "$loaded"$'\n<./program><exit><0> no trace' run -- ./program exit 0
expect 7 "$loaded"$'\n<./program><exit><7> no trace' run -- ./program exit 7
expect 255 "$loaded"$'\n<./program><exit><255> no trace' run -- ./program exit 255
expect 137 "$loaded"$'\n<./program><raise><9> no trace\nquern: ./program was ended by signal 9 (Killed)' \
  run -- ./program raise 9
expect 143 "$loaded"$'\n<./program><raise><15> no trace\nquern: ./program was ended by signal 15 (Terminated)' \
  run -- ./program raise 15

# A signal to quern is one to the program.
mkfifo input output
"${quern[@]}" run -- ./program wait 1 <input >output 2>errors &
exec 8>input 9<output
read -r _ <&9
kill -TERM $!
status=0
wait $! || status=$?
exec 8>&- 9<&-
[ $status = 143 ] || fail "SIGTERM to quern: status $status, $(cat errors)"

# --trace: absolute in the program, an earlier trace of the name makes room, nothing else does.
expect 0 "$loaded"$'\n<./program> '"$folder/out" run --trace out -- ./program
expect 0 "$loaded"$'\n<./program> '"$folder/out" run --trace=./bin/../out ./program
[ ! -e out ] || fail "a program that traces nothing left a file"
printf 'QUERNTRC' >out
expect 0 "$loaded"$'\n<./program> '"$folder/out" run --trace out -- ./program
[ ! -e out ] || fail "the earlier trace is still there"
expect 125 "quern: $folder/text exists and is no trace: remove it or choose another name" run --trace text -- ./program
[ "$(cat text)" = text ] || fail "a file that is no trace was changed"
expect 125 "quern: the trace can't be written to $folder/bin: it is not a regular file" run --trace bin -- ./program
expect 125 "quern: the trace can't be written to /absent/out: No such file or directory" \
  run --trace /absent/out -- ./program

# Programs that can't be run.
expect 126 "quern: ./script is a script: give its interpreter as the program, and the script as its argument" \
  run -- ./script
expect 126 "quern: ./text is not a program (no ELF file)" run -- ./text
expect 126 "quern: ./object is not a program, but an object file" run -- ./object
expect 126 "quern: $folder/bin/noexec may not be executed (see chmod +x)" run -- noexec
expect 126 "quern: ./bin is a folder, not a program" run -- ./bin
expect 127 "quern: there is no program ./absent" run -- ./absent
expect 127 "quern: there is no program 'absent' in PATH (for one in this folder, ./absent)" run -- absent
head -c 30 program >beginning && chmod +x beginning
expect 126 "quern: ./beginning is not a program (no ELF file)" run -- ./beginning
cp program other && printf '\x3e' | dd of=other bs=1 seek=18 conv=notrunc status=none
expect 126 "quern: ./other is built for x86-64, not for AArch64: build it with an AArch64 compiler" run -- ./other

# What quern itself lacks.
expect 125 "quern: there are no $host and libquern_utils.so for AArch64 in bin (build them, or name their folder by \
--lib-dir or QUERN_LIB_DIR)" run --lib-dir bin -- ./program
cp -r lib 'li b'
expect 125 "quern: the libraries can't be preloaded from '$folder/li b': its path has a space, colon or comma in it; move \
them" run --lib-dir 'li b' -- ./program
[ "$compiler" = gcc ] || PATH=$folder/bin expect 125 "quern: qemu-aarch64 is not in PATH: install it (Debian package \
qemu-user), since this is no AArch64 machine" run -- ./program
expect 2 'quern: give a program to run (see quern run --help)' run
expect 2 'quern: give a program to run (see quern run --help)' run --
expect 2 'quern: run has no option --fast (see quern run --help)' run --fast -- ./program
expect 2 'quern: --trace: 1 required FILE missing (see quern run --help)' run --trace
[ "$failures" = 0 ]
