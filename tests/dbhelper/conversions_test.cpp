#include <gmock/gmock.h>

#include <cstdlib>

#include "dbhelper.h"
#include "support/collected_log.h"

namespace triglub_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

// Texts that may be written to, as containers hold them.
struct Texts {
  char aak[16] = "  AAK \t";
  char bhz[16] = "BHZ";
  char blank[16] = "   ";
};

std::vector<std::string> texts_of(Tbl* list) {
  std::vector<std::string> texts;
  for (long i = 0; i < maxtbl(list); ++i) texts.emplace_back(static_cast<char*>(gettbl(list, i)));
  return texts;
}

TEST(Copies, AreTexts) {
  char* copy = str_dup("AAK");
  EXPECT_STREQ(copy, "AAK");
  std::free(copy);
  copy = cpcast("");
  EXPECT_STREQ(copy, "");
  std::free(copy);
}

TEST(AsString, TrimsTheTextInPlace) {
  Texts texts;
  EXPECT_EQ(as_string(texts.aak, false), "AAK");
  EXPECT_STREQ(texts.aak, "AAK");
  EXPECT_EQ(as_string(texts.blank, true), "");
  EXPECT_STREQ(texts.blank, "");
}

TEST(AsString, DoesNotWriteToATextThatIsTrim) {
  static const char constant[] = "AAK BHZ";
  EXPECT_EQ(as_string(const_cast<char*>(constant), true), "AAK BHZ");
  EXPECT_EQ(as_string(const_cast<char*>(""), true), "");
}

TEST(AsString, GivesNothingForNull) {
  EXPECT_EQ(as_string(nullptr, false), "");
  try {
    as_string(nullptr, true);
    ADD_FAILURE() << "no exception";
  } catch (const std::domain_error& e) {
    EXPECT_STREQ(e.what(), "pointer value must be non-NULL");
  }
}

TEST(GettblString, GivesElementsTrimmed) {
  Texts texts;
  Tbl* list = newtbl(0);
  pushtbl(list, texts.bhz);
  pushtbl(list, nullptr);
  pushtbl(list, texts.aak);
  EXPECT_EQ(gettbl_string(list, 0), "BHZ");
  EXPECT_EQ(gettbl_string(list, 1), "");
  EXPECT_EQ(gettbl_string(list, 2), "AAK");
  EXPECT_STREQ(texts.aak, "AAK");
  freetbl(list, nullptr);
}

TEST(GettblString, RefusesIndexesBeyondTheEnd) {
  Tbl* list = newtbl(0);
  for (int i = 0; i < 3; ++i) pushtbl(list, "x");
  const auto message = [&](Tbl* of, unsigned long i) -> std::string {
    try {
      return gettbl_string(of, i);
    } catch (const std::range_error& e) {
      return e.what();
    }
  };
  EXPECT_EQ(message(list, 2), "x");
  EXPECT_EQ(message(list, 3), "Index [3] out of range. Tbl has 3 elements");
  EXPECT_EQ(message(list, ~0ul), "Index [18446744073709551615] out of range. Tbl has 3 elements");
  EXPECT_EQ(message(nullptr, 0), "Index [0] out of range. Tbl has 0 elements");
  freetbl(list, nullptr);
}

class Array : public ::testing::Test {
 protected:
  ~Array() override { freearr(array_, nullptr); }
  rbtree* array_ = newarr(nullptr);
  Texts texts_;
};

TEST_F(Array, GivesValuesTrimmed) {
  setarr(array_, "sta", texts_.aak);
  EXPECT_EQ(getarr_string(array_, "sta"), "AAK");
  EXPECT_EQ(getarr_string(array_, "chan"), "");
  EXPECT_STREQ(texts_.aak, "AAK");
}

TEST_F(Array, BecomesAMap) {
  setarr(array_, " sta ", texts_.aak);
  setarr(array_, "chan", texts_.bhz);
  EXPECT_THAT(arr2map(array_), ElementsAre(Pair("chan", "BHZ"), Pair("sta", "AAK")));
  EXPECT_NE(getarr(array_, " sta "), nullptr);
}

