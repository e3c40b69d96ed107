// Objects as the text of a parameter file.
#include "parfile/grammar.h"
#include "parfile/table.h"

namespace {

using namespace triglub::parfile;

// Appends the entries of a table, each line behind the margin. No deeper than kMaxDepth: nothing deeper can be made.
class Writer {
 public:
  std::string write(const Table& table) {
    write_entries(table);
    return std::move(text_);
  }

 private:
  void write_entries(const Table& table) {
    for (const auto& entry : table.in_order()) {
      text_.append(margin_, ' ').append(entry->first);
      std::visit([this](const auto& value) { write_value(value); }, entry->second.value);
    }
  }

  void write_value(const std::string& value) {
    if (!value.empty()) text_.append(" ").append(value);
    text_ += '\n';
  }

  void write_value(const std::unique_ptr<Lines>& list) {
    open(kListOpener);
    for (const std::string& line : list->lines()) text_.append(margin_, ' ').append(line).append("\n");
    close();
  }

  void write_value(const std::unique_ptr<Table>& table) {
    open(kTableOpener);
    write_entries(*table);
    close();
  }

  void open(std::string_view opener) {
    text_.append(" ").append(opener).append("\n");
    margin_ += kStep;
  }

  void close() {
    margin_ -= kStep;
    text_.append(margin_, ' ').append(kCloser).append("\n");
  }

  static constexpr std::size_t kStep = 4;
  std::string text_;
  std::size_t margin_ = 0;
};

}  // namespace

std::string pf2text(Pf* pf) { return pf == nullptr ? "" : Writer().write(pf->root); }
