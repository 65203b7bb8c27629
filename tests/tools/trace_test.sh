#!/usr/bin/env bash
# trace_test.sh MAKE_TRACE... -- QUERN...: what `quern trace info` and `quern trace dump` print, and how they end. Either
# command has an emulator before it if need be.
maker=()
while [ "$1" != -- ]; do maker+=("$1") && shift; done
shift
. "$(dirname "$0")/expect.sh" "$@"
enter_folder
export TZ=UTC

# make NAME EXTRA [ONLY [LINES]]: a trace with EXTRA more records than its first seven, or those only, of one line of
# memory or of so many in turn; sets `thread` to its one thread's number.
make() { thread=$(QUERN_TRACE=$1 "${maker[@]}" "${@:2}"); }

make small 0
t=$(printf %8s "$thread")
expect 0 "     count   thread kind    group   size address            pc
         0 $t start
         1 $t load        0    256 0x0000000000002000 0x0000000000400000
         2 $t load        3      4 0x0000000000001000 0x0000000000400004
         3 $t store       6     16 0x00000000000020f8 0x0000000000400008
         4 $t stop
         5 $t unknown     0      1 0x0000000000009000 0x000000000040000c
         6 $t load        0      8 0xfffffffffffffff0 0x0000000000400010" trace dump small
expect 0 "count,thread,kind,group,size,addr,pc
0,$thread,start,,,,
1,$thread,load,0,256,0x2000,0x400000
2,$thread,load,3,4,0x1000,0x400004
3,$thread,store,6,16,0x20f8,0x400008
4,$thread,stop,,,,
5,$thread,unknown,0,1,0x9000,0x40000c
6,$thread,load,0,8,0xfffffffffffffff0,0x400010" trace dump --format csv small
expect 0 '{"count":0,"thread":'$thread',"kind":"start"}
{"count":1,"thread":'$thread',"kind":"load","group":0,"size":256,"addr":"0x2000","pc":"0x400000"}
{"count":2,"thread":'$thread',"kind":"load","group":3,"size":4,"addr":"0x1000","pc":"0x400004"}
{"count":3,"thread":'$thread',"kind":"store","group":6,"size":16,"addr":"0x20f8","pc":"0x400008"}
{"count":4,"thread":'$thread',"kind":"stop"}
{"count":5,"thread":'$thread',"kind":"unknown","group":0,"size":1,"addr":"0x9000","pc":"0x40000c"}
{"count":6,"thread":'$thread',"kind":"load","group":0,"size":8,"addr":"0xfffffffffffffff0","pc":"0x400010"}' \
  trace dump small --format jsonl

# Elements, of code that is in no file: nothing is told.
expect 0 "     count   thread kind    group   size   lanes address        pc
         0 $(printf %8d "$thread") start
         1 $(printf %8d "$thread") load        0    256       - 0x000000002000 0x000000400000" \
  trace dump --elements --limit 2 small
expect 0 "count,thread,kind,group,size,addr,pc,elements,element_bytes,lane_bytes
0,$thread,start,,,,,,,
1,$thread,load,0,256,0x2000,0x400000,,," trace dump --elements --format csv --limit 2 small

# Filters, which leave the numbers as they are; those for addresses leave markers out.
expect 0 "count,thread,kind,group,size,addr,pc
1,$thread,load,0,256,0x2000,0x400000
2,$thread,load,3,4,0x1000,0x400004" trace dump --format csv --kind load --limit 2 small
expect 0 "count,thread,kind,group,size,addr,pc
1,$thread,load,0,256,0x2000,0x400000
3,$thread,store,6,16,0x20f8,0x400008" trace dump --format csv --address 0x20ff-0x2100 small
expect 0 "count,thread,kind,group,size,addr,pc
2,$thread,load,3,4,0x1000,0x400004" trace dump --format csv --address 4099 small
expect 0 "count,thread,kind,group,size,addr,pc
2,$thread,load,3,4,0x1000,0x400004" trace dump --format csv --address 0-0X1000 small
expect 0 "count,thread,kind,group,size,addr,pc
1,$thread,load,0,256,0x2000,0x400000
2,$thread,load,3,4,0x1000,0x400004" trace dump --format csv --pc 0-0x400004 small
expect 0 "count,thread,kind,group,size,addr,pc
3,$thread,store,6,16,0x20f8,0x400008
5,$thread,unknown,0,1,0x9000,0x40000c" trace dump --format csv --pc 0x400008-0x40000f small
expect 0 "count,thread,kind,group,size,addr,pc
0,$thread,start,,,,
1,$thread,load,0,256,0x2000,0x400000
2,$thread,load,3,4,0x1000,0x400004
3,$thread,store,6,16,0x20f8,0x400008
4,$thread,stop,,,," trace dump --format csv --region 1 small
expect 0 'count,thread,kind,group,size,addr,pc' trace dump --format csv --thread 1 small
expect 0 'count,thread,kind,group,size,addr,pc' trace dump --format csv --region 2 small
for range in 0x 5-4 1-2-3 -1 x; do
  expect 2 "quern: --address: '$range' is no address and no range of them, as in 0x1000 or 0x1000-0x1fff" \
    trace dump --address="$range" small
