#!/usr/bin/env bash
# pre_commit_test.sh ROOT: does the hook refuse what is not formatted or breaks the layers, and pass all else?
set -euo pipefail
root=$1
command -v git >/dev/null && command -v clang-format >/dev/null || exit 77 # skipped
tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT
mkdir -p "$tree"/scripts "$tree"/sve/state
cp -r "$root"/scripts/{hooks,check-layers} "$tree"/scripts
cp "$root"/.clang-format "$tree"
cd "$tree"
unset "${!GIT_@}" # of a commit whose hook runs this
git init -q
git config core.hooksPath scripts/hooks
git config user.name test && git config user.email test@localhost
failures=0

# expect STATUS WHAT: a commit of what is staged ends in STATUS.
expect() {
  local status=0
  git commit -qm "$2" 2>/dev/null || status=$?
  [ "$status" = "$1" ] && return
  echo "FAILED: $2: status $status, not $1"
  failures=$((failures + 1))
}

echo 'int a = 1;' >sve/state/a.cpp
git add .
expect 0 'formatted, in its layer'
echo 'int  a=2;' >sve/state/a.cpp
git add .
echo 'int a = 2;' >sve/state/a.cpp
expect 1 'not formatted as staged, though it is in the folder'
git add .
echo 'int  a=3;' >sve/state/a.cpp
expect 0 'formatted as staged, though it is not in the folder'
printf '#include "sve/handlers/a.h"\n' >sve/state/a.cpp
git add .
expect 1 'an include that the layer may not have'
[ "$failures" = 0 ]
