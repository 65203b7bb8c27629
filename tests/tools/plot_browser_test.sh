#!/usr/bin/env bash
# plot_browser_test.sh MAKE_PLOT_TRACE... -- QUERN...: the page that `quern trace plot` writes, in a browser without a
# window: what it draws, and what it does when it is zoomed, pointed at, and made dark. Left out (status 77) where there
# is no Chromium. Either command has an emulator before it if need be.
maker=()
while [ "$1" != -- ]; do maker+=("$1") && shift; done
shift
. "$(dirname "$0")/expect.sh" "$@"
browser=$(command -v chromium || command -v chromium-browser || command -v google-chrome) || {
  echo 'there is no browser: scripts/setup --browser installs one'
  exit 77
}
script=$(realpath "$(dirname "$0")/plot_browser_test.js")
enter_folder
export HOME=$folder  # for what the browser keeps
QUERN_TRACE=a.trace "${maker[@]}" '<b>program & co' 100
"${quern[@]}" trace plot a.trace -o plots >/dev/null

# The page with errors noted from its first line on, and at its end a script that uses it and adds what it saw, a line
# each, to an element of its own. Without a window there are few frames: it draws without waiting for them.
{
  sed '/^<meta charset/q' plots/index.html
  echo '<script>
    const seen = [];
    onerror = (text) => { seen.push("error: " + text); };
    requestAnimationFrame = (act) => setTimeout(act);
  </script>'
  sed '1,/^<meta charset/d; /^<\/body>/,$d' plots/index.html
  echo '<pre id="seen"></pre><script>'
  cat "$script"
  echo '</script></body></html>'
} >page.html

# see WANTED ARGUMENTS...: what the script saw when the browser has these arguments, and that the browser complains of nothing.
see() {
  local wanted=$1 got
  shift
  timeout 100 "$browser" --headless --no-sandbox --disable-gpu --user-data-dir="$folder/browser" --enable-logging=stderr \
    --virtual-time-budget=60000 "$@" --dump-dom "file://$folder/page.html" >dom 2>log || fail "the browser ended by $?"
  got=$(sed -n '/^<pre id="seen">/,/^<\/pre>/p' dom | sed -e 's/<[^>]*>//g' -e '/^$/d')
  [ "$got" = "$wanted" ] || fail "$(printf 'in a browser with %s:\n%s\n-- wanted:\n%s' "$*" "$got" "$wanted")"
  ! grep CONSOLE log || fail 'the browser complains, as above'
}
# wanted LIGHT_OR_DARK: what is to be seen in a browser that is set so.
wanted() {
  local light='rgb(255, 255, 255)' dark='rgb(22, 25, 29)' load=26,107,189 store=201,86,10
  local load_then=101,176,248 now=$light then=$dark
  if [ "$1" = dark ]; then load_then=$load load=101,176,248 store=246,161,82 now=$dark then=$light; fi
  cat <<END
title: &lt;b&gt;program &amp; co: memory accesses
marks: 300
areas: 0x100000 to 0x1018ff, 6.25 KiB; 0x7f0000000000 to 0x7f00000018ff, 6.25 KiB
ticks: 20 40 60 80 100 120 140 160 180 200 220 240 260 280 300
regions: 2
rows: 3
width: fits
zoomed by the button: fewer marks, other ticks
wheel without focus: nothing
zoomed by the wheel: fewer marks, other ticks
moved by a key: to the left
dragged: to the right
footprint: has the same ticks
reset: all as before
tip: 0x100000 to 0x10003f|record 1|loads of 64 B by|0x400000
row of the tip: 0x400000
tip: in the window
tip: none
bar: +64 B to 127 B: 99 loads, 99 stores
bar: 1048576 and more other lines, or the first time: 200 times
colours: loads $load, stores $store
a place alone: loads fainter, stores as before
kept: loads fainter
page: $now
page after a click: $then, loads $load_then
on a phone: fits
END
}
see "$(wanted light)" --window-size=1280,1000 --blink-settings=preferredColorScheme=1
see "$(wanted dark)" --window-size=1280,1000 --blink-settings=preferredColorScheme=0
[ "$failures" = 0 ]
