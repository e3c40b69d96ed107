// The records of a handle's field by their texts.
#include "engine/operations/text_runs.h"

#include "engine/classic/handle.h"

namespace triglub {

void text_runs(Dbptr db, std::uint64_t begin, std::uint64_t end, std::vector<TextRun>* runs) {
  runs->clear();
  const View* view = view_of(db);
  const ViewField* field = view == nullptr ? nullptr : field_of(*view, db);
  if (field != nullptr) text_runs(*view, *field, begin, end, runs);
}

std::vector<std::uint32_t> records_with_text(Dbptr db, const TextCondition& wanted) {
  const View* view = view_of(db);
  const ViewField* field = view == nullptr ? nullptr : field_of(*view, db);
  return field == nullptr ? std::vector<std::uint32_t>() : records_with_text(*view, *field, wanted);
}

}  // namespace triglub
