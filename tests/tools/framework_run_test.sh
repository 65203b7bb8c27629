#!/usr/bin/env bash
# framework_run_test.sh QUERN: which host `quern run` chooses, and how it starts DynamoRIO. The framework's package has
# libraries that hold no more than quern looks at; drrun and qemu-aarch64 are scripts that print how they were started. So
# a quern for AArch64 can be judged on another processor too: no AArch64 program is started by it.
. "$(dirname "$0")/expect.sh" "$@"
enter_folder
prepare_programs
client=libquern_$bits.so
direct=no  # whether this quern starts AArch64 programs without an emulator
[ "$(od -An -tx1 -j18 -N1 "${quern[-1]}")" = ' b7' ] && direct=yes
export QUERN_LIB_DIR=$folder/lib QEMU_LD_PREFIX=$folder/root TMPDIR=$folder/temporary
mkdir bin lib temporary root root/{lib,lib/C,proc}

# library FILE DEFINITIONS: an AArch64 library.
library() { $compiler -shared -fPIC -x c -o "$1" - <<<"$2"; }
echo 'int main(void) { return 0; }' >program.c
$compiler program.c -o program
$compiler -static program.c -o static
cp program bin/inpath
library "lib/libquern_trap_$bits.so" ''
library lib/libquern_utils.so ''
library "lib/$client" 'int padding = 1; int _USES_DR_VERSION_ = 1103;'

