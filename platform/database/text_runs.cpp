// Runs of equal texts. Records that stand on the same row, as the stages of a channel do, need no look at the text.
#include <algorithm>

#include "database/database.h"
#include "platform/text.h"

namespace triglub {

namespace {

// What a program that asks dbget for the text gets to see of it.
std::string_view as_dbget_gives_it(std::string_view text) {
  const std::string_view kept = utf8_prefix(text, LONGEST_TEXT);
  return trimmed(kept.substr(0, kept.find('\0')));
}

void append_run(const TextRun& run, std::vector<TextRun>* runs) {
  if (!runs->empty() && runs->back().end == run.begin && runs->back().text == run.text) {
    runs->back().end = run.end;
  } else {
    runs->push_back(run);
  }
}

}  // namespace

void text_runs(Dbptr db, std::uint64_t begin, std::uint64_t end, std::vector<TextRun>* runs) {
  runs->clear();
  const View* view = view_of(db);
  if (view == nullptr || !view->has_field(db.field)) return;
  const ViewField& field = view->fields()[static_cast<std::size_t>(db.field)];
  const auto last = static_cast<std::uint32_t>(std::min<std::uint64_t>(end, view->record_count()));
  for (auto record = static_cast<std::uint32_t>(std::min<std::uint64_t>(begin, last)); record < last;) {
    const std::uint32_t row = view->row(field.table, record);
    std::uint32_t behind = record + 1;
    while (behind < last && view->row(field.table, behind) == row) ++behind;
    append_run({as_dbget_gives_it(view->text(field, record)), record, behind}, runs);
    record = behind;
  }
}

}  // namespace triglub
