// A table file is told by the name behind its last dot; what stands before it is the database's name.
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <set>
#include <system_error>

#include "engine/schema/schema.h"
#include "platform/sources.h"

namespace triglub {

namespace {

namespace fs = std::filesystem;

bool is_there(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 && !S_ISDIR(status.st_mode);
}

bool has_any_table(const Schema& schema, const std::string& name) {
  return std::any_of(schema.tables().begin(), schema.tables().end(),
                     [&](const TableSchema& table) { return is_there(name + "." + table.name); });
}

// The text without the name of a table behind its last dot; the text itself where there is none.
std::string without_table(const Schema& schema, const std::string& text) {
  const std::size_t dot = text.rfind('.');
  return dot == std::string::npos || schema.find(text.substr(dot + 1)) < 0 ? text : text.substr(0, dot);
}

std::vector<std::string> databases_in(const Schema& schema, const std::string& folder) {
  std::set<std::string> names;
  std::error_code error;  // a folder that cannot be read shows no database
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
    const std::string file = entry->path().string();
    const std::string name = without_table(schema, file);
    if (name != file && !name.ends_with("/") && is_there(file)) names.insert(name);
  }
  return {names.begin(), names.end()};
}

}  // namespace

std::vector<std::string> databases_meant_by(const std::string& text) {
  const std::shared_ptr<const Schema> schema = Schema::standard();
  std::error_code error;
  if (schema == nullptr) return {};
  if (fs::is_directory(text, error)) return databases_in(*schema, text);
  const std::string name = without_table(*schema, text.substr(0, text.find_last_not_of('.') + 1));
  if (name.empty() || !has_any_table(*schema, name)) return {};
  return {name};
}

}  // namespace triglub
