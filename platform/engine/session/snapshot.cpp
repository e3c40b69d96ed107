// Each table has a flag of its own, so that threads can load different tables at the same time.
#include "engine/session/snapshot.h"

#include <utility>

namespace triglub {

Snapshot::Snapshot(std::shared_ptr<const Source> source)
    : source_(std::move(source)), entries_(std::make_unique<Entry[]>(schema().tables().size())) {}

std::shared_ptr<const View> Snapshot::table(std::size_t index) const {
  Entry& entry = entries_[index];
  std::call_once(entry.once, [&] { load(index, &entry); });
  return entry.view;
}

void Snapshot::load(std::size_t index, Entry* entry) const {
  const TableSchema& schema = this->schema().tables()[index];
  entry->table = source_->load(schema, {});
  if (entry->table == nullptr) return;
  entry->view = std::make_shared<const View>(std::vector<ViewTable>{{entry->table.get(), nullptr}},
                                             entry->table->row_count(), "dbopen " + schema.name);
}

}  // namespace triglub