# package NAME VERSION KNOWN_OPTION: a framework of that version.
package() {
  mkdir -p "$1"/{bin64,cmake,lib64/release}
  echo "set(PACKAGE_VERSION $2)" >"$1/cmake/DynamoRIOConfigVersion.cmake"
  library "$1/lib64/release/libdynamorio.so" "const char* options = \"$3\";"
  cp bin/printer "$1/bin64/drrun"
}
cat >bin/printer <<'S'
#!/bin/sh
printf '%s' "${0##*/}"
printf ' <%s>' "$@"
[ -z "$QUERN_TRACE" ] || printf ' trace=%s' "$QUERN_TRACE"
[ -z "$DYNAMORIO_EXE_PATH" ] || printf '\nprogram=%s\noptions=%s' "$DYNAMORIO_EXE_PATH" "$DYNAMORIO_OPTIONS"
while [ $# -gt 1 ] && [ "$1" != -L ]; do shift; done
[ "$1" != -L ] || printf '\nroot: %s' "$(cd "$2" && find -L . | sort | tr '\n' ' ')"
echo
S
chmod +x bin/printer
[ $direct = yes ] || cp bin/printer bin/qemu-aarch64  # not in the way of the one that runs a foreign quern
export PATH=$folder/bin:$PATH
package new 11.3.0 xarch_root
package old 11.3.1 other

# The command lines that are wanted, of the trap host and of each framework, for a name and a file of a program.
if [ $direct = yes ]; then
  framework() { echo "drrun <-c> <$folder/lib/$client> <--> <$3>${4:-}"; }
else
  emulator='qemu-aarch64 <-cpu> <max,sve=off,sme=off>'
  trap_host() {
    printf '%s\n' "$emulator <-E> <LD_PRELOAD=$folder/lib/libquern_trap_$bits.so:$folder/lib/libquern_utils.so> \
<-L> <$folder/root> <-0> <$1> <$2>" 'root: . ./lib ./lib/C ./proc '
  }
  framework() {
    local options="-code_api -client_lib '$folder/lib/$client;0;'" seen='. ./lib ./lib/C ./proc ./proc/self ./proc/self/task '
    local root="$folder/temporary/[^>]*"
    [ "$1" != new ] || options+=" -xarch_root '$folder/root'" seen='. ./lib ./lib/C ./proc ' root=$folder/root
    printf '%s\n' "$emulator <-L> <$root> <-0> <$2> <$folder/$1/lib64/release/libdynamorio.so>${4:-}" \
      "program=$folder/${3#./}" "options=$options" "root: $seen"
  }
fi

# starts WANTED ARGUMENTS...: the program that quern starts; in WANTED, a path in temporary/ may end in anything.
starts() {
  local wanted=$1 output status=0
  shift
  output=$("${quern[@]}" "$@" 2>&1) || status=$?
  output=$(sed "s,$folder/temporary/quern[^>]*,$folder/temporary/[^>]*," <<<"$output")
  [ "$status" = 0 ] && [ "$output" = "$wanted" ] ||
    fail "$(printf 'quern %s\n-- status %s; started:\n%s\n-- wanted:\n%s' "$*" "$status" "$output" "$wanted")"
}

other=$([ "$bits" = 512 ] && echo 1024 || echo 512)
cp "lib/$client" "lib/libquern_$other.so"
wanted=$(client=libquern_$other.so framework new ./program ./program)
starts "$wanted" run --dynamorio new --vl "$other" ./program
QUERN_VL=$other starts "$wanted" run --dynamorio new ./program
starts "$(framework new ./program ./program)" run --dynamorio new --vl "$bits" ./program
rm "lib/libquern_$other.so"

for name in new old; do
  wanted=$(framework $name ./program ./program)
  starts "$wanted" run --host dynamorio --dynamorio $name -- ./program
  starts "$wanted" run --dynamorio $name ./program
  QEMU_LD_PREFIX=root starts "$wanted" run --dynamorio $name ./program
  QUERN_DYNAMORIO=$name starts "$wanted" run -- ./program
  QUERN_DYNAMORIO=absent starts "$wanted" run --dynamorio=$name -- ./program
  QUERN_DYNAMORIO=$name starts "$(framework $name ./static ./static)" run ./static
  starts "$(framework $name inpath "$([ $direct = yes ] && echo "$folder/")bin/inpath")" run --dynamorio $name inpath
  starts "$(framework $name ./program ./program " <-x> <--> <> <a b> <[a,b]>")" \
    run --dynamorio $name ./program -x -- '' 'a b' '[a,b]'
  starts "$(framework $name ./program ./program " trace=$folder/out")
quern: there is no trace $folder/out: only what runs between two markers is traced (see quern run --help)" \
    run --dynamorio $name --trace out ./program
done
[ -z "$(ls temporary)" ] || fail "left behind: $(ls temporary)"
[ -d root/lib ] || fail "the library root has been emptied"

if [ $direct = no ]; then
  wanted=$(trap_host ./program ./program)
  starts "$wanted" run ./program
  starts "$wanted" run --host auto ./program
  starts "$wanted" run --host embedded ./program
  QUERN_DYNAMORIO='' starts "$wanted" run ./program
  QUERN_DYNAMORIO=new starts "$wanted" run --host embedded ./program
fi

# refuses STATUS MESSAGE ARGUMENTS...: nothing starts, and an earlier trace stays.
refuses() {
  local status=$1 message=$2
  shift 2
  printf 'QUERNTRC' >earlier
  expect "$status" "quern: $message" run --trace earlier "$@"
  [ "$(<earlier)" = QUERNTRC ] || fail "an earlier trace is gone: $*"
}
static='./static is statically linked, so that the emulator can'\''t be preloaded into it: link it without -static, or run '\
'it under DynamoRIO (see --host in quern run --help)'
refuses 126 "$static" ./static
refuses 126 "$static" --host embedded ./static
QUERN_DYNAMORIO=new refuses 126 "$static" --host embedded ./static
refuses 2 '--host: fast not in {auto,dynamorio,embedded} (see quern run --help)' --host fast ./program
refuses 2 '--dynamorio is of no use to --host embedded: leave one of them out' --host embedded --dynamorio new ./program
refuses 125 '--host dynamorio needs DynamoRIO: unpack its package for AArch64, and name the folder by --dynamorio or '\
'QUERN_DYNAMORIO' --host dynamorio ./program
refuses 125 'there is no folder absent: give the one into which DynamoRIO'\''s package was unpacked' --dynamorio absent \
  ./program
refuses 125 'new/cmake is no package of DynamoRIO for AArch64, it has no lib64/release/libdynamorio.so: give the folder '\
'that holds the package'\''s bin64 and lib64' --dynamorio new/cmake ./program
refuses 127 'there is no program ./absent' --dynamorio new ./absent
refuses 126 './program.c may not be executed (see chmod +x)' --dynamorio new ./program.c
cp -r new x86 && printf '\x3e' | dd of=x86/lib64/release/libdynamorio.so bs=1 seek=18 conv=notrunc status=none
refuses 125 'x86 is DynamoRIO for another processor: get its package for AArch64' --dynamorio x86 ./program

mkdir without
cp lib/libquern_* without && rm "without/$client"
refuses 125 "there are no $client and libquern_utils.so for AArch64 in without (build quern_client and quern_utils with \
-DDynamoRIO_DIR=$folder/new/cmake, or name their folder by --lib-dir or QUERN_LIB_DIR)" \
  --dynamorio new --lib-dir without ./program
library "without/$client" 'int other = 1103;'
refuses 125 "$folder/without/$client is no client of DynamoRIO: build it again (cmake -DDynamoRIO_DIR=$folder/new/cmake)" \
  --dynamorio new --lib-dir without ./program
package older 7.1.0 other
refuses 125 "$folder/lib/$client was built with DynamoRIO 11.3, and $folder/older is 7.1: build it again (cmake \
-DDynamoRIO_DIR=$folder/older/cmake)" --dynamorio older ./program
cp -r lib "it's"
refuses 125 "the client can't be loaded from $folder/it's/$client: its path has a quote or semicolon in it; move it" \
  --dynamorio new --lib-dir "it's" ./program
if [ $direct = yes ]; then
  rm new/bin64/drrun
  refuses 125 "$folder/new/bin64/drrun can't be executed: unpack DynamoRIO's package again" --dynamorio new ./program
else
  QEMU_LD_PREFIX=absent refuses 125 "there is no folder $folder/absent: set QEMU_LD_PREFIX to one of AArch64's libraries" \
    --dynamorio new ./program
  rm bin/qemu-aarch64
  PATH=$folder/bin refuses 125 "qemu-aarch64 is not in PATH: install it (Debian package qemu-user), since this is no \
AArch64 machine" --dynamorio new ./program
fi
[ "$failures" = 0 ]
