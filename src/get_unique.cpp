// The distinct texts of a field over the selected records.
#include <algorithm>
#include <functional>

#include "dbhelper.h"
#include "platform/text.h"
#include "smartindex.h"

namespace {

// Values that differ only in the blanks around them are one.
void trim_all(std::vector<std::string>* texts) {
  for (std::string& text : *texts) {
    const std::string_view kept = triglub::trimmed(text);
    if (kept.size() != text.size()) text = std::string(kept);
  }
  if (std::is_sorted(texts->begin(), texts->end(), std::less_equal<>())) return;
  std::sort(texts->begin(), texts->end());
  texts->erase(std::unique(texts->begin(), texts->end()), texts->end());
}

}  // namespace

std::vector<std::string> get_unique(Dbptr db, std::string field, SmartIndex index) {
  db = db_setfield(db, std::move(field));
  // Only for their failures: a field without a type, or a view whose records cannot be counted, has no values to list.
  db_getfieldtype(db);
  db_nrecs(db);
  std::vector<std::string> texts = triglub::distinct_texts(db, index.runs());
  trim_all(&texts);
  return texts;
}
