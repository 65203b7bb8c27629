#!/bin/sh
# roi_test.sh SOURCE_FOLDER: programs with <quern/roi.h> are marked under the embedded host and left alone elsewhere: in
# C, C++ and Fortran, linked dynamically or statically. From the environment:
#   CC, CXX         the compilers; that of Fortran, which may not be there, is QUERN_FORTRAN
#   QUERN_HOST      the embedded host's shared object
#   QUERN_COMMAND   the quern command
#   QUERN_EMULATOR  how to run a program on a processor without SVE; empty when this is one
set -eu
[ -x "$QUERN_FORTRAN" ] || QUERN_FORTRAN=
source=$1
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder"
export QUERN_TRACE="$folder/trace"

fail() {
  printf 'FAILED: %s\n' "$*"
  exit 1
}

# shellcheck disable=SC2086  # the command in the variable is a list of words
under_host() {
  if [ -n "$QUERN_EMULATOR" ]; then
    $QUERN_EMULATOR -E LD_PRELOAD="$QUERN_HOST" "$@"
  else
    LD_PRELOAD=$QUERN_HOST "$@"
  fi
}

warnings='-Wall -Wextra -Wpedantic -Wconversion -Werror'
roi="$source/include/quern"
programs="$source/tests/programs/roi"
# shellcheck disable=SC2086  # lists of words
{
  $CC -std=c99 $warnings -Wmissing-prototypes -march=armv8-a+sve -I"$source/include" "$programs/region.c" -o c
  cp "$programs/region.c" region.cpp
  $CXX -std=c++11 $warnings -Wold-style-cast -march=armv8-a+sve -I"$source/include" region.cpp -o c++
  $CC -static -I"$source/include" "$programs/region.c" -o static
}
marked='c c++'
if [ -n "$QUERN_FORTRAN" ]; then
  $CC -c "$roi/roi.c"
  $QUERN_FORTRAN -Wall -Werror -std=f2018 -c "$roi/roi.f90" -o module.o
  $QUERN_FORTRAN -Wall -Werror -std=f2018 "$programs/region.f90" module.o roi.o -static-libgfortran -o fortran
  marked="$marked fortran"
else
  echo 'there is no Fortran compiler for AArch64: its module was not tried'
fi

# shellcheck disable=SC2086
for program in $marked; do
  printed=$(under_host "./$program") ||
    fail "$program ended with status $? under the host"
  [ "$printed" = 7 ] || fail "$program printed '$printed' under the host"
  $QUERN_EMULATOR "$QUERN_COMMAND" trace info trace | grep -q '^  markers      2 start, 2 stop$' ||
    fail "$program is not marked under the host"
  rm trace
done

# shellcheck disable=SC2086
for program in static ${QUERN_FORTRAN:+fortran}; do
  printed=$($QUERN_EMULATOR "./$program") || fail "$program ended with status $? elsewhere"
  [ "$printed" = 7 ] || fail "$program printed '$printed' elsewhere"
  [ ! -e trace ] || fail "$program made a trace elsewhere"
done
