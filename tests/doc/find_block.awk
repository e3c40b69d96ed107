# find_block.awk BLOCK FILE: succeeds when the file has the lines of the block, one below the other. A line "..." is for
# any lines, "..." within a line for any text.

function is_like(line, wanted,    at, rest) {
  at = index(wanted, "...")
  if (at == 0) return line == wanted
  rest = substr(wanted, at + 3)
  return substr(line, 1, at - 1) == substr(wanted, 1, at - 1) && length(line) >= at - 1 + length(rest) &&
         substr(line, length(line) - length(rest) + 1) == rest
}

# The line of the file behind the piece of the block from `first` to before `last`; 0 when it is not there.
function find_piece(first, last, from,    at, i) {
  for (at = from; at + last - first <= lines + 1; at++) {
    for (i = first; i < last && is_like(file[at + i - first], wanted[i]); i++) continue
    if (i == last) return at + last - first
  }
  return 0
}

FNR == NR { wanted[++n] = $0; next }
{ file[++lines] = $0 }
END {
  wanted[n + 1] = "..."
  from = first = 1
  for (i = 1; i <= n + 1; i++) {
    if (wanted[i] != "...") continue
    from = find_piece(first, i, from)
    if (from == 0) exit 1
    first = i + 1
  }
  exit n == 0
}