TEST_F(Array, BecomesAMapInWhichTheLaterOfTwoLikeKeysStands) {
  setarr(array_, " sta", texts_.bhz);
  setarr(array_, "sta", texts_.aak);
  EXPECT_THAT(arr2map(array_), ElementsAre(Pair("sta", "AAK")));
}

TEST_F(Array, BecomesAnEmptyMapWithoutAComplaint) {
  const CollectedLog log;
  EXPECT_THAT(arr2map(array_), IsEmpty());
  EXPECT_THAT(log.lines(), IsEmpty());
}

TEST(NullArray, IsComplainedAbout) {
  const CollectedLog log;
  EXPECT_THAT(arr2map(nullptr), IsEmpty());
  EXPECT_THAT(log.lines(), ElementsAre("warning: tried to convert an empty array to a map"));
}

TEST_F(Array, BecomesConditionsLastKeyFirst) {
  setarr(array_, "sta", texts_.aak);
  setarr(array_, "chan", texts_.bhz);
  setarr(array_, " loc ", "/00|10/");
  Tbl* conditions = arr2expr(array_);
  EXPECT_THAT(texts_of(conditions), ElementsAre("sta=~AAK", "chan=~BHZ", "loc=~/00|10/"));
  freetbl(conditions, std::free);
}

TEST_F(Array, WithoutEntriesGivesNoConditions) {
  for (rbtree* array : {array_, static_cast<rbtree*>(nullptr)}) {
    Tbl* conditions = arr2expr(array);
    EXPECT_EQ(maxtbl(conditions), 0);
    freetbl(conditions, std::free);
  }
}

TEST(PfgetString, ComplainsAboutAMissingKey) {
  Pf* pf = nullptr;
  ASSERT_EQ(pfparse("a  one two\nb &Tbl{\n}\n", "test", &pf), 0);
  const CollectedLog log;
  EXPECT_EQ(pfget_string(pf, std::string("a")), "one two");
  EXPECT_THAT(log.lines(), IsEmpty());
  EXPECT_EQ(pfget_string(pf, std::string("b")), "");
  EXPECT_EQ(pfget_string(pf, std::string("c{d}")), "");
  EXPECT_THAT(log.lines(),
              ElementsAre("warning: pfget_string: [b] not found", "warning: pfget_string: [c{d}] not found"));
  pffree(pf);
}

TEST(Dumps, ShowMaps) {
  using Map = std::map<std::string, std::string>;
  EXPECT_EQ(as_string(Map{{"b", "2"}, {"a", "1"}}, "m"), "m[a] = \"1\" | m[b] = \"2\" | \n");
  EXPECT_EQ(as_string(Map{}, "m"), "\n");
}

TEST(Dumps, ShowVectors) {
  using Texts = std::vector<std::string>;
  EXPECT_EQ(as_string(Texts{"AAK", "ANMO"}, "Categorized Group:"), " vector Categorized Group:contains: | AAK | ANMO");
  EXPECT_EQ(as_string(Texts{}, "x"), " vector xcontains:");
}

TEST(Dumps, ShowLists) {
  Texts texts;
  Tbl* list = newtbl(0);
  EXPECT_EQ(as_string(list), "Tbl contains: ");
  pushtbl(list, texts.aak);
  pushtbl(list, texts.bhz);
  EXPECT_EQ(as_string(list), "Tbl contains:  | AAK | BHZ");
  EXPECT_STREQ(texts.aak, "AAK");
  freetbl(list, nullptr);
  EXPECT_EQ(as_string(static_cast<Tbl*>(nullptr)), "NULL table");
}

TEST(Dumps, ShowHandles) {
  EXPECT_EQ(as_string(Dbptr{}), "db(-102.-102.-102.-102)");
  EXPECT_EQ(as_string(Dbptr{0, 12, dbALL, 3}), "db(0.12.-501.3)");
}

}  // namespace
}  // namespace triglub_test
