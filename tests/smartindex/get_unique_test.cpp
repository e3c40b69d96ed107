#include <gtest/gtest.h>

#include <random>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "dbhelper.h"
#include "platform/database.h"
#include "smartindex.h"
#include "support/flat_database.h"
#include "support/random_seed.h"

namespace {

using Texts = std::vector<std::string>;

// A database of one table, closed at the end.
class SiteChannels {
 public:
  explicit SiteChannels(const Texts& stations) {
    for (std::size_t i = 0; i < stations.size(); ++i) {
      files_.add_row("sitechan", {{"sta", stations[i]}, {"chanid", std::to_string(i)}, {"ctype", "n"}});
    }
    files_.add_row("site", {{"sta", "AAK"}});  // so that there is a database in any case
    if (dbopen(files_.write().c_str(), "r", &db_) != 0) throw std::runtime_error("cannot open the database");
  }
  SiteChannels(const SiteChannels&) = delete;
  SiteChannels& operator=(const SiteChannels&) = delete;
  ~SiteChannels() { dbclose(db_); }

  Dbptr view() const { return dblookup(db_, nullptr, "sitechan", nullptr, nullptr); }

 private:
  triglub_test::FlatDatabase files_;
  Dbptr db_;
};

TEST(GetUnique, ListsEachValueOnceInByteOrder) {
  const SiteChannels channels({"B", "A", "B"});
  EXPECT_EQ(get_unique(channels.view(), "sta", SmartIndex(3, true)), (Texts{"A", "B"}));
  EXPECT_EQ(get_unique(channels.view(), "sitechan.sta", SmartIndex(3, true)), (Texts{"A", "B"}));
}

TEST(GetUnique, ReadsSelectedRecordsOnly) {
  const SiteChannels channels({"A", "B", "C", "D"});
  EXPECT_EQ(get_unique(channels.view(), "sta", SmartIndex({false, true, false, true})), (Texts{"B", "D"}));
  EXPECT_EQ(get_unique(channels.view(), "sta", SmartIndex(4, false)), Texts());
}

TEST(GetUnique, DoesNotMindTheRecordOfTheHandle) {
  const SiteChannels channels({"A", "B"});
  Dbptr view = channels.view();
  for (const std::int64_t record : {std::int64_t{1}, std::int64_t{99}, dbALL, dbINVALID}) {
    view.record = record;
    EXPECT_EQ(get_unique(view, "sta", SmartIndex(2, true)), (Texts{"A", "B"})) << record;
  }
}

TEST(GetUnique, OrdersNumbersAsTexts) {
  const SiteChannels channels(Texts(12, "A"));
  EXPECT_EQ(get_unique(channels.view(), "chanid", SmartIndex(12, true)),
            (Texts{"0", "1", "10", "11", "2", "3", "4", "5", "6", "7", "8", "9"}));
}

TEST(GetUnique, TakesValuesThatDifferByBlanksForOne) {
  const SiteChannels channels({"A", " A", "  A"});
  EXPECT_EQ(get_unique(channels.view(), "sta", SmartIndex(3, true)), Texts{"A"});
}

TEST(GetUnique, ListsNullsByTheirText) {
  const SiteChannels channels({"A", "-"});
  EXPECT_EQ(get_unique(channels.view(), "sta", SmartIndex(2, true)), (Texts{"-", "A"}));
  EXPECT_EQ(get_unique(channels.view(), "edepth", SmartIndex(2, true)), Texts{"-1.0000"});
}

TEST(GetUnique, GivesNothingForAViewWithoutRecords) {
  const SiteChannels channels({});
  EXPECT_EQ(get_unique(channels.view(), "sta", SmartIndex(0, false)), Texts());
  EXPECT_EQ(get_unique(channels.view(), "sta", SmartIndex(0, true)), Texts());
  EXPECT_EQ(get_unique(channels.view(), "sta", SmartIndex(3, true)), Texts());
}

TEST(GetUnique, TakesAnIndexOfAnotherSize) {
  const SiteChannels channels({"A", "B", "C"});
  EXPECT_EQ(get_unique(channels.view(), "sta", SmartIndex(2, true)), (Texts{"A", "B"}));
  EXPECT_EQ(get_unique(channels.view(), "sta", SmartIndex(9, true)), (Texts{"A", "B", "C"}));
}

TEST(GetUnique, FindsWhatIsSelectedOutsideTheBorders) {
  const SiteChannels channels({"A", "B", "C", "D"});
  SmartIndex index({true, false, true, false});
  index.set(0, false);
  ASSERT_EQ(index.first(), 4);
  EXPECT_EQ(get_unique(channels.view(), "sta", index), Texts{"C"});
  EXPECT_EQ(index.first(), 4);  // the caller's index is left as it was
  index.set(3, true);
  ASSERT_EQ(index.first(), 3);
  EXPECT_EQ(get_unique(channels.view(), "sta", index), (Texts{"C", "D"}));
}

TEST(GetUnique, RefusesAnUnknownField) {
  const SiteChannels channels({"A"});
  try {
    get_unique(channels.view(), "nothing", SmartIndex(1, true));
    FAIL() << "nothing thrown";
  } catch (const dbquery_error&) {
    FAIL() << "not the failure of a query";
  } catch (const std::runtime_error& error) {
    EXPECT_STREQ(error.what(), "db field [nothing] not found");
  }
}

// A field is never found in a handle that is not set.
TEST(GetUnique, RefusesAHandleThatIsNotSet) {
  EXPECT_THROW(get_unique(Dbptr(), "sta", SmartIndex(1, true)), std::runtime_error);
}

// The definition: every record of the view, asked of the index.
Texts unique_plainly(Dbptr view, const std::string& field, const SmartIndex& index) {
  std::set<std::string> values;
  const long count = db_nrecs(view);
  for (view.record = 0; view.record < count; ++view.record) {
    if (index.includes(view)) values.insert(db_fieldlookup(view, field));
  }
  return {values.begin(), values.end()};
}

TEST(GetUnique, AgreesWithAskingEveryRecordOnRandomIndexes) {
  std::mt19937 random(triglub_test::random_seed());
  Texts stations(40);
  for (std::string& station : stations) station = std::string(1, static_cast<char>('A' + random() % 8));
  const SiteChannels channels(stations);
  for (int round = 0; round < 3000; ++round) {
    SmartIndex index(30 + random() % 20, random() % 2 == 0);
    for (int i = 0; i < 30; ++i) index.set(random() % index.size(), random() % 3 == 0);
    ASSERT_EQ(get_unique(channels.view(), "sta", index), unique_plainly(channels.view(), "sta", index))
        << index.as_string();
  }
}

// Fields of every kind in a view in which rows are absent, in the order of the rows and in another.
TEST(GetUnique, AgreesWithAskingEveryRecordOfAView) {
  std::mt19937 random(triglub_test::random_seed());
  const auto below = [&](unsigned long n) { return static_cast<unsigned long>(random() % n); };
  const Texts texts = {"A", "B", "AB", " A", "\xC3\xBC", "\xFC", "-", ""};
  const Texts numbers = {"1", "10", "9", "1.0", "1.00", "+1", "-1", "-1.0", "0", ""};
  for (int round = 0; round < 20; ++round) {
    triglub_test::FlatDatabase files;
    for (unsigned long i = 1 + below(60); i > 0; --i) {
      files.add_row("sitechan", {{"sta", texts[below(3)]},
                                 {"chan", texts[below(8)]},
                                 {"chanid", std::to_string(below(12))},
                                 {"hang", numbers[below(10)]},
                                 {"descrip", texts[below(8)]}});
    }
    files.add_row("site", {{"sta", "A"}, {"lat", numbers[below(10)]}, {"staname", texts[below(8)]}});
    Dbptr db;
    ASSERT_EQ(dbopen(files.write().c_str(), "r", &db), 0);
    Dbptr view = dblookup(db, nullptr, "sitechan", nullptr, nullptr);
    view = dbjoin(view, dblookup(db, nullptr, "site", nullptr, nullptr), nullptr, nullptr, 1, nullptr, nullptr);
    if (round % 2 == 0) {
      Tbl* keys = newtbl(1);
      pushtbl(keys, "chanid");
      view = dbsort(view, keys, 0, nullptr);
      freetbl(keys, nullptr);
    }
    for (int draw = 0; draw < 10; ++draw) {
      SmartIndex index(static_cast<unsigned long>(db_nrecs(view)) + below(3), below(2) == 0);
      for (int i = 0; i < 20; ++i) index.set(below(index.size()), below(3) == 0);
      for (const char* field : {"sta", "chan", "chanid", "hang", "descrip", "lat", "staname", "site.sta", "site.ondate",
                                "edepth", "lddate"}) {
        ASSERT_EQ(get_unique(view, field, index), unique_plainly(view, field, index)) << field << index.as_string();
      }
    }
    dbclose(db);
  }
}

}  // namespace
