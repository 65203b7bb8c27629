#!/usr/bin/env bash
# packages_test.sh BUILD_FOLDER: makes the packages of a build, installs each into a clean root, and uses what is there: a
# program is run and traced, and one that embeds the emulator is built against it. From the environment:
#   QUERN_EMULATOR              how to run programs of that build; may be empty
#   QUERN_PYTHON                Python; the reader is tried where it has numpy
#   QUERN_CXX, QUERN_TOOLCHAIN  its compiler and CMake's toolchain file; the latter may be empty
set -euo pipefail
build=$1 source=$(realpath "$(dirname "$0")/../..")
read -ra emulator <<<"$QUERN_EMULATOR"
folder=$(realpath "$(mktemp -d)")
trap 'rm -rf "$folder"' EXIT
cd "$folder"
unset QUERN_TRACE QUERN_VL QUERN_LIB_DIR QUERN_DYNAMORIO LD_PRELOAD
target=aarch64-linux-gnu-gcc
[ "$(uname -m)" != aarch64 ] || target=gcc

fail() {
  printf 'FAILED: %s\n' "$*"
  exit 1
}

# has OUTPUT PATTERN: whether a line of it is like that.
has() { grep -q -- "$2" <<<"$1" || fail "$(printf 'no line like "%s" in\n%s' "$2" "$1")"; }

cpack --config "$build/CPackConfig.cmake" -B "$folder" >log 2>&1 || fail "cpack: $(cat log)"
if grep -q 'is left out' log; then
  echo 'skipped: there is no build for AArch64 whose hosts could be packed'
  exit 77
fi
deb=$(ls quern_*.deb) tar=$(ls quern-*.tar.gz)

# As on a system where nothing else is: no package there, and so none that it depends on.
mkdir -p root/var/lib/dpkg/{info,updates}
touch root/var/lib/dpkg/status
as_root=()
[ "$(id -u)" = 0 ] || as_root=(fakeroot)
architecture=$(dpkg-deb -f "$deb" Architecture)
"${as_root[@]}" dpkg --root="$folder/root" --force-not-root --force-depends --force-architecture --install "$deb" \
  >log 2>&1 || fail "dpkg: $(cat log)"
has "$(dpkg-query --admindir=root/var/lib/dpkg -W -f '${Status}\n' "quern:$architecture")" '^install ok installed$'
mkdir unpacked
tar -xzf "$tar" -C unpacked --strip-components=1

# runs PREFIX: the command knows itself, and runs and traces a program that was compiled with the installed header. A
# quern for another processor can't start programs here: the installed host is preloaded by hand for it.
runs() {
  local quern=("${emulator[@]}" "$1/bin/quern") output bits
  bits=$("${quern[@]}" --version | sed -n 's/^quern.*(\([0-9]*\)-bit vectors)$/\1/p')
  has "$("${quern[@]}" --version)" '^quern [0-9.]* ([0-9]*-bit vectors)$'
  has "$("${quern[@]}" --version)" '^revision  .'
  has "$("${quern[@]}" --version)" "^lengths   \(.*, \)\?$bits\(,.*\)\?$"
  has "$("${quern[@]}" decode 04220020)" 'sve_add_zzz'
  $target -O3 -march=armv8-a+sve -I"$1/include" "$1/share/doc/quern/examples/vector_sum.c" -o sum
  rm -f my.trace
  if [ ${#emulator[@]} = 0 ]; then
    output=$("${quern[@]}" run --trace my.trace -- ./sum)
  else
    output=$(QUERN_TRACE=my.trace "${emulator[@]}" \
      -E "LD_PRELOAD=$1/lib/quern/libquern_trap_$bits.so:$1/lib/quern/libquern_utils.so" ./sum)
  fi
  has "$output" '^all sums are right$'
  has "$("${quern[@]}" trace info my.trace)" '^  markers      5 start, 5 stop$'
  if "$QUERN_PYTHON" -c 'import numpy'; then
    has "$(PYTHONPATH=$1/share/quern/python "$QUERN_PYTHON" -B -c \
      'import quern_trace; print(len(quern_trace.Trace("my.trace").regions()), "regions")')" '^5 regions$'
  fi
}

# embeds PREFIX: a program outside of the tree finds the emulator by CMake and by pkg-config.
embeds() {
  local wanted='^z2.s, [0-9]* lanes: 5 6 7 \.\.\. [0-9]*$' flags
  rm -rf embed
  cmake -S "$1/share/doc/quern/examples/embed" -B embed -DCMAKE_PREFIX_PATH="$1" -DCMAKE_BUILD_TYPE=Release \
    ${QUERN_TOOLCHAIN:+-DCMAKE_TOOLCHAIN_FILE="$QUERN_TOOLCHAIN"} -DCMAKE_FIND_ROOT_PATH="$1" >log 2>&1 &&
    cmake --build embed >>log 2>&1 || fail "building against $1: $(cat log)"
  has "$("${emulator[@]}" embed/embed)" "$wanted"
  flags=$(PKG_CONFIG_LIBDIR=$1/lib/pkgconfig pkg-config --cflags --libs quern)
  # shellcheck disable=SC2086  # they are words
  $QUERN_CXX "$source/examples/embed/embed.cpp" $flags -o embedded
  has "$("${emulator[@]}" ./embedded)" "$wanted"
}

for prefix in "$folder/root/usr" "$folder/unpacked"; do
  runs "$prefix"
  embeds "$prefix"
done
