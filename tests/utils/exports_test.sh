#!/usr/bin/env bash
# exports_test.sh NM LIBRARY MAP: what the library that is loaded into every emulated program shows are the entries that
# its map names, and nothing of the libraries whose code it has taken in.
set -euo pipefail
diff <(sed -n 's/^    \([a-z_]*\);$/\1/p' "$3" | sort) <("$1" -D --defined-only "$2" | sed 's/.* //' | sort)
