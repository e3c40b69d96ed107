// A table is looked for at the prefix first, then at the places of the descriptor in order.
#include "engine/source/flat/flat_source.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>

#include "base/file_text.h"
#include "engine/source/flat/descriptor.h"
#include "engine/source/flat/dialect.h"
#include "engine/source/flat/flat_file.h"
#include "engine/table/table_builder.h"
#include "platform/elog.h"
#include "platform/text.h"

namespace triglub {

namespace {

enum class PathKind { none, file, folder };

// A path that cannot be examined counts as a file, and so does a dangling link: opening it then fails with a complaint,
// and no table that may have rows is taken for empty.
PathKind kind_of(const std::string& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) == 0) return S_ISDIR(status.st_mode) ? PathKind::folder : PathKind::file;
  if (errno != ENOENT && errno != ENOTDIR) return PathKind::file;
  return lstat(path.c_str(), &status) == 0 ? PathKind::file : PathKind::none;
}

std::string folder_of(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

std::string name_of(const std::string& prefix) { return prefix.substr(prefix.rfind('/') + 1); }

void complain_of_nothing(const std::string& prefix, const std::string& name, PathKind kind) {
  if (prefix.empty()) {
    elog_complain(0, "dbopen: the name of the database is empty, expected DIR/NAME for the tables DIR/NAME.site ...");
  } else if (name.empty() || kind == PathKind::folder) {
    elog_complain(0, "%s: is a folder; a database is named by the common beginning of its files, %s%sNAME",
                  prefix.c_str(), prefix.c_str(), name.empty() ? "" : "/");
  } else {
    elog_complain(0, "%s: there is no such database (neither a descriptor %s nor any table file such as %s.site)",
                  prefix.c_str(), prefix.c_str(), prefix.c_str());
  }
}

bool fail_descriptor(const std::string& path, const std::string& fault) {
  elog_complain(0, "%s: the descriptor %s", path.c_str(), fault.c_str());
  return false;
}

// "{css}" and the like in a descriptor's path stand for the database's name.
std::string with_name(std::string_view entry, const std::string& name) {
  std::string out;
  while (!entry.empty()) {
    const std::size_t open = entry.find('{');
    const std::size_t close = open == std::string_view::npos ? std::string_view::npos : entry.find('}', open);
    if (close == std::string_view::npos) break;
    out += entry.substr(0, open);
    out += name;
    entry.remove_prefix(close + 1);
  }
  out += entry;
  return out;
}

}  // namespace

FlatSource::FlatSource(const std::string& prefix)
    : folder_(folder_of(prefix)), name_(name_of(prefix)), prefixes_({prefix}) {}

std::shared_ptr<const FlatSource> FlatSource::open(const std::string& prefix) {
  const std::shared_ptr<FlatSource> source(new FlatSource(prefix));
  const PathKind kind = kind_of(prefix);
  if (kind == PathKind::file && !source->read_descriptor(prefix)) return nullptr;
  if (source->schema_ == nullptr) source->schema_ = schema_by_rows(source->table_files());
  if (source->schema_ == nullptr) return nullptr;
  if (kind == PathKind::file || (!source->name_.empty() && source->has_any_table())) return source;
  complain_of_nothing(prefix, source->name_, kind);
  return nullptr;
}

bool FlatSource::read_descriptor(const std::string& path) {
  std::string text;
  const FileReading reading = read_file(path, kMaxDescriptorBytes, &text);
  if (reading.fault != FileFault::none) {
    return fail_descriptor(path, "cannot be read: " + fault_text(reading, kMaxDescriptorBytes));
  }
  const auto descriptor = parse_descriptor(text);
  if (!descriptor) {
    return fail_descriptor(path, "names more than " + std::to_string(kMaxDescriptorPlaces) + " places in its dbpath");
  }
  for (const std::string& place : descriptor->places) add_place(with_name(place, name_));
  if (descriptor->schema.empty()) return true;
  schema_ = Schema::named(descriptor->schema, folder_);
  if (schema_ == nullptr) elog_complain(0, "%s: the descriptor names a schema that cannot be used", path.c_str());
  return schema_ != nullptr;
}

// A folder holds the tables of the database of this name; anything else is the beginning of their paths.
void FlatSource::add_place(std::string place) {
  if (place.empty()) return;
  if (!place.starts_with("/")) place.insert(0, "/").insert(0, folder_);
  if (kind_of(place) == PathKind::folder) place += (place.ends_with("/") ? "" : "/") + name_;
  prefixes_.push_back(std::move(place));
}

bool FlatSource::has_any_table() const {
  const auto& tables = schema_->tables();
  return std::any_of(tables.begin(), tables.end(), [this](const TableSchema& t) { return !table_place(t).empty(); });
}

// Those of the names that the shipped schemas have; both have the same.
std::vector<TableFile> FlatSource::table_files() const {
  std::vector<TableFile> files;
  for (const TableSchema& table : Schema::builtin()->tables()) {
    std::string path = path_of(table.name);
    if (!path.empty()) files.push_back({table.name, std::move(path)});
  }
  return files;
}

std::string FlatSource::table_place(const TableSchema& table) const { return path_of(table.name); }

std::vector<SourceFile> FlatSource::files() const {
  std::vector<SourceFile> files = {{prefixes_.front(), "the descriptor"}};
  if (!schema_->path().empty()) files.push_back({schema_->path(), "the schema"});
  for (const std::string& prefix : prefixes_) {
    for (const TableSchema& table : schema_->tables()) files.push_back({prefix + "." + table.name, "a table"});
  }
  return files;
}

std::string FlatSource::path_of(const std::string& table) const {
  for (const std::string& prefix : prefixes_) {
    std::string path = prefix;
    path.append(".").append(table);
    if (kind_of(path) != PathKind::none) return path;
  }
  return "";
}

std::string FlatSource::response_folder(const TableSchema& table) const {
  const std::string path = table_place(table);
  return path.empty() ? folder_ : folder_of(path);
}

std::unique_ptr<const Table> FlatSource::load(const TableSchema& table, const RowConditions& conditions) const {
  const std::string path = table_place(table);
  if (path.empty()) return TableBuilder(table).build(folder_, "", shortest_texts(), conditions);
  return load_flat_file(table, path, folder_of(path), conditions);
}

}  // namespace triglub
