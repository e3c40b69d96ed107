// The records of an epoch lie together. Each row of stage is looked at once for each row of calibration it stands
// under.
#include "stages/chain_check.h"

#include <string>
#include <vector>

namespace triglub {

namespace {

bool are_of_one_epoch(const RecordRows& rows, std::size_t a, std::size_t b) {
  return rows.rows[kEpoch][a] == rows.rows[kEpoch][b] && rows.rows[kSnetsta][a] == rows.rows[kSnetsta][b];
}

// The first record of those from `begin` to before `end` whose stage cannot be written; `end` for none.
std::size_t find_broken(const StageTable& table, const RecordRows& rows, std::size_t begin, std::size_t end,
                        std::string* fault) {
  for (std::size_t i = begin; i < end; ++i) {
    const std::uint32_t stage = rows.rows[kStage][i];
    if (stage != kAbsent && !table.facts(stage, rows.rows[kCalibration][i], fault)) return i;
  }
  return end;
}

// There may be as many faults of files as files: they are of one kind, and stand behind the places.
void tell(const StageTable& table, const ResponseFiles& files, std::uint32_t stage, const std::string& fault,
          Findings* findings) {
  const ResponseFile* file = files.find(stage);
  const bool is_of_file = file != nullptr && file->filter == nullptr;
  const std::string what = "channel epochs written without their stages: ";
  if (is_of_file) {
    findings->add(Rank::warning, what + "the response file cannot be used", table.place(stage) + ": " + fault);
  } else {
    findings->add(Rank::warning, what + fault, table.place(stage));
  }
}

void move_record(RecordRows* rows, std::size_t from, std::size_t to) {
  if (from == to) return;
  for (std::vector<std::uint32_t>& column : rows->rows) column[to] = column[from];
}

}  // namespace

void drop_broken_chains(Dbptr stage, Dbptr calibration, ResponseFiles* files, RecordRows* rows, Findings* findings) {
  for (const std::uint32_t row : rows->rows[kStage]) {
    if (row != kAbsent) files->read(row);
  }
  const StageTable table(stage, calibration, *files);
  std::size_t kept = 0;
  std::string fault;
  for (std::size_t begin = 0; begin < rows->size();) {
    std::size_t end = begin + 1;
    while (end < rows->size() && are_of_one_epoch(*rows, begin, end)) ++end;
    const std::size_t broken = find_broken(table, *rows, begin, end, &fault);
    if (broken == end) {
      for (std::size_t i = begin; i < end; ++i) move_record(rows, i, kept++);
    } else {
      tell(table, *files, rows->rows[kStage][broken], fault, findings);
      move_record(rows, begin, kept);
      rows->rows[kStage][kept++] = kAbsent;
    }
    begin = end;
  }
  for (std::vector<std::uint32_t>& column : rows->rows) column.resize(kept);
}

}  // namespace triglub
