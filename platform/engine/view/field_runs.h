// Where the runs of equal texts of a view's field lie, so that the first and last record of a value are found without
// walking the view.
#ifndef TRIGLUB_ENGINE_VIEW_FIELD_RUNS_H
#define TRIGLUB_ENGINE_VIEW_FIELD_RUNS_H

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "engine/table/column.h"

namespace triglub {

class View;
struct ViewField;

// The text code of a field at a record. Absent rows have that of the null text, as null values do.
class RecordCodes {
 public:
  RecordCodes(const View& view, const ViewField& field);
  std::uint32_t operator[](std::uint32_t record) const;
  std::string_view text(std::uint32_t code) const;
  std::optional<std::uint32_t> find(std::string_view text) const;  // the code of a text that is there
  std::uint32_t code_count() const;

 private:
  const View& view_;
  std::size_t table_;
  TextCodes codes_;
};

class FieldRuns {
 public:
  static constexpr std::int64_t kNone = -1;

  FieldRuns(const View& view, const ViewField& field);

  // The first record at or after `record` with that code; the last one at or before it. kNone when there is none.
  std::int64_t at_or_after(std::uint32_t code, std::int64_t record) const;
  std::int64_t at_or_before(std::uint32_t code, std::int64_t record) const;
  // All records with that code, in order.
  std::vector<std::uint32_t> records(std::uint32_t code) const;

 private:
  struct Run {
    std::uint32_t begin;
    std::uint32_t end;  // exclusive
  };
  std::vector<Run> runs_;             // ordered by code, then by begin
  std::vector<std::uint32_t> first_;  // by code: its first run; one entry more at the end
};

}  // namespace triglub

#endif