done

for option in --thread --region --limit --top; do
  for number in -1 x 1x 0x 18446744073709551616; do
    expect 2 "quern: $option: '$number' is no number" trace stats $option="$number" small
  done
done

# The one record of 256 bytes is a whole vector, or is not.
bits=$("${quern[@]}" --version | sed -n 's/.*(\([0-9]*\)-bit.*/\1/p')
full=$([ "$bits" = 2048 ] && echo 1 || echo 0)
expect 0 "accesses       4 records of 3 instructions
  loads        3 (75.0 %), of 268 bytes
  stores       1 (25.0 %), of 16 bytes
  lane loads   1 (25.0 %): of gathers and structures, 1.0 an instruction
  lane stores  1 (25.0 %)
  full vectors $full ($((25 * full)).0 %)
footprint      7 lines of 64 bytes, 3 pages of 4096
across lines   2 (50.0 %)
across pages   0 (0.0 %)
sizes          up to 4                  1  25.0 %  #######
               up to 8                  1  25.0 %  #######
               up to 16                 1  25.0 %  #######
               up to 256                1  25.0 %  #######
reuse distance 1                        1  12.5 %  ####
               none, or >=1M            7  87.5 %  #########################

   records      % loads %     lines  stride  region
         3   75.0    66.7         6   mixed  1
         1   25.0   100.0         1   mixed  outside" trace stats --by region small
columns=records,instructions,loads,stores,loaded_bytes,stored_bytes,lane_loads,lane_load_instructions,lane_stores,\
lane_store_instructions,whole_vectors,lines,pages,across_lines,across_pages,\
known_records,elements,element_bytes,stride,stride_records
expect 0 "pc,place,source,$columns
0x400000,0x400000,,1,1,1,0,256,0,0,0,0,0,$full,4,1,1,0,0,0,0,,0
0x400004,0x400004,,1,1,1,0,4,0,1,1,0,0,0,1,1,0,0,0,0,0,,0" trace stats --format csv --top 2 small
expect 0 "thread,$columns
$thread,1,0,0,1,0,16,0,0,1,0,0,2,1,1,0,0,0,0,,0" trace stats --format csv --by thread --kind store small
expect 0 "function,$columns
?,4,3,3,1,268,16,1,1,1,0,$full,7,3,2,0,0,0,0,,0" trace stats --format csv --by function small
numbers='"records": 1,
@"instructions": 1,
@"loads": 1,
@"stores": 0,
@"loaded_bytes": 8,
@"stored_bytes": 0,
@"lane_loads": 0,
@"lane_load_instructions": 0,
@"lane_stores": 0,
@"lane_store_instructions": 0,
@"whole_vectors": 0,
@"lines": 1,
@"pages": 1,
@"across_lines": 0,
@"across_pages": 0,
@"known_records": 0,
@"elements": 0,
@"element_bytes": 0,
@"sizes": {
@  "8": 1
@},
@"element_sizes": {},
@"strides": [],
@"reuse_distance": [
@  {
@    "from": 1048576,
@    "or_first": true,
@    "accesses": 1
@  }
@]'
expect 0 "{
  \"total\": {
    ${numbers//@/    }
  },
  \"rows\": [
    {
      \"region\": \"outside\",
      ${numbers//@/      }
    }
  ]
}" trace stats --format json --by region --region 0 small
smalls_thread=$thread
make other 1 only
expect 0 "                               A               B      change
records                        4               1     -75.0 %
instructions                   3               1     -66.7 %
loads                          3               1     -66.7 %
stores                         1               0    -100.0 %
bytes                        284               8     -97.2 %
lane loads                     1               0    -100.0 %
lane stores                    1               0    -100.0 %
full vectors                   $full               0    $([ $full = 1 ] && echo '-100.0 %' || echo '       =')
lines                          7               1     -85.7 %
pages                          3               1     -66.7 %
across lines                   2               0    -100.0 %
across pages                   0               0           =
reuse >=512                    7               1     -85.7 %
reuse >=16K                    7               1     -85.7 %

records in A        in B      change  place
           1           1           =  0x400000
           1           0    -100.0 %  0x400004
           1           0    -100.0 %  0x400008
           1           0    -100.0 %  0x400010" trace diff small other
