// A database of stage rows with their calibrations, and the view that stage rows are written from.
#ifndef TRIGLUB_TESTS_RESP_HELPER_STAGE_DATABASE_H
#define TRIGLUB_TESTS_RESP_HELPER_STAGE_DATABASE_H

#include <map>
#include <stdexcept>
#include <string>

#include "platform/database.h"
#include "support/flat_database.h"

namespace triglub_test {

inline const char* const kFirText = "theoretical 1 x fir\n100\n3\n0.25\n0.5\n0.25\n0\n";
inline const char* const kPazText = "theoretical 1 x paz\n2\n0\n0\n";

class StageDatabase {
 public:
  StageDatabase() = default;
  StageDatabase(const StageDatabase&) = delete;
  StageDatabase& operator=(const StageDatabase&) = delete;
  ~StageDatabase() {
    if (is_open_) dbclose(db_);
  }

  // A stage row of station AAK, channel BHZ, from 1970 on unless the values say otherwise.
  void add_stage(std::map<std::string, std::string> values) {
    values.insert({{"sta", "AAK"}, {"chan", "BHZ"}, {"time", "0.00000"}});
    files.add_row("stage", values);
  }
  void add_calibration(const std::string& fc) {
    files.add_row("calibration", {{"sta", "AAK"}, {"chan", "BHZ"}, {"time", "0.00000"}, {"fc", fc}});
  }

  Dbptr database() {
    if (!is_open_ && dbopen(files.write().c_str(), "r", &db_) != 0) throw std::runtime_error("cannot open");
    is_open_ = true;
    return db_;
  }
  // A stage row, with its calibration where there is one.
  Dbptr stage(std::int64_t record) {
    if (view_.table == dbINVALID) {
      const Dbptr stages = dblookup(database(), nullptr, "stage", nullptr, nullptr);
      const Dbptr calibrations = dblookup(database(), nullptr, "calibration", nullptr, nullptr);
      view_ = dbjoin(stages, calibrations, nullptr, nullptr, 1, nullptr, nullptr);
    }
    view_.record = record;
    return view_;
  }

  FlatDatabase files;

 private:
  Dbptr db_;
  Dbptr view_;
  bool is_open_ = false;
};

}  // namespace triglub_test

#endif
