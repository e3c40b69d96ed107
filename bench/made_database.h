// The databases that a benchmark program measures with: each is made once, in a temporary folder that goes when the
// program ends, and kept open.
//
//     void BM_Join(benchmark::State& state) {
//       const MadeDatabase& made = MadeDatabase::of({.channel_epochs = state.range(0), .networks = 20});
//       const Dbptr sitechan = made.table("sitechan");
//       ...
#ifndef TRIGLUB_BENCH_MADE_DATABASE_H
#define TRIGLUB_BENCH_MADE_DATABASE_H

#include <filesystem>
#include <initializer_list>
#include <string>

#include "database_maker.h"
#include "platform/containers.h"
#include "platform/database.h"
#include "platform/parfile.h"

namespace triglub_bench {

class MadeDatabase {
 public:
  // Makes the database at the first call with its shape. Throws std::runtime_error when it cannot be made or opened.
  static const MadeDatabase& of(const DatabaseShape& shape);

  explicit MadeDatabase(const DatabaseShape& shape);
  MadeDatabase(const MadeDatabase&) = delete;
  MadeDatabase& operator=(const MadeDatabase&) = delete;
  ~MadeDatabase();

  const std::string& prefix() const { return prefix_; }
  Dbptr db() const { return db_; }
  // The table, loaded.
  Dbptr table(const char* name) const;
  // Every channel epoch with its stages in the order in which a document is written. Made at the first call.
  Dbptr document_view() const;

 private:
  std::filesystem::path folder_;
  std::string prefix_;
  Dbptr db_;
  mutable Dbptr view_;
};

// The shipped parameter file, read once.
Pf* parameters();

// The number of records; throws std::runtime_error for a handle of none.
long records(Dbptr view);

// A list of texts; the caller releases it with freetbl(list, nullptr).
Tbl* list_of(std::initializer_list<const char*> texts);

}  // namespace triglub_bench

#endif
