// The distinct values of a field, and everything from the first to the last match of one of them.
#include "writer/categories.h"

#include <algorithm>
#include <cstdint>
#include <exception>

#include "db2stationxml.h"
#include "fatal_failure.h"

namespace triglub {

namespace {

std::vector<std::string> unique_values(Dbptr db, const std::string& field, const SmartIndex& index) {
  try {
    return get_unique(db, field, index);
  } catch (const std::exception& e) {
    throw FatalFailure(e.what());
  }
}

}  // namespace

void trace_categories(const ConversionState& state, const ElementDescription& line) {
  if (state.traces_calls()) trace_call(state, "get_categories(" + line.name() + ")");
}

std::vector<std::string> categories_of(const ConversionState& state, Dbptr db, const ElementDescription& line,
                                       const SmartIndex& index) {
  trace_categories(state, line);
  if (!line.is_categorized_group() && !line.is_count()) {
    // Count lines are fine as well; the text names what users write most, and is known to them.
    throw FatalFailure("get_categories: called on an element that was not a categorized group");
  }
  std::vector<std::string> categories = unique_values(db, line.value(), index);
  // Outside the guarded part: what is no number leaves as an exception, for the caller to tell from a failed query.
  if (line.is_numeric_group()) std::stable_sort(categories.begin(), categories.end(), sort_strings_as_numeric);
  return categories;
}

SmartIndex records_of_category(const ConversionState& state, Dbptr db, const std::string& expression,
                               const SmartIndex& index) {
  trace_call(state, "pseudo_subset");
  Expression* hook = nullptr;
  db.record = static_cast<std::int64_t>(index.first()) - 1;
  const std::int64_t lo = dbfind(db, expression.c_str(), 0, &hook);
  if (lo == -1) throw FatalFailure("expression didn't compile: [" + expression + "]");
  db.record = static_cast<std::int64_t>(index.last()) + 1;
  const std::int64_t hi = lo < 0 ? lo : dbfind(db, expression.c_str(), 1, &hook);
  dbfind_release(&hook);
  if (lo < 0 || hi < 0) return {index.size(), false};
  // Everything between the two matches, unseen: the view is sorted so that a category's records lie together, and two
  // searches cost less than a look at every record. The last match may lie before the first: then there is none within
  // the index, only around it.
  return SmartIndex::of_range(index.size(), static_cast<unsigned long>(lo), static_cast<unsigned long>(hi + 1));
}

}  // namespace triglub
