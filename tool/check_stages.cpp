// Each response file is judged once, however many stages name it.
#include "tool/check_stages.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <span>

#include "dbhelper.h"
#include "platform/columns.h"
#include "platform/response.h"
#include "platform/sources.h"
#include "platform/text.h"
#include "resp_helper.h"

namespace triglub::tool {

namespace {

// What is not stated.
constexpr double kNoRate = -1;
constexpr double kNoFactor = -1;

constexpr std::size_t kLongestType = 40;  // bytes that are told

// What a response file gives for a stage: nothing to say, or why there is no filter in the document.
std::string reason_of(const Response& response) {
  if (response.group_count != 1) {
    return "response file has " + std::to_string(response.group_count) + " filter groups, expected 1";
  }
  const ResponseGroup& group = response.groups[0];
  if (group.type == RESPONSE_PAZ || group.type == RESPONSE_FIR) return "";
  // A word of a file may be as long as the file.
  const std::string type(utf8_prefix(group.type_name, kLongestType));
  return "response of type " + type + ", for which no filter is written";
}

class StageCheck {
 public:
  StageCheck(Dbptr everything, const ResponseCache& responses, Gaps* gaps)
      : view_(everything),
        stage_(dblookup(everything, nullptr, "stage", nullptr, nullptr)),
        responses_(responses),
        gaps_(*gaps),
        columns_(stage_),
        rates_(columns_.reals("samprate")),
        factors_(columns_.integers("decifac")) {}

  void run() {
    rows_ = base_rows(view_, "stage");
    check_units("stage.iunits");
    check_units("stage.ounits");
    check_files();
  }

 private:
  std::vector<TextRun> runs_of(const char* field) const {
    std::vector<TextRun> runs;
    text_runs(db_setfield(view_, field), 0, rows_.size(), &runs);
    return runs;
  }

  // The row of the base table behind a record.
  Dbptr stage_row(std::uint32_t record) const {
    Dbptr row = stage_;
    row.record = rows_[record];
    return row;
  }

  // The library writes units as they are.
  void check_units(const char* field) {
    const auto cannot_stand = [](std::string_view unit) { return unit.find_first_of("&<") != std::string_view::npos; };
    for (const std::uint32_t record : records_with_text(db_setfield(view_, field), cannot_stand)) {
      view_.record = record;
      gaps_.fault(row_place(stage_row(record)) + ": field " + field + ": the unit '" + db_fieldlookup(view_, field) +
                  "' cannot stand in XML, expected no & and no <");
    }
  }

  // The records between two changes of folder or name have one file.
  void check_files() {
    const std::vector<TextRun> dirs = runs_of("stage.dir");
    auto dir = dirs.begin();
    for (const TextRun& dfile : runs_of("stage.dfile")) {
      for (std::uint32_t record = dfile.begin; record < dfile.end;) {
        while (dir->end <= record) ++dir;
        const std::uint32_t end = std::min(dir->end, dfile.end);
        const StageFile file{dir->text, dfile.text};
        if (file.is_named()) check_file(file, record, end);
        record = end;
      }
    }
  }

  void check_file(const StageFile& file, std::uint32_t begin, std::uint32_t end) {
    // The texts of a column are kept once each, so that the place of one tells it from the others.
    const auto [known, is_new] = reasons_.try_emplace({file.dir.data(), file.dfile.data()});
    view_.record = begin;
    if (is_new) known->second = reason_for(file);
    if (known->second.empty()) return check_rates(file, begin, end);
    for (view_.record = begin; view_.record < end; ++view_.record) {
      gaps_.left_out("stages without their filter: " + known->second, name(file.name()));
    }
  }

  std::string reason_for(const StageFile& named) {
    if (!named.is_looked_for()) return "the row names no folder, or a name that begins with '-'";
    const std::string file = named.name();
    const Response* const response = responses_.get(file);
    if (response == nullptr) return reason_of_failure(file);
    std::string reason = reason_of(*response);
    if (reason.empty()) check_rate(*response, file);
    return reason;
  }

  // Of all that can be wrong with a file, that it is not there is the one that says nothing of this machine.
  std::string reason_of_failure(const std::string& file) {
    const ResponseReading* const failure = responses_.failure(file);
    if (failure == nullptr || failure->status == ResponseStatus::missing) return "response file missing";
    const bool is_faulty = failure->status == ResponseStatus::faulty;
    gaps_.fault(is_faulty ? failure->fault
                          : row_place(stage_row(static_cast<std::uint32_t>(view_.record))) + " (" + name(file) +
                                "): " + failure->fault);
    return is_faulty ? "response file faulty" : "response file not read";
  }

  // Null for other filters.
  static Fir* fir_of(const Response& response) {
    const ResponseGroup& group = response.groups[0];
    return group.type == RESPONSE_FIR ? static_cast<Fir*>(group.filter) : nullptr;
  }

  // The delay is written in seconds: a filter without a rate would make it infinite.
  void check_rate(const Response& response, const std::string& file) {
    Fir* const fir = fir_of(response);
    if (fir == nullptr) return;
    if (!(fir->samprate > 0.0)) {
      gaps_.fault(responses_.fullfile(file) + ": the filter's input sample rate is not positive");
    } else if (!std::isfinite(get_fir_delay(fir))) {
      gaps_.fault(responses_.fullfile(file) + ": the filter's delay is no number of seconds");
    }
  }

  // The input rate as the library works it out of a row and its file.
  void check_rates(const StageFile& file, std::uint32_t begin, std::uint32_t end) {
    const Fir* const fir = fir_of(*responses_.get(file.name()));
    for (std::uint32_t record = begin; fir != nullptr && record < end; ++record) {
      const double rate = rates_[rows_[record]];
      const auto factor = static_cast<double>(factors_[rows_[record]]);
      const double scaled = factor == kNoFactor ? rate : rate * factor;
      if (std::isfinite(scaled == kNoRate ? fir->samprate / factor : scaled)) continue;
      view_.record = record;
      gaps_.fault(row_place(stage_row(record)) + " (" + name(file.name()) +
                  "): no input rate can be worked out of samprate " + db_fieldlookup(view_, "stage.samprate") +
                  " and decifac " + db_fieldlookup(view_, "stage.decifac"));
    }
  }

  std::string name(const std::string& file) const {
    return db_fieldlookup(view_, "stage.sta") + " " + db_fieldlookup(view_, "stage.chan") + " stage " +
           db_fieldlookup(view_, "stage.stageid") + " " + file;
  }

  Dbptr view_;
  Dbptr stage_;
  const ResponseCache& responses_;
  Gaps& gaps_;
  TableColumns columns_;
  std::span<const double> rates_;
  std::span<const std::int64_t> factors_;
  std::vector<std::uint32_t> rows_;                                     // of stage, by record
  std::map<std::pair<const char*, const char*>, std::string> reasons_;  // by folder and name
};

}  // namespace

void check_stages(Dbptr everything, const ResponseCache& responses, Gaps* gaps) {
  StageCheck(everything, responses, gaps).run();
}

}  // namespace triglub::tool
