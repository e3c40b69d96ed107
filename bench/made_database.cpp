#include "made_database.h"

#include <cstdlib>
#include <map>
#include <stdexcept>
#include <system_error>
#include <tuple>

#include "db2stationxml.h"

namespace triglub_bench {

namespace {

constexpr const char* kDataFolder = TRIGLUB_SOURCE_DIR "/data";
constexpr unsigned int kChannelLevel = 0x20;

std::filesystem::path temporary_folder() {
  std::string folder = (std::filesystem::temp_directory_path() / "triglub_bench_XXXXXX").string();
  if (mkdtemp(folder.data()) == nullptr) throw std::runtime_error("cannot make a temporary folder");
  return folder;
}

}  // namespace

const MadeDatabase& MadeDatabase::of(const DatabaseShape& shape) {
  using Key = std::tuple<long, long, int, unsigned long>;
  static std::map<Key, MadeDatabase> made;
  return made.try_emplace({shape.channel_epochs, shape.networks, shape.stages, shape.seed}, shape).first->second;
}

MadeDatabase::MadeDatabase(const DatabaseShape& shape)
    : folder_(temporary_folder()), prefix_((folder_ / "made").string()) {
  make_database(prefix_, shape);
  if (dbopen(prefix_.c_str(), "r", &db_) != 0) throw std::runtime_error("cannot open " + prefix_);
}

// The database stays open: it may outlive the library's own state at the end of the program.
MadeDatabase::~MadeDatabase() {
  std::error_code ignored;
  std::filesystem::remove_all(folder_, ignored);
}

Dbptr MadeDatabase::table(const char* name) const {
  const Dbptr table = dblookup(db_, nullptr, name, nullptr, nullptr);
  if (records(table) == 0) throw std::runtime_error(std::string(name) + " is empty");
  return table;
}

Dbptr MadeDatabase::document_view() const {
  if (view_.table != dbINVALID) return view_;
  rbtree* everything = newarr(nullptr);
  const Dbptr view = prepare_conversion(db_, parameters(), everything, kChannelLevel);
  freearr(everything, nullptr);
  view_ = dbsort(view, pfget_tbl(parameters(), "record_order"), 0, nullptr);
  triglub::release_view(view);
  return view_;
}

Pf* parameters() {
  static Pf* const pf = [] {
    // The document's root asks for a second parameter file by its name alone.
    setenv("TRIGLUB_PFPATH", kDataFolder, 1);
    Pf* read = nullptr;
    if (pfread("stationxml-edition1", &read) != 0) throw std::runtime_error("stationxml-edition1.pf cannot be read");
    return read;
  }();
  return pf;
}

long records(Dbptr view) {
  long count = 0;
  if (dbquery(view, dbRECORD_COUNT, &count) != 0) throw std::runtime_error("no table or view");
  return count;
}

Tbl* list_of(std::initializer_list<const char*> texts) {
  Tbl* list = newtbl(static_cast<int>(texts.size()));
  for (const char* text : texts) pushtbl(list, text);
  return list;
}

}  // namespace triglub_bench
