// The cache of parsed response files: every file that the stage rows name is read once, when the cache is made.
#include <cstdio>
#include <cstdlib>
#include <utility>

#include "dbhelper.h"
#include "dbhelper/db_value.h"
#include "platform/elog.h"
#include "resp_helper.h"

const std::string EMPTYFILENAME = "-/-";

namespace {

// An assertion that holds in release builds too: past it, a wrong program would give wrong documents.
void require(bool holds, const char* condition) {
  if (holds) return;
  std::fprintf(stderr, "triglub: resp_helper: Assertion `%s' failed.\n", condition);
  std::abort();
}

// One record for each response file of the stage table.
Dbptr sort_by_stages(Dbptr table) {
  Tbl* keys = newtbl(2);
  pushtbl(keys, "stage.dir");
  pushtbl(keys, "stage.dfile");
  const Dbptr view = dbsort(table, keys, dbSORT_UNIQUE, "unique_responsefiles");
  freetbl(keys, nullptr);
  return view;
}

}  // namespace

std::string simplefile(std::string dir, std::string dfile) { return std::move(dir) + "/" + dfile; }

// By way of dbget, which never writes more than its buffer holds, whatever the schema says of the field's width.
std::string dbget_stringv(Dbptr db, std::string field, std::string fallback) {
  const Dbptr value = dblookup(db, nullptr, nullptr, field.c_str(), nullptr);
  triglub::ValueText text{};
  if (dbget(value, text.data()) != 0) return fallback;
  return text.data();
}

std::string triglub::StageFile::name() const { return simplefile(std::string(dir), std::string(dfile)); }

ResponseCache::ResponseCache(Dbptr db, std::string table) { read_files_of(db, table); }

ResponseCache::ResponseCache(Dbptr db, std::string table, triglub::ResponseReach reach) : reach_(reach) {
  read_files_of(db, table);
}

void ResponseCache::read_files_of(Dbptr db, const std::string& table) {
  require(!table.empty(), "table != \"\"");
  db = dblookup(db, nullptr, table.c_str(), nullptr, nullptr);
  const char* directory = nullptr;
  if (dbquery(db, dbTABLE_DIRNAME, &directory) >= 0 && directory != nullptr) base_directory_ = directory;

  Dbptr files = sort_by_stages(db);
  const long count = db_nrecs(files);
  for (files.record = 0; files.record < count; ++files.record) {
    const std::string dir = dbget_stringv(files, "stage.dir", "-");
    const std::string dfile = dbget_stringv(files, "stage.dfile", "-");
    const triglub::StageFile file{dir, dfile};
    if (file.is_looked_for()) add(file.name());
  }
}

ResponseCache::~ResponseCache() {
  for (const auto& [name, response] : responses_) free_response(response);
}

std::string ResponseCache::fullfile(std::string name) const { return base_directory_ + "/" + name; }

bool ResponseCache::exists(std::string dir, std::string dfile) const {
  return exists(simplefile(std::move(dir), std::move(dfile)));
}

bool ResponseCache::exists(std::string name) const { return responses_.contains(name); }

Response* ResponseCache::get(std::string dir, std::string dfile) const {
  return get(simplefile(std::move(dir), std::move(dfile)));
}

Response* ResponseCache::get(std::string name) const {
  const auto found = responses_.find(name);
  return found == responses_.end() ? nullptr : found->second;
}

const triglub::ResponseReading* ResponseCache::failure(const std::string& name) const {
  const auto found = failures_.find(name);
  return found == failures_.end() ? nullptr : &found->second;
}

bool ResponseCache::add(std::string name) {
  if (name == EMPTYFILENAME || exists(name)) return false;
  return reach_ ? add_within(std::move(name), *reach_) : add_by_get_response(std::move(name));
}

bool ResponseCache::add_by_get_response(std::string name) {
  Response* response = nullptr;
  if (get_response(fullfile(name).c_str(), &response) != 0) return false;
  require(response != nullptr, "response != __null");
  responses_.emplace(std::move(name), response);
  return true;
}

bool ResponseCache::add_within(std::string name, triglub::ResponseReach reach) {
  const std::string folder = base_directory_.empty() ? "." : base_directory_;
  const bool is_anywhere = reach == triglub::ResponseReach::anywhere;
  triglub::ResponseReading reading = triglub::read_response_within(fullfile(name), is_anywhere ? "" : folder);
  if (reading.status != triglub::ResponseStatus::read) {
    elog_debug(0, "%s", reading.fault.c_str());
    failures_.insert_or_assign(std::move(name), std::move(reading));
    return false;
  }
  failures_.erase(name);
  responses_.emplace(std::move(name), reading.response.release());
  return true;
}
