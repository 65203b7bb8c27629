#!/usr/bin/env bash
# run_test.sh QUERN: how `quern run` finds, checks, starts and ends programs. The emulator's libraries are stood in for by
# ones that only say that they were loaded, so that this can be told without them.
. "$(dirname "$0")/expect.sh" "$@"
enter_folder
prepare_programs
host=libquern_trap_$bits.so

cat >program.c <<'C'
#include <fcntl.h>
#include <signal.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/mman.h>
#include <unistd.h>
// Holds a trace as a program does that traces: mapped, no descriptor. It has that many regions that are open.
static void make_trace(const char* pattern, unsigned open_regions) {
  char path[4096];
  const char* mark = strstr(pattern, "%p");
  int before = mark ? mark - pattern : (int)strlen(pattern);
  int size = snprintf(path, sizeof path, "%.*s", before, pattern);
  if (mark) snprintf(path + size, sizeof path - size, "%d", getpid());
  int file = open(path, O_RDWR | O_CREAT | O_EXCL, 0666);
  if (file < 0 || ftruncate(file, 4096) != 0) exit(9);
  char* header = mmap(0, 4096, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
  close(file);
  uint64_t process = getpid();
  memcpy(header, "QUERNTRC", 8);
  memcpy(header + 48, &process, 8);
  memcpy(header + 80, &open_regions, 4);
}
int main(int count, char** words) {
  const char* trace = getenv("QUERN_TRACE");
  for (int i = 0; i < count; ++i) printf("<%s>", words[i]);
  printf(" %s\n", getenv("QUERN_HIDE_SVE") ? "hidden" : getenv("QUERN_PATCH") ? getenv("QUERN_PATCH") : trace ? trace : "no trace");
  fflush(stdout);
  if (count > 1 && !strcmp(words[1], "trace")) make_trace(trace, count > 2 ? atoi(words[2]) : 0);
  if (count == 4) getchar();
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
expect 0 "$loaded"$'\n<./program> hidden' run --hide-sve -- ./program
expect 0 "$loaded"$'\n<./program> off' run --traps -- ./program

# The vector length: --vl, else QUERN_VL, else that of the build. Those that there are hosts for are told.
other=$([ "$bits" = 512 ] && echo 1024 || echo 512)
mkdir two && cp lib/* two
$compiler -shared -fPIC '-DTEXT="host of the other length"' library.c -o "two/libquern_trap_$other.so"
export QUERN_LIB_DIR=$folder/two
both=$(printf '%s\n' "$bits" "$other" | sort -n)
lengths=${both/$'\n'/, }
loaded_other=$'utils\nhost of the other length'
expect 0 "$loaded_other"$'\n<./program> no trace' run --vl "$other" -- ./program
expect 0 "$loaded_other"$'\n<./program> no trace' run "--vl=$other" ./program
expect 0 "$loaded"$'\n<./program> no trace' run --vl "$bits" -- ./program
QUERN_VL=$other expect 0 "$loaded_other"$'\n<./program> no trace' run -- ./program
QUERN_VL=$other expect 0 "$loaded"$'\n<./program> no trace' run --vl "$bits" -- ./program
QUERN_VL='' expect 0 "$loaded"$'\n<./program> no trace' run -- ./program
command=$("${quern[@]}" run --dry-run --vl "$other" -- ./program)
[ "$(eval "$command" 2>&1)" = "$loaded_other"$'\n<./program> no trace' ] || fail "--dry-run --vl $other: $command"
expect 125 "quern: there is no libquern_trap_128.so for AArch64 in $folder/two, but there are those of $lengths bits: give \
one of these by --vl or QUERN_VL, or build that one too (cmake -DQUERN_VECTOR_LENGTHS=\"128;${both/$'\n'/;}\")" \
  run --vl 128 -- ./program
for wrong in 384 4096 16 512b -512 /; do
  expect 2 "quern: --vl is '$wrong', which is no vector length: give one of $lengths" run "--vl=$wrong" -- ./program
done
QUERN_VL=all expect 2 "quern: QUERN_VL is 'all', which is no vector length: give one of $lengths" run -- ./program
expect 2 "quern: --vl is '0', which is no vector length: give one of 128, 256, 512, 1024, 2048" \
  run --lib-dir bin --vl 0 -- ./program
[ "$("${quern[@]}" --version | sed -n 's/^lengths   //p')" = "$lengths" ] || fail "--version: $("${quern[@]}" --version)"
[ "$(QUERN_LIB_DIR=bin "${quern[@]}" --version | tail -1)" = "lengths   none: the emulator's libraries are not there" ] ||
  fail "--version without libraries: $(QUERN_LIB_DIR=bin "${quern[@]}" --version)"
export QUERN_LIB_DIR=$folder/lib

# --dry-run prints the command by which the same would come about, and touches nothing.
printf 'QUERNTRC' >earlier
command=$("${quern[@]}" run --dry-run --trace earlier -- ./program 'a b' "it's" '' --trace)
[ "$(<earlier)" = QUERNTRC ] || fail '--dry-run removed an earlier trace'
printed=$(eval "$command" 2>&1)
[ "$printed" = "$loaded"$'\n<./program><a b><it\'s><><--trace> '"$folder/earlier" ] || fail "$command: $printed"
rm earlier

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
rm input output
[ $status = 143 ] || fail "SIGTERM to quern: status $status, $(cat errors)"

# Killed, it leaves nothing behind, the program neither.
mkfifo input output
mkdir temporary
TMPDIR=$folder/temporary "${quern[@]}" run -- ./program wait 1 <input >output 2>errors &
exec 8>input 9<output
read -r _ <&9
kill -KILL $!
status=0
wait $! 2>>errors || status=$?
read -r _ <&9 && fail "the program runs on"  # until it has ended, and nobody has the pipe open
exec 8>&- 9<&-
[ $status = 137 ] && rmdir temporary || fail "SIGKILL to quern: status $status, left: $(ls temporary)"
rm input output

# --trace: absolute in the program, an earlier trace of the name makes room, nothing else does. What is missing in it at
# the end is said.
no_trace="quern: there is no trace $folder/out: only what runs between two markers is traced (see quern run --help)"
expect 0 "$loaded"$'\n<./program> '"$folder/out"$'\n'"$no_trace" run --trace out -- ./program
expect 0 "$loaded"$'\n<./program> '"$folder/out"$'\n'"$no_trace" run --trace=./bin/../out ./program
[ ! -e out ] || fail "a program that traces nothing left a file"
printf 'QUERNTRC' >out
expect 137 "$loaded"$'\n<./program><raise><9> '"$folder/out
quern: ./program was ended by signal 9 (Killed)"$'\n'"$no_trace" run --trace out -- ./program raise 9
[ ! -e out ] || fail "the earlier trace is still there"
touch out
expect 0 "$loaded"$'\n<./program><trace> '"$folder/out" run --trace out -- ./program trace
expect 0 "$loaded"$'\n<./program><trace><1> '"$folder/out
quern: the trace $folder/out goes on to the program's end: a thread executed no stop marker" \
  run --trace out -- ./program trace 1
expect 0 "$loaded"$'\n<./program><trace><3> '"$folder/out
quern: the trace $folder/out goes on to the program's end: 3 threads executed no stop marker" \
  run --trace out -- ./program trace 3
status=0
"${quern[@]}" run --trace 'n%p' -- ./program trace >/dev/null 2>errors || status=$?
rm out
[ $status = 0 ] && [ "$(<errors)" = "$loaded" ] || fail "--trace n%p: $(<errors)"

# A trace that is being written stays, whoever wants its name.
mkfifo input output
"${quern[@]}" run --trace out -- ./program trace 0 wait <input >output 2>errors &
exec 8>input 9<output
read -r _ <&9
until [ -s out ]; do sleep 0.05; done
first=$(stat -c %i out)
expect 125 "quern: $folder/out is a trace that another process is writing: choose another name, or one with %p, which \
stands for the process number" run --trace out -- ./program trace
[ "$(stat -c %i out)" = "$first" ] || fail "the trace that was being written is gone"
exec 8>&- 9<&-
wait $! || fail "the first of two traced programs: $(<errors)"
expect 0 "$loaded"$'\n<./program><trace> '"$folder/out" run --trace out -- ./program trace
rm input output out

expect 125 "quern: $folder/text exists and is no trace: remove it or choose another name" run --trace text -- ./program
[ "$(cat text)" = text ] || fail "a file that is no trace was changed"
expect 125 "quern: the trace can't be written to $folder/bin: it is not a regular file" run --trace bin -- ./program
expect 125 "quern: the trace can't be written to /absent/out: No such file or directory" \
  run --trace /absent/out -- ./program
ln -s nowhere dangling
expect 125 "quern: the trace can't be written to $folder/dangling: it is a symbolic link" \
  run --trace dangling -- ./program
expect 2 'quern: --trace needs the name of a file (see quern run --help)' run --trace '' -- ./program
expect 2 'quern: --trace= lacks its value (see quern run --help)' run --trace= -- ./program
mkdir gone && cd gone && rmdir ../gone
expect 125 "quern: the current folder can't be told (No such file or directory): go to one that exists" \
  run --trace out -- "$folder/program"
cd "$folder"

# The user's own libraries are preloaded behind quern's.
$compiler -shared -fPIC '-DTEXT="users"' library.c -o users.so
for list in ./users.so ": $folder/users.so"; do
  output=$(LD_PRELOAD=$list "${quern[@]}" run ./program 2>&1 | grep -v '^ERROR: ld.so')  # this machine's dynamic linker
  [ "$output" = $'users\n'"$loaded"$'\n<./program> no trace' ] || fail "LD_PRELOAD=$list: $output"
done
if [ "$compiler" != gcc ]; then
  gcc -shared -fPIC '-DTEXT="machines"' library.c -o machines.so
  # (A build with the address sanitizer asks to be the first of all libraries.)
  output=$(ASAN_OPTIONS=verify_asan_link_order=0 LD_PRELOAD=./machines.so:./users.so "${quern[@]}" run ./program 2>&1 | grep -v '^ERROR: ld.so')
  [ "$output" = $'machines\nmachines\nusers\n'"$loaded"$'\n<./program> no trace' ] || fail "LD_PRELOAD: $output"
fi

# Programs that can't be run.
expect 126 "quern: ./script is a script: give its interpreter as the program, and the script as its argument" \
  run -- ./script
expect 126 "quern: ./text is not a program (no ELF file)" run -- ./text
expect 126 "quern: ./object is not a program, but an object file" run -- ./object
expect 126 "quern: lib/$host is a shared library, not a program" run -- "lib/$host"
expect 126 "quern: $folder/bin/noexec may not be executed (see chmod +x)" run -- noexec
expect 126 "quern: ./bin is a folder, not a program" run -- ./bin
expect 127 "quern: there is no program ./absent" run -- ./absent
expect 127 'quern: there is no program ./\x1b[31mred\x07é\xff' run -- $'./\e[31mred\aé\xff'
cp program $'es\ecape'
expect 143 "$loaded"$'\n<./es\ecape><raise><15> no trace\nquern: ./es\\x1bcape was ended by signal 15 (Terminated)' \
  run -- $'./es\ecape' raise 15
expect 127 "quern: there is no program 'absent' in PATH (for one in this folder, ./absent)" run -- absent
head -c 30 program >beginning && chmod +x beginning
expect 126 "quern: ./beginning is not a program (no ELF file)" run -- ./beginning
head -c 3000 program >beginning
expect 126 "quern: ./beginning is cut short: it ends before what its headers tell of; copy or link it again" \
  run -- ./beginning
head -c 100 program >beginning
expect 126 "quern: ./beginning is cut short: it ends before what its headers tell of; copy or link it again" \
  run -- ./beginning
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
