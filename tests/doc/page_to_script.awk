# Makes of a page a script of calls of run, write_to and find_in, which check_page has.

function named_in(sentence,    words) {
  words = ""
  while (match(sentence, /`[^`]*`/)) {
    words = words " '" substr(sentence, RSTART + 1, RLENGTH - 2) "'"
    sentence = substr(sentence, RSTART + RLENGTH)
  }
  return words
}

function side_in(sentence) {
  return sentence ~ / before `/ ? "before" : "behind"
}

function call(what, text) {
  printf "%s <<'END_OF_BLOCK'\n%sEND_OF_BLOCK\n", what, text
}

function quoted(text) {
  gsub(/'/, "'\\''", text)
  return "'" text "'"
}

function call_commands(    lines, n, i, command, output) {
  n = split(block, lines, "\n") - 1
  command = output = ""
  for (i = 1; i <= n; i++) {
    if (lines[i] !~ /^[$] /) {
      output = output lines[i] "\n"
      continue
    }
    if (command != "") call("run " command, output)
    command = quoted(substr(lines[i], 3))
    output = ""
  }
  call("run " command, output)
}

!is_inside && /^```/ { is_inside = 1; kind = substr($0, 4); block = ""; next }
is_inside && /^```$/ {
  is_inside = 0
  if (kind == "console") call_commands()
  if (kind == "pf") call("write_to " side_in(sentence) named_in(sentence), block)
  if (kind == "xml" || kind == "text") call("find_in" named_in(sentence), block)
  next
}
is_inside { block = block $0 "\n"; next }
/^$/ { is_over = 1; next }
is_over { sentence = ""; is_over = 0 }
{ sentence = sentence " " $0 }
