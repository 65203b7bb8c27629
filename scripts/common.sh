# What the scripts share: the repository's root, messages, and the presets of this machine. Sourced, not run.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

say() { printf '\n== %s\n' "$*"; }
die() {
  printf '%s: %s\n' "$(basename "$0")" "$*" >&2
  exit 1
}

# On AArch64 the native build is the product itself; elsewhere the product is cross-built and run by an emulator.
if [ "$(uname -m)" = aarch64 ]; then
  target_preset=native
  cross=no
else
  target_preset=aarch64
  cross=yes
fi

# build PRESET [TARGET...]: configures and builds, quietly unless it fails.
build() {
  local preset=$1 log=build/$1.log
  shift
  mkdir -p build
  if ! { cmake --preset "$preset" && cmake --build --preset "$preset" ${1:+--target "$@"}; } >"$log" 2>&1; then
    tail -40 "$log" >&2
    die "the build of preset '$preset' failed; the whole log is $log"
  fi
}
