#!/bin/sh
# installed_test.sh highway|java PROGRAM: what chooses its code when it runs chooses SVE under the embedded host, runs
# right, and chooses other code where the user hides SVE. scripts/setup --libraries brings the libraries; without them
# the test is skipped. PROGRAM is the compiled sorted_numbers.c or the source VectorSums.java. From the environment:
#   QUERN_HOST          the embedded host's shared object
#   QUERN_EMULATOR      how to run a program on a processor without SVE; empty when this is one
#   QUERN_LIBRARIES     the folder where the libraries are unpacked
#   QUERN_VECTOR_BYTES  the vector length
set -eu
which=$1
program=$2
skipped=77
system=$QUERN_LIBRARIES/usr/lib/aarch64-linux-gnu
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

# under_host HIDDEN COMMAND...: runs it under the host. The variable is a list of words.
# shellcheck disable=SC2086
under_host() {
  hidden=$1
  shift
  path=$system:$QUERN_LIBRARIES/lib/aarch64-linux-gnu
  if [ -n "$QUERN_EMULATOR" ]; then
    $QUERN_EMULATOR -E LD_LIBRARY_PATH="$path" -E LD_PRELOAD="$QUERN_HOST" -E QUERN_HIDE_SVE="$hidden" "$@"
  else
    env LD_LIBRARY_PATH="$path" LD_PRELOAD="$QUERN_HOST" QUERN_HIDE_SVE="$hidden" "$@"
  fi
}

# expect TEXT: whether the last run's output has such a line.
expect() {
  if grep -q -x -e "$1" "$folder/out"; then return; fi
  cat "$folder/out"
  echo "A line '$1' is wanted."
  exit 1
}

sort_by_highway() {
  [ -e "$system/libhwy_contrib.so.1" ] || exit $skipped
  for chosen in yes no; do
    under_host "$([ $chosen = yes ] || echo 1)" "$program" >"$folder/out"
    expect "SVE: $chosen"
    expect "SVE2: no"
    expect "sorted: ok"
  done
}

# The digest is that of Java's interpreter. Without its quick compiler the loops are soon compiled to vector code.
sum_by_java() {
  java=$QUERN_LIBRARIES/usr/lib/jvm/java-17-openjdk-arm64/bin/java
  [ -e "$java" ] && command -v javac >/dev/null || exit $skipped
  javac --release 17 -d "$folder" "$program"
  for chosen in 1 0; do
    [ $chosen = 1 ] && bytes=$QUERN_VECTOR_BYTES || bytes=16
    under_host "$([ $chosen = 1 ] || echo 1)" "$java" -Xbatch -XX:-TieredCompilation -XX:+PrintFlagsFinal \
      -cp "$folder" VectorSums >"$folder/out"
    expect " *uint UseSVE *= $chosen .*"
    expect " *intx MaxVectorSize *= $bytes .*"
    expect 11e11eb171b9107
  done
}

case $which in
  highway) sort_by_highway ;;
  java) sum_by_java ;;
esac
