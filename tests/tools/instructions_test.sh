#!/usr/bin/env bash
# instructions_test.sh QUERN...: what `quern decode` and `quern list` print, and how they end. QUERN... is the command,
# with an emulator before it if need be.
. "$(dirname "$0")/expect.sh" "$@"
enter_folder

add='04220020
  assembly  add z0.b, z1.b, z2.b
  thunk     VecU8AddVVX
  map       decode_map__31_21__15_10
  key       0x840
  route     direct
  handler   sve_add_zzz
  Zd        z0.b
  Zn        z1.b
  Zm        z2.b'
setffr='252c9000
  assembly  setffr
  thunk     VecPClearFFSR
  map       decode_map__31_0
  key       0x252c9000
  route     direct
  handler   sve_setffr'
fdiv='65cd8c41
  assembly  fdiv z1.d, p3/m, z1.d, z2.d
  thunk     VecD64DivVVM
  map       decode_map__31_13
  key       0x32e6c
  route     direct, moves FPSR
  handler   sve_fdiv_zpz
  Zdn       z1.d
  Pg        p3/m
  Zm        z2.d'
ldff1h='c4f16adf
  assembly  ldff1h {z31.d}, p2/z, [x22, z17.d, sxtw #1]
  thunk     VecU64LoadFF2XSVZ
  map       decode_map__31_21__15_13
  key       0x313b
  route     library
  handler   VecU64LoadFF2XSVZ
  Zt        {z31.d}
  Pg        p2/z
  Rn|SP     x22
  Zm        z17.d, sxtw #1'
prfb='85c30be1
  assembly  prfb pldl1strm, p2, [sp, #3, mul vl]
  thunk     VecU8Prefetch1SI
  map       decode_map__31_22__15_13__4_4
  key       0x2170
  route     none
  handler   none: it does nothing
  prfop     pldl1strm
  Pg        p2
  Rn|SP     sp
  imm6      #3, mul vl'
nop='d503201f
  not an emulated instruction'

no_word() {
  echo "quern: '$1' is not an instruction word: give 1 to 8 hexadecimal digits, as in 04220020 or 0x04220020"
}

expect 0 "$add" decode 04220020
expect 0 "$add" decode 0x4220020
expect 0 "$setffr"$'\n'"$fdiv"$'\n'"$ldff1h"$'\n'"$prfb" decode 252C9000 0X65cd8c41 c4f16adf 85c30be1
expect 1 "$nop"$'\n'"$add" decode D503201F 04220020
expect 1 "$add"$'\n'"$nop"$'\n'"$add" decode 04220020 - 04220020 <<<' 0xd503201f '
expect 0 "$add"$'\n'"$add" decode - <<<$'04220020\n04220020'
expect 0 '' decode - </dev/null
expect 2 "$(no_word mul)" decode 04220020 mul
expect 2 "$(no_word 0x)" decode 0x
expect 2 "$(no_word 104220020)" decode 104220020
expect 2 "$(no_word 0x-1)" decode 0x-1
expect 2 "$(no_word '04 ')" decode '04 '
expect 2 "$(no_word '')" decode ''
expect 2 "$(no_word zz)" decode - <<<'04220020 zz'
expect 2 "$(no_word 'a\x00b' | tr -d '\0')" decode - < <(printf 'a\0b')
expect 2 "$(no_word '\x7fELF\x02\x01\xff')" decode - < <(printf '\x7fELF\2\1\xff')
expect 2 "$(no_word "$(printf '4%.0s' {1..40})...")" decode "$(printf '4%.0s' {1..100000})"
expect 1 "quern: can't read standard input: Is a directory" decode - </
expect 2 'quern: WORD is required (see quern decode --help)' decode
expect 2 'quern: --route: fast not in {direct,library,none} (see quern list --help)' list --route fast
expect 2 'quern: --format: xml not in {text,csv,jsonl,markdown} (see quern list --help)' list --format xml

# wants_line LINE ARGUMENTS...: whether the command prints that line among others. All are read: a pipe closed early
# would end the command.
wants_line() {
  local line=$1
  shift
  "${quern[@]}" "$@" | grep -Fx -- "$line" >/dev/null && return
  fail "$(printf 'quern %s has no line\n%s' "$*" "$line")"
}

pattern='00000100001 mmmmm 000000 nnnnn ddddd'
wants_line "VecU8AddVVX,add,decode_map__31_21__15_10,0x840,$pattern,direct,no,sve_add_zzz,\"Zd.b, Zn.b, Zm.b\"" \
  list --format csv
wants_line "| \`VecU8AddVVX\` | add | 0x840 | \`$pattern\` | direct | \`sve_add_zzz\` | Zd.b, Zn.b, Zm.b |" \
  list --format markdown
wants_line "VecU8AddVVX            add      decode_map__31_21__15_10           0x840       $pattern     direct   sve_add_zzz          \
       Zd.b, Zn.b, Zm.b" list
wants_line '{"thunk":"VecU8AddVVX","mnemonic":"add","map":"decode_map__31_21__15_10","key":2112,"mask":4292934656,"value":69206016,'\
'"pattern":"'"$pattern"'","route":"direct","fpsr":false,"handler":"sve_add_zzz","operands":['\
'{"name":"Zd","form":"Zd.b","mask":31},{"name":"Zn","form":"Zn.b","mask":992},'\
'{"name":"Zm","form":"Zm.b","mask":2031616}]}' list --format jsonl --route direct

# wants_count COUNT ARGUMENTS...: how many lines the command prints.
wants_count() {
  local count=$1 printed
  shift
  printed=$("${quern[@]}" "$@" | wc -l)
  [ "$printed" = "$count" ] && return
  echo "FAILED: quern $* prints $printed lines, wanted $count"
  failures=$((failures + 1))
}

wants_count 1483 list
wants_count 1483 list --format jsonl
wants_count 1484 list --format csv # with a heading
wants_count 803 list --route direct
wants_count 644 list --route library
wants_count 36 list --route none
# Output that can't be written is said so, unless its reader has seen enough.
for arguments in list 'decode 04220020' --help --version 'list --help'; do
  # shellcheck disable=SC2086
  status=0 && "${quern[@]}" $arguments >/dev/full 2>errors || status=$?
  [ $status = 1 ] && [ "$(<errors)" = "quern: can't write the output: No space left on device" ] ||
    fail "$arguments >/dev/full: status $status, $(<errors)"
  # shellcheck disable=SC2086
  status=0 && "${quern[@]}" $arguments 2>errors >&- || status=$?
  [ $status = 1 ] && [ "$(<errors)" = "quern: can't write the output: Bad file descriptor" ] ||
    fail "$arguments >&-: status $status, $(<errors)"
done
for arguments in list 'list --format jsonl'; do
  # shellcheck disable=SC2086
  status=0 && "${quern[@]}" $arguments 2>errors | head -1 >/dev/null || status=$?
  [ $status = 0 ] && [ ! -s errors ] || fail "$arguments | head: status $status, $(<errors)"
done
[ "$failures" = 0 ]
