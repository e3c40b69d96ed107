// The distinct texts of a field: each record is told by its text's code, so that a text is looked at once.
#include <algorithm>

#include "database/database.h"

namespace triglub {

namespace {

// The codes that the runs hold, in no order, some perhaps more than once: neighbouring records mostly agree, so only a
// change is noted, and the notes are thinned out before they grow.
class CodeSet {
 public:
  void add(std::uint32_t code) {
    if (!codes_.empty() && codes_.back() == code) return;
    if (codes_.size() == limit_) thin_out();
    codes_.push_back(code);
  }

  const std::vector<std::uint32_t>& distinct() {
    thin_out();
    return codes_;
  }

 private:
  void thin_out() {
    std::sort(codes_.begin(), codes_.end());
    codes_.erase(std::unique(codes_.begin(), codes_.end()), codes_.end());
    limit_ = std::max(limit_, 2 * codes_.size());
  }

  std::vector<std::uint32_t> codes_;
  std::size_t limit_ = 1024;
};

}  // namespace

std::vector<std::string> distinct_texts(Dbptr db, const std::vector<RecordRun>& runs) {
  const View* view = view_of(db);
  std::vector<std::string> texts;
  if (view == nullptr || db.field < 0 || static_cast<std::size_t>(db.field) >= view->fields().size()) return texts;
  const RecordCodes codes(*view, view->fields()[static_cast<std::size_t>(db.field)]);
  CodeSet set;
  for (const auto& [begin, past] : runs) {
    const auto end = static_cast<std::uint32_t>(std::min<unsigned long>(past, view->record_count()));
    for (auto record = static_cast<std::uint32_t>(std::min<unsigned long>(begin, end)); record < end; ++record) {
      set.add(codes[record]);
    }
  }
  for (const std::uint32_t code : set.distinct()) texts.emplace_back(codes.text(code));
  std::sort(texts.begin(), texts.end());
  return texts;
}

}  // namespace triglub
