// The split of records by category: the distinct values, and the records of one of them.
#include <algorithm>
#include <exception>

#include "db2stationxml.h"
#include "dbhelper.h"
#include "platform/elog.h"

namespace {

std::vector<std::string> unique_values(Dbptr db, const std::string& field, SmartIndex index) {
  try {
    return get_unique(db, field, std::move(index));
  } catch (const std::exception& e) {
    elog_die(0, "%s", e.what());
  }
}

}  // namespace

std::vector<std::string> get_categories(Dbptr db, ElementDescription line, SmartIndex index) {
  show_func("get_categories(" + line.name() + ")");
  if (!line.is_categorized_group() && !line.is_count()) {
    // Count lines are fine as well; the text names what users write most, and is known to them.
    elog_die(0, "get_categories: called on an element that was not a categorized group");
  }
  std::vector<std::string> categories = unique_values(db, line.value(), std::move(index));
  // Outside the guarded part: what is no number leaves as an exception, for the caller to tell from a failed query.
  if (line.is_numeric_group()) std::stable_sort(categories.begin(), categories.end(), sort_strings_as_numeric);
  return categories;
}

bool sort_strings_as_numeric(std::string const& a, std::string const& b) { return std::stoi(a) < std::stoi(b); }

SmartIndex pseudo_subset(Dbptr db, std::string expression, SmartIndex index) {
  show_func("pseudo_subset");
  Expression* hook = nullptr;
  db.record = static_cast<std::int64_t>(index.first()) - 1;
  const std::int64_t lo = dbfind(db, expression.c_str(), 0, &hook);
  if (lo == -1) elog_die(0, "%s", ("expression didn't compile: [" + expression + "]").c_str());
  db.record = static_cast<std::int64_t>(index.last()) + 1;
  const std::int64_t hi = lo < 0 ? lo : dbfind(db, expression.c_str(), 1, &hook);
  dbfind_release(&hook);
  if (lo < 0 || hi < 0) return {index.size(), false};
  // Everything between the two matches, unseen: the view is sorted so that a category's records lie together, and two
  // searches cost less than a look at every record. The last match may lie before the first: then there is none within
  // the index, only around it.
  return SmartIndex::of_range(index.size(), static_cast<unsigned long>(lo), static_cast<unsigned long>(hi + 1));
}
