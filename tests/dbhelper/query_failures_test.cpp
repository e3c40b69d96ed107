// The checked queries over a database library that answers as each test wants it: this program has its own dbquery,
// dbget and dblookup, for answers that no real database gives twice in a row.
#include <gtest/gtest.h>

#include <cstring>
#include <deque>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "dbhelper.h"
#include "resp_helper.h"
#include "smartindex.h"
#include "support/collected_log.h"

namespace {

using triglub_test::CollectedLog;

using Texts = std::vector<std::string>;

struct Answer {
  int status;
  const char* text;  // null: the answer is left alone
};

struct Query {
  Dbptr db;
  int code;
  friend bool operator==(const Query&, const Query&) = default;
};

// What the library answers, and what it was asked.
struct Library {
  std::deque<Answer> texts;                                   // to text queries, in order; -1 when there are no more
  std::map<std::pair<int, std::int64_t>, const char*> named;  // to text queries, by code and field
  std::map<int, long> counts;         // to counting and type queries; -1 when the code is not there
  int counted = 0;                    // the status with which they are answered
  std::vector<std::string> values;    // of the one field, by record
  std::set<std::int64_t> unreadable;  // records
  std::vector<Query> queries;
  std::vector<std::int64_t> records_read;
} library;

int answer_text(Dbptr db, int code, void* answer) {
  const auto found = library.named.find({code, db.field});
  if (found != library.named.end()) {
    *static_cast<const char**>(answer) = found->second;
    return 0;
  }
  if (library.texts.empty()) return -1;
  const Answer next = library.texts.front();
  library.texts.pop_front();
  if (next.text != nullptr) *static_cast<const char**>(answer) = next.text;
  return next.status;
}

}  // namespace

int dbquery(Dbptr db, int code, void* answer) {
  library.queries.push_back({db, code});
  if (code != dbRECORD_COUNT && code != dbFIELD_COUNT && code != dbFIELD_TYPE) return answer_text(db, code, answer);
  const auto found = library.counts.find(code);
  if (found == library.counts.end()) return -1;
  if (code == dbFIELD_TYPE) {
    *static_cast<int*>(answer) = static_cast<int>(found->second);
  } else {
    *static_cast<long*>(answer) = found->second;
  }
  return library.counted;
}

int dbget(Dbptr db, char* buffer) {
  library.records_read.push_back(db.record);
  if (library.unreadable.contains(db.record)) return static_cast<int>(dbINVALID);
  std::strcpy(buffer, library.values.at(static_cast<std::size_t>(db.record)).c_str());
  return 0;
}

// Only here so that every linker takes the one above, which the library's own has for a neighbour.
int dbgetv(Dbptr /*db*/, const char* /*table*/, ...) { return static_cast<int>(dbINVALID); }

Dbptr dblookup(Dbptr db, const char* database, const char* table, const char* field, const char* record) {
  if (database != nullptr || record != nullptr) return {};
  if (table != nullptr && field == nullptr) return std::string(table) == "stage" ? db : Dbptr{};
  if (table != nullptr) return {};
  db.field = std::string(field) == "field" ? 7 : dbINVALID;
  return db;
}

Dbptr dbsort(Dbptr view, Tbl* /*keys*/, int /*flags*/, const char* /*name*/) { return view; }

