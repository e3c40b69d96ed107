// Runs of equal texts. Records that stand on the same row, as the stages of a channel do, and rows of the same code
// need no look at the text.
#include "engine/operations/text_runs.h"

#include <algorithm>

#include "base/threads.h"
#include "platform/text.h"

namespace triglub {

namespace {

// What a program that asks dbget for the text gets to see of it.
std::string_view as_dbget_gives_it(std::string_view text) {
  const std::string_view kept = utf8_prefix(text, MAX_VALUE_BYTES);
  return trimmed(kept.substr(0, kept.find('\0')));
}

void append_run(const TextRun& run, std::vector<TextRun>* runs) {
  if (!runs->empty() && runs->back().end == run.begin && runs->back().text == run.text) {
    runs->back().end = run.end;
  } else {
    runs->push_back(run);
  }
}

// Whether a field has the same text in two rows of a table, as far as that is known without looking at the texts.
class SameText {
 public:
  SameText(const View& view, const ViewField& field) {
    if (view.schema_of(field).storage() == Storage::text) codes_ = &view.table_of(field).column(field.field).codes;
  }

  bool operator()(std::uint32_t a, std::uint32_t b) const {
    if (a == b) return true;
    return codes_ != nullptr && a != kNoRow && b != kNoRow && (*codes_)[a] == (*codes_)[b];
  }

 private:
  const std::vector<std::uint32_t>* codes_ = nullptr;
};

// Hands on the records from `begin` to before `end` in pieces that are known to have one text: visit(text, begin, end).
template <typename Visit>
void visit_texts(const View& view, const ViewField& field, std::uint32_t begin, std::uint32_t end, Visit visit) {
  const SameText is_same(view, field);
  for (std::uint32_t record = begin; record < end;) {
    const std::uint32_t row = view.row(field.table, record);
    std::uint32_t behind = record + 1;
    while (behind < end && is_same(row, view.row(field.table, behind))) ++behind;
    visit(as_dbget_gives_it(view.text(field, record)), record, behind);
    record = behind;
  }
}

}  // namespace

void text_runs(const View& view, const ViewField& field, std::uint64_t begin, std::uint64_t end,
               std::vector<TextRun>* runs) {
  runs->clear();
  const auto last = static_cast<std::uint32_t>(std::min<std::uint64_t>(end, view.record_count()));
  const Chunks chunks(static_cast<std::uint32_t>(std::min<std::uint64_t>(begin, last)), last);
  // Callers ask for a few records again and again: the first chunk, then the only one, reuses the memory of *runs.
  std::vector<std::vector<TextRun>> found(chunks.size() - 1);
  const auto runs_of_chunk = [&](std::size_t i) { return i == 0 ? runs : &found[i - 1]; };
  run_side_by_side(chunks.size(), [&](std::size_t i) {
    visit_texts(view, field, chunks.begin(i), chunks.end(i),
                [runs = runs_of_chunk(i)](std::string_view text, std::uint32_t first, std::uint32_t behind) {
                  append_run({text, first, behind}, runs);
                });
  });
  for (const std::vector<TextRun>& more : found) {
    for (const TextRun& run : more) append_run(run, runs);
  }
}

std::vector<std::uint32_t> records_with_text(const View& view, const ViewField& field, const TextCondition& wanted) {
  const Chunks chunks(0, view.record_count());
  std::vector<std::vector<std::uint32_t>> found(chunks.size());
  run_side_by_side(chunks.size(), [&](std::size_t i) {
    visit_texts(view, field, chunks.begin(i), chunks.end(i),
                [&](std::string_view text, std::uint32_t first, std::uint32_t behind) {
                  if (!wanted(text)) return;
                  for (std::uint32_t record = first; record < behind; ++record) found[i].push_back(record);
                });
  });
  std::vector<std::uint32_t> records = std::move(found.front());
  for (std::size_t i = 1; i < found.size(); ++i) records.insert(records.end(), found[i].begin(), found[i].end());
  return records;
}

}  // namespace triglub
