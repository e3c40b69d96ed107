// One look at the runs of equal texts. Whatever could make the exact form take other records (texts that are patterns,
// runs that do not lie together, numbers that are none) sends the caller to that form.
#include "writer/category_runs.h"

#include <algorithm>
#include <charconv>

#include "base/characters.h"

namespace triglub {

namespace {

// What stands for a field in an expression as well as by itself.
bool is_field_name(const std::string& text) {
  const auto belongs = [](char c) { return is_word_character(c) || c == '.'; };
  return !text.empty() && !is_digit(text[0]) && std::all_of(text.begin(), text.end(), belongs);
}

// Texts that match themselves and nothing else. There are more; codes, dates and numbers without a point are these.
bool matches_itself_only(const TextRun& run) {
  const auto is_plain = [](char c) { return is_word_character(c) || c == '-' || c == ':'; };
  return !run.text.empty() && std::all_of(run.text.begin(), run.text.end(), is_plain);
}

bool is_before(const TextRun& a, const TextRun& b) { return a.text < b.text; }

bool have_one_text(const TextRun& a, const TextRun& b) { return a.text == b.text; }

// A whole text as a number that std::stoi reads alike.
std::optional<int> number_of(std::string_view text) {
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

bool sort_by_number(CategoryRuns* runs) {
  if (!std::all_of(runs->begin(), runs->end(), [](const TextRun& run) { return number_of(run.text).has_value(); })) {
    return false;
  }
  std::stable_sort(runs->begin(), runs->end(),
                   [](const TextRun& a, const TextRun& b) { return *number_of(a.text) < *number_of(b.text); });
  return true;
}

}  // namespace

std::optional<Dbptr> CategoryField::handle(Dbptr db, const ElementDescription& line) {
  if (!field_) {
    const std::string name = line.value();
    field_ = is_field_name(name) ? dblookup(db, nullptr, nullptr, name.c_str(), nullptr).field : dbINVALID;
  }
  if (*field_ < 0) return std::nullopt;
  db.field = *field_;
  return db;
}

bool find_category_runs(Dbptr db, const ElementDescription& line, CategoryField* field, const SmartIndex& index,
                        CategoryRuns* runs) {
  const std::optional<Dbptr> handle = field->handle(db, line);
  if (!handle || !index.is_one_run()) return false;
  text_runs(*handle, index.first(), index.last() + 1, runs);
  if (!std::all_of(runs->begin(), runs->end(), matches_itself_only)) return false;
  if (!std::is_sorted(runs->begin(), runs->end(), is_before)) std::sort(runs->begin(), runs->end(), is_before);
  if (std::adjacent_find(runs->begin(), runs->end(), have_one_text) != runs->end()) return false;
  return !line.is_numeric_group() || sort_by_number(runs);
}

}  // namespace triglub
