#!/usr/bin/env bash
# plot_test.sh MAKE_PLOT_TRACE... -- QUERN...: the files that `quern trace plot` writes, and how it ends. Either command
# has an emulator before it if need be.
maker=()
while [ "$1" != -- ]; do maker+=("$1") && shift; done
shift
. "$(dirname "$0")/expect.sh" "$@"
enter_folder
make() { QUERN_TRACE=$1 "${maker[@]}" "${@:2}"; }
files='addresses.svg footprint.svg index.html places.svg reuse.svg strides.svg'

make a.trace program 100
expect 0 'a.trace.plots/index.html' trace plot a.trace
[ "$(echo $(ls a.trace.plots))" = "$files" ] || fail "files: $(ls a.trace.plots)"
expect 0 'of it/all/index.html' trace plot -o 'of it/all' a.trace
expect 0 'of it/all/index.html' trace plot --output 'of it/all' a.trace  # over those that are there
cmp a.trace.plots/index.html 'of it/all/index.html' || fail 'the page differs from one writing to the next'

# has FILE TEXT...: the file has all of the texts.
has() {
  local file=$1 text
  shift
  for text in "$@"; do grep -qF -- "$text" "$file" || fail "$file lacks: $text"; done
}
cd a.trace.plots
has addresses.svg '300 accesses, 67 % of them loads, in 2 areas of memory' '0x100000 to 0x1018ff, 6.25 KiB' \
  '0x7f0000000000 to 0x7f00000018ff, 6.25 KiB'
has footprint.svg '12.5 KiB touched in all' 'touched within 2 records'
has strides.svg 'Most often +64 B: at least' '+64 B to 127 B: 99 loads, 99 stores'
has reuse.svg '33 % of the lines touched are among the last 512 (32 KiB)' 'or the first time: 200 times'
has places.svg 'All accesses are by 3 instructions' '100 (33 %)'
has index.html '200 loads and 100 stores of SVE instructions, by 3 places'
! grep -E 'https?://' index.html | grep -v 'http://www.w3.org/2000/svg' || fail 'the page asks for something elsewhere'
cd ..

# Filters are those of the other commands.
expect 0 'b/index.html' trace plot a.trace -o b --region 2
has b/places.svg 'All accesses are by 1 instruction<'
expect 0 'b/index.html' trace plot a.trace -o b --kind store --limit 50
has b/addresses.svg '50 accesses, 0 % of them loads, in 1 area of memory'
expect 1 'quern: the trace has no accesses to plot, or the filters let none through' trace plot a.trace -o c --region 3
[ ! -e c ] || fail 'a folder was made for nothing'

# The size of the files is bounded, whatever the trace's.
make large.trace program 200000
"${quern[@]}" trace plot large.trace -o large >/dev/null
for bound in 'addresses.svg 70000' 'footprint.svg 30000' 'index.html 1500000'; do
  set -- $bound
  [ "$(stat -c %s "large/$1")" -lt "$2" ] || fail "$1 is of $(stat -c %s "large/$1") bytes"
done
# Of all bytes in its cells, none was lost or counted twice: 3 places with 200,000 accesses of 64, 64 and 4 bytes.
if python=$(command -v python3); then
  "$python" - large/index.html <<'PYTHON' || fail 'the numbers of the page'
import json, re, sys
text = open(sys.argv[1]).read()
data = json.loads(re.search(r'<script id="data" type="application/json">(.*?)</script>', text, re.S).group(1))
for place in data["places"]:
    cells = place["cells"]
    drawn = sum(bytes * rows // data["joined_rows"] for rows, bytes in zip(cells[2::4], cells[3::4]))
    assert drawn == place["bytes"] == {"0x400008": 800000}.get(place["pc"], 12800000), place["name"]
assert sum(len(place["cells"]) for place in data["places"]) <= 4 * 40000
PYTHON
else
  echo 'there is no python3: the numbers of the page were not checked'
fi

# A program's name can't get out of where it stands.
make evil.trace '</script><b>&"x'$'\1\377' 3
expect 0 'evil.trace.plots/index.html' trace plot evil.trace
has evil.trace.plots/index.html '<h1>&lt;/script&gt;&lt;b&gt;&amp;&quot;x\x01\xff</h1>'
[ "$(grep -c '</script>' evil.trace.plots/index.html)" = 2 ] || fail 'the name ends a script'
if command -v xmllint >/dev/null; then
  for file in */*.svg; do xmllint --noout "$file" || fail "$file is no XML"; done
else
  echo 'there is no xmllint: the pictures were not checked to be XML'
fi

# What can't be written.
touch file
expect 1 "quern: can't make the folder file/x: Not a directory" trace plot a.trace -o file/x
mkdir -p full/index.html
expect 1 "quern: can't write full/index.html: Is a directory" trace plot a.trace -o full
expect 1 "quern: can't open absent: No such file or directory" trace plot absent
expect 2 "quern: FILE is required (see quern trace plot --help)" trace plot
[ "$failures" = 0 ]
