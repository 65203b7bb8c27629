#!/usr/bin/env bash
# check_layers_test.sh CHECKER: does the check of layers find each kind of breach, and pass what is allowed?
set -euo pipefail
checker=$1
tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT
mkdir -p "$tree"/sve/{state,handlers,decoder,client} "$tree"/{utils,tools}
failures=0

# expect STATUS FILE LINE: the check of a tree with that one line in that file ends in STATUS.
expect() {
  local status=0
  echo "$3" >"$tree/$2"
  "$checker" "$tree" >/dev/null || status=$?
  rm "$tree/$2"
  [ "$status" = "$1" ] && return
  echo "FAILED: $2 with $3: status $status, not $1"
  failures=$((failures + 1))
}

echo '#include <map>' >"$tree/sve/state/always.h"
expect 0 sve/handlers/a.cpp '#include "sve/state/cpu_state.h"'
expect 0 sve/handlers/a.cpp '#include "sve/handlers/lane_loops.h"'
expect 0 sve/handlers/a.cpp '// as in #include "sve/decoder/thunk.h"'
expect 0 sve/client/a.cpp '#include <dr_api.h>'
expect 0 utils/a.cpp '#include "sve/memory/trace.h"'
expect 1 sve/state/a.h '#include "sve/handlers/lane_loops.h"'
expect 1 sve/handlers/a.cpp '#include "sve/decoder/thunk.h"'
expect 1 sve/handlers/a.cpp '  #  include <sve/decoder/thunk.h>'
expect 1 sve/decoder/a.cpp '#include "lanes.h"'
expect 1 sve/decoder/a.cpp '#include "tests/support/support.h"'
expect 1 sve/decoder/a.cpp '#include "dr_api.h"'
expect 1 tools/a.cpp '#include "drmgr.h"'
expect 1 tools/a.cpp '#include "sve/handlers/lane_loops.h"'
expect 1 utils/a.cpp '#include "sve/memory/guest_memory.h"'
mkdir "$tree/sve/new"
expect 1 sve/new/a.cpp '#include <map>'
[ "$failures" = 0 ]
