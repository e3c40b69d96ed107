// Step lists: each step is an operation on the view that the steps before it made.
#include <cstdlib>
#include <cstring>

#include "base/characters.h"
#include "base/words.h"
#include "engine/session/database.h"
#include "platform/elog.h"
#include "platform/text.h"

namespace triglub {

namespace {

// A list of texts for the classic interface, freed with it.
class TextList {
 public:
  explicit TextList(const std::vector<std::string>& texts) : list_(newtbl(static_cast<int>(texts.size()))) {
    // NOLINTNEXTLINE(clang-analyzer-unix.Malloc): the list keeps the texts
    for (const std::string& text : texts) pushtbl(list_, strdup(text.c_str()));
  }
  ~TextList() { freetbl(list_, std::free); }
  TextList(const TextList&) = delete;
  TextList& operator=(const TextList&) = delete;
  Tbl* get() { return list_; }

 private:
  Tbl* list_;
};

struct Step {
  std::string text;
  std::string verb;
  std::string rest;                // what follows the verb, trimmed
  std::vector<std::string> words;  // of the rest
};

Step parse_step(const char* text) {
  Step step;
  step.text = trimmed(text);
  const std::size_t blank = std::min(step.text.find_first_of(" \t"), step.text.size());
  step.verb = step.text.substr(0, blank);
  step.rest = trimmed(std::string_view(step.text).substr(blank));
  std::string_view rest = step.rest;
  while (!rest.empty()) {
    step.words.emplace_back(take_word(&rest, kBlanks));
    rest = trimmed(rest);
  }
  return step;
}

Dbptr fail(const Step& step, const char* fault) {
  elog_complain(0, "dbprocess: '%s': %s", step.text.c_str(), fault);
  return INVALID_HANDLE;
}

// A table or view by name. One that refuses to load has had its complaints.
Dbptr find_table(Dbptr db, const Step& step, const std::string& name) {
  const Dbptr table = dblookup(db, nullptr, name.c_str(), nullptr, nullptr);
  if (table.table >= 0) return table;
  const bool is_known = database_of(db)->source().schema()->find(name) >= 0;
  return is_known ? INVALID_HANDLE : fail(step, "the schema has no such table");
}

Dbptr open_table(Dbptr db, const Step& step) {
  if (step.words.size() != 1) return fail(step, "expected one table");
  return find_table(db, step, step.words[0]);
}

// The first of `words` when it is the flag, which is then taken away.
bool take_flag(std::vector<std::string>* words, const char* flag) {
  if (words->empty() || words->front() != flag) return false;
  words->erase(words->begin());
  return true;
}

// Where the key of the view ends and that of the table begins: a range has two colons, a pair of keys one (snet:net,
// ondate::offdate:time::endtime).
std::size_t single_colon(const std::string& key) {
  for (std::size_t at = key.find(':'); at != std::string::npos; at = key.find(':', at)) {
    const std::size_t after = std::min(key.find_first_not_of(':', at), key.size());
    if (after - at == 1) return at;
    at = after;
  }
  return std::string::npos;
}

Dbptr join_table(Dbptr db, const Step& step) {
  std::vector<std::string> words = step.words;
  const bool outer = take_flag(&words, "-o");
  if (words.empty()) return fail(step, "expected a table");
  const Dbptr table = find_table(db, step, words[0]);
  if (table.table < 0) return INVALID_HANDLE;
  std::vector<std::string> view_keys;
  std::vector<std::string> table_keys;
  for (std::size_t i = 1; i < words.size(); ++i) {
    const std::size_t colon = single_colon(words[i]);
    view_keys.push_back(words[i].substr(0, colon));
    table_keys.push_back(colon == std::string::npos ? words[i] : words[i].substr(colon + 1));
  }
  TextList first(view_keys);
  TextList second(table_keys);
  Tbl* first_keys = first.get();
  Tbl* second_keys = second.get();
  const bool natural = view_keys.empty();
  return dbjoin(db, table, natural ? nullptr : &first_keys, natural ? nullptr : &second_keys, outer ? 1 : 0, nullptr,
                nullptr);
}

Dbptr sort_view(Dbptr db, const Step& step) {
  std::vector<std::string> words = step.words;
  const bool unique = take_flag(&words, "-u");
  if (words.empty()) return fail(step, "expected keys");
  TextList keys(words);
  return dbsort(db, keys.get(), unique ? dbSORT_UNIQUE : 0, nullptr);
}

// The steps that are carried out here; the others are the handler's.
bool is_operation(const Step& step) {
  return step.verb == "dbopen" || step.verb == "dbjoin" || step.verb == "dbsubset" || step.verb == "dbsort";
}

// True for a join with a table of the schema; a named view may come to name another.
bool joins_base_table(const Database& database, const Step& step) {
  const std::size_t table = !step.words.empty() && step.words[0] == "-o" ? 1 : 0;
  return table < step.words.size() && database.source().schema()->find(step.words[table]) >= 0;
}

// Joins of views that stay are made once for the life of the database.
Dbptr join_once(Dbptr db, const Step& step) {
  Database& database = *database_of(db);
  if (!database.is_kept(db.table) || !joins_base_table(database, step)) return join_table(db, step);
  const std::int64_t known = database.kept_join(db.table, step.text);
  if (known >= 0) return handle_of(database, known);
  const Dbptr joined = join_table(db, step);
  if (joined.table >= 0) database.keep_join(db.table, step.text, joined.table);
  return joined;
}

Dbptr apply(Dbptr db, const Step& step, DbprocessHandler handler) {
  if (step.verb == "dbopen") return open_table(db, step);
  if (step.verb == "dbjoin") return join_once(db, step);
  if (step.verb == "dbsubset") return dbsubset(db, step.rest.c_str(), nullptr);
  if (step.verb == "dbsort") return sort_view(db, step);
  return handler == nullptr ? fail(step, "there is no such operation") : handler(db, step.text.c_str());
}

void trace(const Step& step, Dbptr view) {
  long records = 0;
  dbquery(view, dbRECORD_COUNT, &records);
  elog_debug(0, "dbprocess: %s: %ld records", step.text.c_str(), records);
}

}  // namespace

}  // namespace triglub

Dbptr dbprocess(Dbptr db, Tbl* steps, DbprocessHandler handler) {
  using namespace triglub;
  if (database_of(db) == nullptr) return INVALID_HANDLE;
  bool verbose = false;
  bool made_here = false;  // a step of this list made the present view, which is no base table
  for (long i = 0; i < maxtbl(steps); ++i) {
    const Step step = parse_step(static_cast<const char*>(gettbl(steps, i)));
    if (step.verb == "verbose") {
      verbose = true;
      continue;
    }
    const Dbptr view = apply(db, step, handler);
    // Nobody has a handle of a view in the middle of the list, unless the handler got it.
    const bool is_own = handler == nullptr || is_operation(step);
    if (made_here && is_own) release_view(db);
    if (view_of(view) == nullptr) {
      elog_complain(0, "dbprocess: the step '%s' failed", step.text.c_str());
      return INVALID_HANDLE;
    }
    if (verbose) trace(step, view);
    made_here = is_own && step.verb != "dbopen";
    db = view;
  }
  return db;
}
