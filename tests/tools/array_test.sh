#!/usr/bin/env bash
# array_test.sh MAKE_ARRAY_TRACE... -- QUERN...: `quern trace cache --by array` finds the arrays, and what plain caches
# make of them. Either command has an emulator before it if need be.
maker=()
while [ "$1" != -- ]; do maker+=("$1") && shift; done
shift
. "$(dirname "$0")/expect.sh" "$@"
enter_folder

QUERN_TRACE=arrays.trace "${maker[@]}" >wanted
[ "$(wc -l <wanted)" = 5 ] || fail "wanted: $(<wanted)"
caches=(--level 4K,4,64 --level 32K,8,64)
"${quern[@]}" trace cache --by array --array given=0x20000000:100000 "${caches[@]}" arrays.trace >printed
[ "$(sed '1,/array$/d' printed)" = "$(sort -k2,2nr wanted)" ] || fail "$(printf '%s\n-- wanted\n%s' "$(<printed)" "$(<wanted)")"
# All together they are what the levels have.
read -r _ _ accesses hits misses _ < <(grep '^L1' printed)
[ "$(awk '{ a += $1; m += $2 } END { print a, a - m, m }' wanted)" = "$accesses $hits $misses" ] || fail "$(<printed)"

# stats has the same rows; a name that two arrays have is told apart.
names() { "${quern[@]}" trace stats --by array --format csv "$@" arrays.trace | cut -d, -f1 | sed 's/ at 0x.*/ at/' | sort; }
wanted='0x10000000-0x1000ffff
0x10011000-0x10012fff
array
large_table
small_table
small_table at'
[ "$(names --array small_table=0x20000000:100000)" = "$wanted" ] || fail "names: $(names)"

# Arrays that make no sense.
for array in x x=1 =1:2 x=1: x=1:0 x=y:1 x=0xffffffffffffffff:2; do
  expect 2 "quern: --array: '$array' is no array: give its name, address and bytes, as in x=0x1000:4096" \
    trace cache --by array --array $array arrays.trace
done
for other in 1:1 0:2 1:9 2:1 0:9; do
  expect 2 "quern: --array: y and another one overlap" trace cache --by array --array x=1:2 --array y=$other arrays.trace
done
[ "$(names --array x=1:2 --array y=3:1 --array z=0:1 | wc -l)" = 6 ] || fail 'arrays beside each other'
expect 2 "quern: --array is of use to --by array alone" trace cache --array x=1:2 arrays.trace
expect 2 "quern: --array is of use to --by array alone" trace stats --by place --array x=1:2 arrays.trace
[ "$failures" = 0 ]