namespace {

constexpr Dbptr kView{1, 2, 3, 4};

TEST(TextQuery, GivesTheFirstStatusAndTheSecondText) {
  const struct {
    Answer first, second;
    int status;
    const char* text;
  } cases[] = {
      {{0, "a"}, {0, "b"}, 0, "b"},        {{3, "a"}, {5, "b"}, 3, "b"},       {{0, "a"}, {-1, nullptr}, 0, ""},
      {{0, "a"}, {-1, "b"}, 0, ""},        {{-1, nullptr}, {0, "b"}, -1, "b"}, {{-7, nullptr}, {-1, nullptr}, -7, ""},
      {{0, nullptr}, {0, nullptr}, 0, ""},
  };
  for (const auto& c : cases) {
    library.texts = {c.first, c.second};
    library.queries.clear();
    std::string text = "before";
    EXPECT_EQ(dbquery(kView, dbFIELD_NAME, text), c.status);
    EXPECT_EQ(text, c.text);
    EXPECT_EQ(library.queries, (std::vector<Query>{{kView, dbFIELD_NAME}, {kView, dbFIELD_NAME}}));
  }
}

TEST(NullValue, IsAskedOnceForAPosition) {
  library.texts = {{0, "-1"}, {0, "-1"}, {0, "-2"}, {0, "-2"}};
  EXPECT_EQ(get_nullvalue(kView), "-1");
  EXPECT_EQ(get_nullvalue(kView), "-1");
  EXPECT_EQ(get_nullvalue({8, 9, kView.field, 10}), "-1");
  EXPECT_EQ(library.queries, (std::vector<Query>{{kView, dbNULL_VALUE}, {kView, dbNULL_VALUE}}));
  EXPECT_EQ(get_nullvalue(kView, "field"), "-2");
  EXPECT_EQ(library.queries.back().db.field, 7);
}

TEST(NullValue, ThatCouldNotBeHadIsNotAskedAgain) {
  EXPECT_EQ(get_nullvalue(kView), "");
  const std::size_t asked = library.queries.size();
  library.texts = {{0, "-1"}, {0, "-1"}};
  EXPECT_EQ(get_nullvalue(kView), "");
  EXPECT_EQ(library.queries.size(), asked);
}

TEST(Counts, AreTakenWithEveryStatusThatIsNotNegative) {
  library.counts = {{dbRECORD_COUNT, 3}, {dbFIELD_COUNT, 5}, {dbFIELD_TYPE, dbREAL}};
  for (const int status : {0, 1, 99}) {
    library.counted = status;
    EXPECT_EQ(db_nrecs(kView), 3);
    EXPECT_EQ(db_nfields(kView), 5);
    EXPECT_EQ(db_getfieldtype(kView), dbREAL);
  }
  library.counted = -1;
  EXPECT_THROW(db_nrecs(kView), dbquery_error);
  EXPECT_THROW(db_nfields(kView), dbquery_error);
  EXPECT_THROW(db_getfieldtype(kView), dbquery_error);
}

TEST(Counts, OfNothingOrLessAreEmpty) {
  for (const long count : {-1L, 0L, 1L}) {
    library.counts[dbRECORD_COUNT] = count;
    EXPECT_EQ(is_empty(kView), count <= 0) << count;
  }
}

TEST(FieldLookup, TrimsWhatTheDatabaseGives) {
  library.values = {"  a b \t\n"};
  EXPECT_EQ(db_fieldlookup({1, 2, 3, 0}, "field"), "a b");
  EXPECT_EQ(db_fieldlookup({1, 2, 3, 0}, "field", "other"), "a b");
}

TEST(Dump, CountsNoFieldsWhenTheCountIsNotAnswered) {
  const CollectedLog log;
  dumpViewFieldnames(kView);
  EXPECT_EQ(log.lines(), (Texts{"notify: db(1.2.3.4) --", "debug: This view was achieved by: (null)"}));
}

TEST(Dump, AsksForEachFieldAtTheFirstRecord) {
  library.counts[dbFIELD_COUNT] = 2;
  library.named = {{{dbFIELD_BASE_TABLE, 0}, "site"}, {{dbFIELD_NAME, 0}, "lat"},
                   {{dbFIELD_DETAIL, 0}, "real"},     {{dbFIELD_BASE_TABLE, 1}, "site"},
                   {{dbFIELD_DETAIL, 1}, "text"},     {{dbVIEW_OPERATIONS, 2}, "dbopen"}};
  const CollectedLog log;
  dumpViewFieldnames(kView);
  EXPECT_EQ(log.lines(), (Texts{"notify: db(1.2.3.4) --", "notify: field [0]: site.lat = real",
                                "notify: field [1]: site.(null) = text", "debug: This view was achieved by: dbopen"}));
  ASSERT_EQ(library.queries.size(), 8u);
  for (std::size_t i = 1; i < 8; ++i) EXPECT_EQ(library.queries[i].db.record, 0) << i;
}

TEST(ResponseFolder, IsTheRootWhenTheDatabaseDoesNotTellTheTables) {
  library.counts[dbRECORD_COUNT] = 0;
  const ResponseCache lost(kView, "stage");
  EXPECT_EQ(lost.fullfile("resp/a.pz"), "/resp/a.pz");
  library.texts = {{0, "/db"}};
  const ResponseCache found(kView, "stage");
  EXPECT_EQ(found.fullfile("resp/a.pz"), "/db/resp/a.pz");
  library.texts = {{-1, "/db"}};
  const ResponseCache failed(kView, "stage");
  EXPECT_EQ(failed.fullfile("resp/a.pz"), "/resp/a.pz");
}

class Unique : public ::testing::Test {
 protected:
  Unique() {
    library.values = {"C", "A", " B ", "A"};
    library.counts = {{dbRECORD_COUNT, 4}, {dbFIELD_TYPE, dbSTRING}};
  }
  static Texts unique(const std::vector<bool>& selected) { return get_unique(kView, "field", SmartIndex(selected)); }
  static std::string failure() {
    try {
      unique({true, true, true, true});
    } catch (const dbquery_error& error) {
      return error.std::runtime_error::what();
    }
    return "nothing thrown";
  }
};

TEST_F(Unique, ListsWhatItReadBeforeWhereAValueCannotBeRead) {
  library.unreadable = {1, 3};
  EXPECT_EQ(unique({true, true, true, true}), (Texts{"B", "C"}));
  EXPECT_EQ(unique({true, true, false, false}), Texts{"C"});
}

TEST_F(Unique, ListsTheEmptyTextWhenTheFirstValueCannotBeRead) {
  library.unreadable = {0};
  EXPECT_EQ(unique({true, false, false, false}), Texts{""});
  EXPECT_EQ(unique({true, true, false, false}), (Texts{"", "A"}));
  library.unreadable = {2};
  EXPECT_EQ(unique({false, false, true, true}), (Texts{"", "A"}));  // the record before is not selected
}

TEST_F(Unique, ReadsSelectedRecordsOnceInOrder) {
  unique({true, false, true, true});
  EXPECT_EQ(library.records_read, (std::vector<std::int64_t>{0, 2, 3}));
}

TEST_F(Unique, FailsWithTheTypeOrTheCount) {
  library.counts.erase(dbFIELD_TYPE);
  EXPECT_EQ(failure(), "unsuccessful query of dbFIELD_TYPE");
  library.counts = {{dbFIELD_TYPE, dbSTRING}};
  EXPECT_EQ(failure(), "unsuccessful query of dbRECORD_COUNT");
  EXPECT_TRUE(library.records_read.empty());
}

}  // namespace
