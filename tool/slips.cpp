// Databases are looked for where the text leads.
#include "tool/slips.h"

#include <algorithm>

#include "base/characters.h"
#include "platform/elog.h"
#include "platform/sources.h"

namespace triglub::tool {

namespace {

constexpr const char* kConvert = "triglub convert";

std::string joined(const std::vector<std::string>& words, const char* separator) {
  std::string text;
  for (const std::string& word : words) text += (text.empty() ? "" : separator) + word;
  return text;
}

// As a shell takes it for one word.
std::string shell_word(const std::string& word) {
  const auto is_plain = [](char c) {
    return is_word_character(c) || std::string_view("./-=:,+@").find(c) != std::string_view::npos;
  };
  if (!word.empty() && std::all_of(word.begin(), word.end(), is_plain)) return word;
  std::string quoted = "'";
  for (const char c : word) quoted += c == '\'' ? "'\\''" : std::string(1, c);
  return quoted + "'";
}

std::string line_for(const std::string& database) { return std::string(kConvert) + " " + shell_word(database); }

bool is_database(const std::string& word) { return !databases_meant_by(word).empty(); }

}  // namespace

void suggest_database(const std::string& source) {
  const std::vector<std::string> names = databases_meant_by(source);
  if (names.empty() || names.front() == source) return;
  if (names.size() > 1) elog_notify(0, "%s: holds the databases %s", source.c_str(), joined(names, ", ").c_str());
  elog_notify(0, "try '%s'", line_for(names.front()).c_str());
}

bool has_tables(Dbptr db, const std::string& source) {
  const std::vector<std::string> tables = table_names(db);
  const auto has_place = [&](const std::string& table) { return !table_path(db, table.c_str()).empty(); };
  if (std::any_of(tables.begin(), tables.end(), has_place)) return true;
  const std::vector<std::string> names = databases_meant_by(source);
  if (!names.empty()) {
    elog_complain(0, "%s: is a table of the database %s: try '%s'", source.c_str(), names.front().c_str(),
                  line_for(names.front()).c_str());
    return false;
  }
  elog_complain(0, "%s: is read as a descriptor, and no table has a file there or where it leads; looked for %s.%s",
                source.c_str(), source.c_str(), joined(tables, (", " + source + ".").c_str()).c_str());
  return false;
}

// The first word is taken for the source where it names a database, else for what should have been the subcommand.
std::string convert_line(const std::vector<std::string>& words) {
  std::string line = kConvert;
  const std::size_t first = is_database(words.front()) ? 0 : 1;
  if (first == words.size()) return line + " SOURCE";
  for (std::size_t i = first; i < words.size(); ++i) line += " " + shell_word(words[i]);
  return line;
}

}  // namespace triglub::tool
