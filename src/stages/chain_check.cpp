// The records of an epoch lie together. Each row of stage is looked at once for each row of calibration it stands
// under.
#include "stages/chain_check.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "base/characters.h"
#include "stages/stage_facts.h"

namespace triglub {

namespace {

// Rates that differ by less are the same: the tables have seven decimals.
constexpr double kSameRate = 1e-6;

bool are_same_rates(double a, double b) { return std::fabs(a - b) <= kSameRate * std::max(a, b); }

bool are_same_units(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) { return to_lower(x) == to_lower(y); });
}

// What comes out of a stage, or goes into the first one.
struct Signal {
  std::string_view units;  // empty: not known
  double rate = 0;         // samples per second; 0: not digital
};

class ChainCheck {
 public:
  ChainCheck(const ResponseTables& tables, const ResponseFiles& files, const RecordRows& rows, Findings* findings)
      : sitechan_(tables.sitechan),
        stations_(sitechan_.texts("sta")),
        channels_(sitechan_.texts("chan")),
        table_(tables, files),
        rows_(rows),
        findings_(*findings) {}

  // Whether the chain of the records from `begin` to before `end` can be written. Tells what is wrong with it.
  bool can_be_written(std::size_t begin, std::size_t end);

 private:
  // One stage of the chain at hand.
  struct Stage {
    std::size_t record = 0;
    StageFacts facts;
    Signal in;
    Signal out;
    bool is_behind_gap = false;
  };

  std::uint32_t stage_of(std::size_t record) const { return rows_.rows[kStage][record]; }
  bool find_stages(std::size_t begin, std::size_t end);
  bool find_stage(std::size_t record, const Signal& before, Stage* stage);
  bool goes_on(const Stage& stage, const Signal& before) const;
  void tell_whole();
  void tell_units(const Stage& first);
  void tell_rates(const Stage& stage, const Signal& before);
  void tell_last_rate();
  void tell(Rank rank, const char* what, std::size_t record);
  void tell_broken(const char* why, std::size_t record, const std::string& fault);
  std::string place(std::size_t record) const;

  TableColumns sitechan_;
  TextColumn stations_;
  TextColumn channels_;
  StageTable table_;
  const RecordRows& rows_;
  Findings& findings_;
  std::vector<Stage> stages_;
};

std::string ChainCheck::place(std::size_t record) const {
  const std::uint32_t channel = rows_.rows[kSitechan][record];
  return table_.place(stage_of(record)) + " (" + std::string(stations_.text(channel)) + " " +
         std::string(channels_.text(channel)) + ")";
}

void ChainCheck::tell(Rank rank, const char* what, std::size_t record) { findings_.add(rank, what, place(record)); }

// There may be as many faults of files as files: they are of one kind, and stand behind the places.
void ChainCheck::tell_broken(const char* why, std::size_t record, const std::string& fault) {
  findings_.add(Rank::warning, std::string("channel epochs written without their stages: ") + why,
                place(record) + (fault.empty() ? "" : ": " + fault));
}

// Whether what goes into a stage behind a gap is what came out before it: then nothing is missing between them.
bool ChainCheck::goes_on(const Stage& stage, const Signal& before) const {
  const std::string_view own = table_.input_units(stage_of(stage.record));
  if (own.empty() || !are_same_units(own, before.units)) return false;
  return before.rate == 0 || are_same_rates(stage.in.rate, before.rate);
}

bool ChainCheck::find_stage(std::size_t record, const Signal& before, Stage* stage) {
  StageFault fault;
  const auto facts = table_.facts(stage_of(record), rows_.rows[kCalibration][record], &fault);
  if (!facts) {
    tell_broken(fault.what, record, fault.file);
    return false;
  }
  const std::string_view input = table_.input_units(stage_of(record));
  const std::string_view output = table_.output_units(stage_of(record));
  stage->record = record;
  stage->facts = *facts;
  stage->in = {input.empty() ? before.units : input, facts->is_digital ? facts->input_rate : 0};
  stage->out = {output.empty() ? stage->in.units : output, facts->is_digital ? facts->output_rate : 0};
  return true;
}

