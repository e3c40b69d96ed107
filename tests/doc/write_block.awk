# write_block.awk -v list=LIST -v group=GROUP -v behind=LINE BLOCK FILE: the parameter file with the block in that list,
# behind the line of that name or at the list's end. Fails when there is no such place.

function write_block() {
  printf "%s", block
  is_written = 1
}

FNR == NR { block = block $0 "\n"; next }
$2 == "&Arr{" { is_in_group = $1 == group }
is_in_group && $1 == list && $2 == "&Tbl{" { is_in_list = 1 }
is_in_list && behind == "" && $1 == "}" { write_block() }
{ print }
is_in_list && behind != "" && $1 == behind { write_block() }
is_in_list && $1 == "}" { is_in_list = is_in_group = 0 }
END { exit !is_written }
