#include "reference/edition2/library_run.h"

#include <cstdlib>
#include <exception>
#include <map>
#include <sstream>
#include <stdexcept>

#include "conversion.h"
#include "platform/containers.h"
#include "platform/database.h"
#include "platform/elog.h"
#include "platform/parfile.h"
#include "reference/edition2/writer.h"
#include "reference/response_text.h"
#include "support/flat_database.h"

namespace triglub_reference::edition2 {

namespace {

void ignore(ElogLevel /*level*/, const char* /*text*/, void* /*context*/) {}

std::string site_text(const Request& request) {
  std::string text;
  for (const auto& [key, value] : request.site) text.append(key + " " + value + "\n");
  return text;
}

void write_files(const Request& request, triglub_test::FlatDatabase& files) {
  for (const auto& [table, rows] : request.tables.rows) {
    for (const Row& row : rows) files.add_row(table, row);
  }
  for (const auto& [name, file] : request.tables.files) files.write_file(name, response_text(file));
  files.write_file("site.pf", site_text(request));
  files.write();
}

triglub::DetailLevel detail_of(Level level) {
  switch (level) {
    case Level::network:
      return triglub::DetailLevel::network;
    case Level::station:
      return triglub::DetailLevel::station;
    case Level::channel:
      return triglub::DetailLevel::channel;
    default:
      return triglub::DetailLevel::response;
  }
}

// What a conversion is called with; goes when the object does.
class Call {
 public:
  Call(const Request& request, const std::string& source) : flags_(triglub::flags_for(detail_of(request.level))) {
    if (dbopen(source.c_str(), "r", &db_) != 0) throw std::runtime_error("the database does not open");
    if (pfparse(tree_text(request.tree), "tree", &pf_) != 0) throw std::runtime_error("the tree is malformed");
    for (const auto& [field, pattern] : request.conditions) patterns_[field] = "/" + pattern + "/";
    for (auto& [field, pattern] : patterns_) setarr(subset_, field.c_str(), pattern.data());
  }
  Call(const Call&) = delete;
  Call& operator=(const Call&) = delete;
  ~Call() {
    freearr(subset_, nullptr);
    pffree(pf_);
    dbclose(db_);
  }

  void write(std::ostream& out) { triglub::Conversion().write(db_, pf_, subset_, out, flags_); }

 private:
  Dbptr db_;
  Pf* pf_ = nullptr;
  std::map<std::string, std::string> patterns_;
  rbtree* subset_ = newarr(nullptr);
  unsigned int flags_;
};

}  // namespace

Outcome library_conversion(const Request& request) {
  triglub_test::FlatDatabase files;
  write_files(request, files);
  setenv("TRIGLUB_PFPATH", files.folder().c_str(), 1);
  elog_set_sink(ignore, nullptr);
  Outcome outcome;
  std::ostringstream out;
  try {
    Call(request, files.prefix()).write(out);
  } catch (const std::exception& e) {
    outcome.failure = e.what();
  }
  elog_set_sink(nullptr, nullptr);
  outcome.document = out.str();
  return outcome;
}

std::string describe(const Request& request) {
  std::ostringstream text;
  text << "level " << static_cast<int>(request.level) << "\n";
  for (const auto& [field, pattern] : request.conditions) text << "condition " << field << " /" << pattern << "/\n";
  for (const auto& [table, rows] : request.tables.rows) {
    for (const Row& row : rows) {
      text << table;
      for (const auto& [field, value] : row) text << " " << field << "=" << value;
      text << "\n";
    }
  }
  for (const auto& [name, file] : request.tables.files) text << "--- " << name << "\n" << response_text(file);
  return text.str() + tree_text(request.tree);
}

}  // namespace triglub_reference::edition2
