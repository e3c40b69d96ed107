# write_block.awk -v list=LIST -v group=GROUP -v side=SIDE -v line=LINE BLOCK FILE: the parameter file with the block in
# that list, "before" or "behind" the line of that name, or without one at the list's end. Fails when there is no such
# place.

function write_block() {
  printf "%s", block
  is_written = 1
}

FNR == NR { block = block $0 "\n"; next }
$2 == "&Arr{" { is_in_group = $1 == group }
is_in_group && $1 == list && $2 == "&Tbl{" { is_in_list = 1 }
is_in_list && $1 == (line == "" ? "}" : line) && (line == "" || side == "before") { write_block() }
{ print }
is_in_list && line != "" && $1 == line && side == "behind" { write_block() }
is_in_list && $1 == "}" { is_in_list = is_in_group = 0 }
END { exit !is_written }
