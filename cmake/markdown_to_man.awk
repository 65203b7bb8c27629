# A page of docs/ as a manual page, by the macros of man(7) and the tables of tbl(1).
#   awk -v name=NAME -v section=N -v version=V -f markdown_to_man.awk PAGE.md
# Knows what those pages use: headings, paragraphs, lists, tables, indented and fenced blocks, `code`, **bold**, links.

function escaped(text) {
  gsub(/\\/, "\\e", text)
  gsub(/-/, "\\-", text)
  return text
}

function formatted(text) {
  text = escaped(text)
  while (match(text, /\[[^]]*\]\([^)]*\)/)) {
    link = substr(text, RSTART, RLENGTH)
    sub(/^\[/, "", link)
    sub(/\]\(.*$/, "", link)
    text = substr(text, 1, RSTART - 1) link substr(text, RSTART + RLENGTH)
  }
  while (match(text, /`[^`]*`/))
    text = substr(text, 1, RSTART - 1) "\\fB" substr(text, RSTART + 1, RLENGTH - 2) "\\fR" substr(text, RSTART + RLENGTH)
  while (match(text, /\*\*[^*]*\*\*/))
    text = substr(text, 1, RSTART - 1) "\\fB" substr(text, RSTART + 2, RLENGTH - 4) "\\fR" substr(text, RSTART + RLENGTH)
  return text
}

# A line that roff would take for a request.
function printed(text) { print (text ~ /^[.']/ ? "\\&" : "") text }

function close_block() {
  if (block == "table") print ".TE"
  if (block == "code") print ".EE\n.RE"
  block = ""
}

# A table's row as tbl reads it; long cells and the last column are broken into lines.
function table_row(line,   cells, count, i) {
  gsub(/^\| *| *\|? *$/, "", line)
  count = split(line, cells, / *\| */)
  if (block != "table") {
    block = "table"
    print ".PP\n.TS"
    for (i = 1; i < count; ++i) printf "lb "
    print "lb"
    for (i = 1; i < count; ++i) printf "l "
    print "lx."
    columns = count
  }
  for (i = 1; i <= columns; ++i) {
    if (i > 1) printf "\t"
    if (i == columns || length(cells[i]) > 24) printf "T{\n%s\nT}", formatted(cells[i])
    else printf "%s", formatted(cells[i])
  }
  print ""
}

BEGIN {
  print "'\\\" t"
  printf ".TH %s %s \"\" \"quern %s\" \"quern\"\n", name, section, version
}
/^<!--.*-->$/ { next }
/^```/ && fenced { fenced = 0; close_block(); next }
/^```/ { fenced = 1; close_block(); block = "code"; print ".PP\n.RS 4\n.EX"; next }
fenced { printed(escaped($0)); next }
/^    / {
  if (block != "code") { close_block(); block = "code"; print ".PP\n.RS 4\n.EX" }
  printed(escaped(substr($0, 5)))
  next
}
/^\|[-| :]*$/ { next }
/^\|/ { if (block != "table") close_block(); table_row($0); next }
/^# / { title = tolower(substr($0, 3)); print ".SH NAME\n" name " \\- " title "\n.SH DESCRIPTION"; next }
/^## / { close_block(); print ".SH " toupper(formatted(substr($0, 4))); next }
/^###/ { close_block(); sub(/^#+ /, ""); print ".SS " formatted($0); next }
/^- / { close_block(); print ".IP \\(bu 2"; printed(formatted(substr($0, 3))); next }
/^[0-9]+\. / { close_block(); print ".IP " $1 " 3"; sub(/^[0-9]+\. /, ""); printed(formatted($0)); next }
/^$/ { close_block(); paragraph = 1; next }
{
  close_block()
  if (paragraph) print ".PP"
  paragraph = 0
  printed(formatted($0))
}
END { close_block(); print ".SH SEE ALSO\n.BR quern\\-run (1),\n.BR quern\\-trace (1)" }
