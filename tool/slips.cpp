// Words are compared by the number of letters to change; databases are looked for where the text leads.
#include "tool/slips.h"

#include <algorithm>
#include <numeric>

#include "base/characters.h"
#include "platform/elog.h"
#include "platform/sources.h"

namespace triglub::tool {

namespace {

constexpr std::size_t kMaxEdits = 2;
constexpr const char* kConvert = "triglub convert";

// The letters to put in, leave out or change. Only the row of the table that is worked on is kept.
std::size_t edits_between(std::string_view a, std::string_view b) {
  std::vector<std::size_t> edits(b.size() + 1);
  std::iota(edits.begin(), edits.end(), 0);
  for (std::size_t i = 0; i < a.size(); ++i) {
    std::size_t diagonal = edits[0]++;
    for (std::size_t j = 0; j < b.size(); ++j) {
      const std::size_t changed = diagonal + (to_lower(a[i]) == to_lower(b[j]) ? 0 : 1);
      diagonal = edits[j + 1];
      edits[j + 1] = std::min({changed, edits[j] + 1, edits[j + 1] + 1});
    }
  }
  return edits.back();
}

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

std::string nearest(std::string_view word, const std::vector<std::string>& known) {
  std::string best;
  std::size_t least = std::min(kMaxEdits, word.size() / 2) + 1;
  for (const std::string& candidate : known) {
    const std::size_t edits = edits_between(word, candidate);
    if (edits >= least) continue;
    least = edits;
    best = candidate;
  }
  return best;
}

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