expect 0 'region,records_a,records_b,bytes_a,bytes_b,lines_a,lines_b
1,3,0,276,0,6,0
outside,1,1,8,8,1,1' trace diff --format csv --by region small other
"${quern[@]}" trace diff --format json small other >printed
grep -qx '  "b": {' printed && [ "$(grep -c '"place"' printed)" = 4 ] || fail "diff as JSON: $(<printed)"
[[ $("${quern[@]}" trace diff other small) == *$'\n           0           1         new  0x400004\n'* ]] ||
  fail 'a place that A does not have is not called new'

# Two rounds over so many lines: each line of the second was touched LINES - 1 other lines ago.
# reuse LINES OTHER_LINES WANTED: the lines of the comparison that are about reuse, without their blanks.
reuse() {
  local lines found
  for lines in "$1" "$2"; do make "rounds.$lines" $((2 * lines)) only "$lines"; done
  found=$("${quern[@]}" trace diff "rounds.$1" "rounds.$2" | sed -n '/^reuse/s/  */ /gp')
  [ "$found" = "$3" ] || fail "reuse of $1 and $2 lines: $found"
}
reuse 512 513 'reuse >=512 512 1026 +100.4 %
reuse >=16K 512 513 +0.2 %'
reuse 16384 16385 'reuse >=512 32768 32770 +0.0 %
reuse >=16K 16384 32770 +100.0 %'
thread=$smalls_thread
[ "$("${quern[@]}" trace diff --format csv --by region small rounds.512 | cut -d, -f1-3)" = 'region,records_a,records_b
outside,1,1024
1,3,0' ] || fail 'what has most accesses in either trace is not first'
expect 0 '0 2000 100
0 1000 4
1 20f8 10
0 fffffffffffffff0 8' trace export small
expect 0 ' L 2000,256
 L 1000,4
 S 20f8,16' trace export --format lackey --region 1 small

make orderly 5000 only
expect 0 '5000 records, all in order' trace check orderly
too_large=$([ "$bits" = 2048 ] || printf 'record 1 has a size that no vector has\n ')
expect 1 "${too_large% }record 3 differs from its group in place, kind or size
record 5 is of no known kind" trace check small
cp orderly cut && truncate -s -1 cut
expect 1 'the file is cut: it was longer once' trace check cut
# The second slot's count, group and mark, behind the list of modules.
second=$(($(getconf PAGESIZE) + 65536 + 64 + 48))
rm -f broken && make broken 3 only
printf '\0' | dd of=broken bs=1 seek=$second conv=notrunc status=none
expect 1 'record 0 is there twice' trace check broken
rm -f broken && make broken 3 only
printf '\2' | dd of=broken bs=1 seek=$((second + 12)) conv=notrunc status=none
expect 1 'record 1 goes on with a group that was not begun' trace check broken
rm -f broken && make broken 3 only
printf '\3' | dd of=broken bs=1 seek=$((second + 12)) conv=notrunc status=none
expect 1 "thread $thread has a group that does not end" trace check broken
rm -f broken && make broken 3 only
printf '\0' | dd of=broken bs=1 seek=$((second + 20)) conv=notrunc status=none
expect 1 '1 records were being written when the process ended
1 counts have no record' trace check broken

expect 0 'cache                     accesses        hits      misses misses %
L1 32K,8,64                   5000        4999           1      0.0
L2 1M,16,64                      1           0           1    100.0

    accesses   L1 misses   L2 misses  place
        5000           1           1  0x400000' trace cache orderly
# The first load of small takes four lines, its store the last of them and one more.
expect 0 'cache                     accesses        hits      misses misses %
L1 256,4,64                      8           1           7     87.5

    accesses   L1 misses  place
           4           4  0x400000
           1           1  0x400004' trace cache --level 256,4,64 --top 2 small
for level in 32K,8 0,1,64 32K,0,64 32K,8,48 100,1,64 32K,8,64,1 x,1,1; do
  expect 2 "quern: --level: '$level' is no cache: give its bytes, ways, and bytes a line (a power of two), as in \
32K,8,64" trace cache --level $level small
done
expect 2 'quern: --level: all caches must have lines of the same size' \
  trace cache --level 32K,8,64 --level 1M,8,128 small

thread=$smalls_thread
# info_of FILE_LINE END_LINE: the summary of the small trace, without the lines that differ from run to run.
info_of() {
  printf '%s\n' "program        make_trace" "ended          $2" "vector length  $bits bits" "file           $1" \
    "records        7" "  loads        3, of 268 bytes" "  stores       1, of 16 bytes" "  markers      1 start, 1 stop" \
    "addresses      0x1000 to 0xfffffffffffffff7, a range of 18446744073709547512 bytes" "threads        1" \
    "unknown        1 records of no known kind"
}
info() { "${quern[@]}" trace info "$1" | grep -v '^process\|^started'; }
size=$(stat -c %s small)
[ "$(info small)" = "$(info_of "$size bytes" 'in good order')" ] || fail "info: $(info small)"
now=$(date +%Y-%m-%d)
"${quern[@]}" trace info small | grep -q "^started  *\($now\|$(date +%Y-%m-%d)\) ..:..:.. UTC\$" || fail "info: start time"
"${quern[@]}" trace info small | grep -Eq "^process +$thread \(parent [0-9]+\)\$" || fail "info: process"

"${quern[@]}" trace info --modules small >printed
grep -Eq '^0x[0-9a-f]{12} [0-9a-f]{8} /.*/make_trace$' printed || fail "info --modules: $(<printed)"

# A trace that was cut, in its unused end and within its records.
cp small cut && truncate -s -1 cut
[ "$(info cut)" = "$(info_of "$((size - 1)) bytes, cut: it was longer once" 'in good order')" ] || fail "cut: $(info cut)"
truncate -s "$((second + 47))" cut
expect 0 "     count   thread kind    group   size address            pc
         0 $t start
quern: cut is cut: it was longer once" trace dump cut
for command in stats cache export; do
  "${quern[@]}" trace $command cut 2>&1 >/dev/null | grep -qx 'quern: cut is cut: it was longer once' || fail "$command: a cut file"
done
"${quern[@]}" trace diff small cut 2>&1 >/dev/null | grep -qx 'quern: cut is cut: it was longer once' || fail 'diff: a cut file'
truncate -s 100 cut
expect 0 "file           100 bytes, cut: it was longer once
records        0
  loads        0, of 0 bytes
  stores       0, of 0 bytes
  markers      0 start, 0 stop
addresses      none
threads        0" trace info cut

# A reader of the dump that has seen enough ends it quietly.
make large 20000
for format in text csv jsonl; do
  status=0
  "${quern[@]}" trace dump --format $format large 2>errors | head -1 >/dev/null || status=$?
  [ $status = 0 ] && [ ! -s errors ] || fail "dump | head: status $status, $(cat errors)"
  [ "$("${quern[@]}" trace dump --format $format large | tail -1 | grep -c 20006)" = 1 ] || fail "dump: the last record"
done
for command in info dump stats export cache plot check; do
  status=0
  "${quern[@]}" trace $command large >/dev/full 2>errors || status=$?
  [ $status = 1 ] && [ "$(cat errors)" = "quern: can't write the output: No space left on device" ] ||
    fail "$command >/dev/full: status $status, $(cat errors)"
done

# A hole of 100 GB is passed over.
cp small holes && truncate -s 100G holes
timeout 10 "${quern[@]}" trace info holes | grep -q '^records        7$' || fail "info: a file with a hole"

# Neither a program's name nor an open region goes unseen.
cp small renamed
printf 'a\33[31mb\0' | dd of=renamed bs=1 seek=128 conv=notrunc status=none
printf '\2' | dd of=renamed bs=1 seek=80 conv=notrunc status=none
"${quern[@]}" trace info renamed >printed
grep -qxF 'program        a\x1b[31mb' printed || fail "info: $(grep ^program printed)"
grep -qx '  markers      1 start, 1 stop, 2 regions left open' printed || fail "info: $(grep markers printed)"

# The most frequent stride: EXTRA loads of 8 bytes at one address, after one of 256 bytes elsewhere by the same
# instruction.
"${quern[@]}" trace stats large >printed
grep -qx '     20001  100.0   100.0         5      +0  0x400000' printed || fail "stats: $(<printed)"
grep -qx '(1 more: see --top)' <("${quern[@]}" trace stats --top 3 large) || fail "stats --top 3"

touch empty
echo 'some text that is no trace' >text
for command in info dump stats export cache plot check; do
  expect 1 "quern: can't open absent: No such file or directory" trace $command absent
  expect 1 "quern: . is a folder, not a trace file" trace $command .
  expect 1 "quern: empty is empty, no trace file" trace $command empty
  expect 1 "quern: text is not a trace file" trace $command text
  expect 2 "quern: FILE is required (see quern trace $command --help)" trace $command
done
printf '\5' | dd of=small bs=1 seek=8 conv=notrunc status=none
expect 1 "quern: small has format version 5; this quern reads versions 1 to 4" trace info small
expect 2 "quern: --format: xml not in {text,csv,jsonl} (see quern trace dump --help)" trace dump --format xml large
expect 2 "quern: A subcommand is required (see quern trace --help)" trace
[ "$failures" = 0 ]
