// What is loaded of a source: its tables, and what they come to know of themselves.
//
// A snapshot is shared by any number of sessions and threads. It does not change: a table that was not asked for yet
// is loaded at the first request, and is the same for all from then on.
#ifndef TRIGLUB_ENGINE_SESSION_SNAPSHOT_H
#define TRIGLUB_ENGINE_SESSION_SNAPSHOT_H

#include <cstddef>
#include <memory>
#include <mutex>
#include <vector>

#include "engine/source/source.h"
#include "engine/view/view.h"

namespace triglub {

class Snapshot {
 public:
  explicit Snapshot(std::shared_ptr<const Source> source);

  const Source& source() const { return *source_; }
  const Schema& schema() const { return *source_->schema(); }

  // The table of that number in the schema, as a view of itself. Null when it refuses to load: the first
  // request has had the complaints, and they are not made again. The view must not outlive the snapshot.
  std::shared_ptr<const View> table(std::size_t index) const;

 private:
  struct Entry {
    std::once_flag once;
    std::unique_ptr<const Table> table;
    std::shared_ptr<const View> view;
  };

  void load(std::size_t index, Entry* entry) const;

  std::shared_ptr<const Source> source_;
  std::unique_ptr<Entry[]> entries_;  // by number in the schema
};

}  // namespace triglub

#endif