bool ChainCheck::find_stages(std::size_t begin, std::size_t end) {
  stages_.clear();
  Signal before = {table_.calibration_units(rows_.rows[kCalibration][begin])};
  std::int64_t number = 0;
  for (std::size_t record = begin; record < end; ++record) {
    Stage& stage = stages_.emplace_back();
    if (!find_stage(record, before, &stage)) return false;
    stage.is_behind_gap = table_.number(stage_of(record)) != number + 1;
    if (stage.is_behind_gap && !goes_on(stage, before)) {
      tell_broken("a gap in the stage numbers (stageid) across which units or rates do not chain", record, "");
      return false;
    }
    number = table_.number(stage_of(record));
    before = stage.out;
  }
  return true;
}

void ChainCheck::tell_rates(const Stage& stage, const Signal& before) {
  if (before.rate == 0 || stage.in.rate == 0 || are_same_rates(stage.in.rate, before.rate)) return;
  tell(Rank::warning, "stages whose input rate is not the output rate of the stage before", stage.record);
}

void ChainCheck::tell_last_rate() {
  const Stage& last = stages_.back();
  const auto rate = table_.channel_rate(rows_.rows[kCalibration][last.record], rows_.rows[kInstrument][last.record]);
  if (last.out.rate == 0 || !rate || are_same_rates(last.out.rate, *rate)) return;
  tell(Rank::warning, "decimations that do not end at the rate of the channel", last.record);
}

// The sensitivity has the unit of the first stage, and the number of the calibration.
void ChainCheck::tell_units(const Stage& first) {
  const std::string_view units = table_.calibration_units(rows_.rows[kCalibration][first.record]);
  if (units.empty() || are_same_units(units, first.in.units)) return;
  tell(Rank::warning, "first stages whose input unit is not the unit of the calibration", first.record);
}

void ChainCheck::tell_whole() {
  tell_units(stages_.front());
  Signal before;
  for (const Stage& stage : stages_) {
    if (stage.is_behind_gap) {
      tell(Rank::warning, "gaps in the stage numbers (stageid) across which the stages chain: closed", stage.record);
    }
    if (!stage.facts.is_delay_known) {
      tell(Rank::note, "filters whose delay is not known: written as 0", stage.record);
    }
    if (table_.has_forbidden_units(stage_of(stage.record))) {
      tell(Rank::warning, "units with characters that XML does not allow, left out", stage.record);
    }
    tell_rates(stage, before);
    before = stage.out;
  }
  tell_last_rate();
}

bool ChainCheck::can_be_written(std::size_t begin, std::size_t end) {
  if (stage_of(begin) == kAbsent) return true;
  if (!find_stages(begin, end)) return false;
  tell_whole();
  return true;
}

void move_record(RecordRows* rows, std::size_t from, std::size_t to) {
  if (from == to) return;
  for (std::vector<std::uint32_t>& column : rows->rows) column[to] = column[from];
}

}  // namespace

void drop_broken_chains(const ResponseTables& tables, ResponseFiles* files, RecordRows* rows, Findings* findings) {
  for (const std::uint32_t row : rows->rows[kStage]) {
    if (row != kAbsent) files->read(row);
  }
  ChainCheck check(tables, *files, *rows, findings);
  std::size_t kept = 0;
  for (std::size_t begin = 0; begin < rows->size();) {
    std::size_t end = begin + 1;
    while (end < rows->size() && are_of_one_chain(*rows, begin, end)) ++end;
    if (check.can_be_written(begin, end)) {
      for (std::size_t i = begin; i < end; ++i) move_record(rows, i, kept++);
    } else {
      move_record(rows, begin, kept);
      rows->rows[kStage][kept++] = kAbsent;
    }
    begin = end;
  }
  for (std::vector<std::uint32_t>& column : rows->rows) column.resize(kept);
}

}  // namespace triglub
