#include <gmock/gmock.h>

#include <stdexcept>

#include "elements.h"
#include "platform/database.h"
#include "support/flat_database.h"

namespace triglub_test {
namespace {

using ::testing::IsEmpty;

TEST(ElementDescription, ParsesALine) {
  const struct {
    const char* line;
    const char* parsed;  // as as_string() shows it
  } cases[] = {
      {"Latitude - deg_lat site.lat", "Latitude   - deg_lat   site.lat"},
      {"Latitude  -   deg_lat    site.lat", "Latitude   - deg_lat   site.lat"},
      {"   Latitude - deg_lat site.lat", "Latitude   - deg_lat   site.lat"},
      {"Elev r float site.elev * 1000 + 2  ", "Elev   r float   site.elev * 1000 + 2"},
      {"Elev r float  \t site.elev\t\n", "Elev   r float   site.elev"},
      {"Name", "Name        "},
      {"Name x", "Name   x    "},
      {"Name x text", "Name   x text   "},
      {"Name x text   ", "Name   x text   "},
      {"Name rx text value", "Name     text   value"},
      {"a\tb\tc\td", "a\tb\tc\td        "},
      {"Name - te\txt value", "Name   - te\txt   value"},
      {"", "        "},
      {"    ", "        "},
  };
  for (const auto& c : cases) EXPECT_EQ(ElementDescription(c.line).as_string(), c.parsed) << "[" << c.line << "]";
  EXPECT_EQ(ElementDescription(nullptr).as_string(), ElementDescription("").as_string());
}

TEST(ElementDescription, GivesNameAndValue) {
  const ElementDescription line("Latitude - deg_lat site.lat + 1");
  EXPECT_EQ(line.name(), "Latitude");
  EXPECT_EQ(line.value(), "site.lat + 1");
  const ElementDescription bare("Latitude");
  EXPECT_EQ(bare.name(), "Latitude");
  EXPECT_EQ(bare.value(), "");
}

TEST(ElementDescription, KnowsItsFlag) {
  const struct {
    const char* line;
    bool ignored, required;
  } cases[] = {
      {"A x text v", true, false},  {"A r text v", false, true},   {"A - text v", false, false},
      {"A X text v", false, false}, {"A rx text v", false, false}, {"A xx text v", false, false},
      {"A", false, false},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(ElementDescription(c.line).is_ignored(), c.ignored) << c.line;
    EXPECT_EQ(ElementDescription(c.line).is_required(), c.required) << c.line;
  }
}

TEST(ElementDescription, KnowsItsKind) {
  const struct {
    const char* type;
    bool group, categorized, numeric, stage, count;
  } cases[] = {
      {"GROUP", true, false, false, false, false},
      {"CATEGORIZED_GROUP", false, true, false, false, false},
      {"CATEGORIZED_BY_NUMBER", false, true, true, false, false},
      {"STAGE", false, false, false, true, false},
      {"count", false, false, false, false, true},
      {"text", false, false, false, false, false},
      {"group", false, false, false, false, false},
      {"COUNT", false, false, false, false, false},
      {"GROUPS", false, false, false, false, false},
      {"CATEGORIZED", false, false, false, false, false},
  };
  for (const auto& c : cases) {
    const ElementDescription line((std::string("A - ") + c.type + " v").c_str());
    EXPECT_EQ(line.is_group(), c.group) << c.type;
    EXPECT_EQ(line.is_categorized_group(), c.categorized) << c.type;
    EXPECT_EQ(line.is_numeric_group(), c.numeric) << c.type;
    EXPECT_EQ(line.is_stage(), c.stage) << c.type;
    EXPECT_EQ(line.is_count(), c.count) << c.type;
  }
}

std::string evaluated(const char* text, Dbptr db = {}) {
  ElementDescription line(text);
  line.evaluate(db);
  return line.value();
}

// A keyword that nobody knows is evaluated too.
TEST(ElementDescription, IsConstantWhenNoRecordIsNeeded) {
  for (const char* line : {"A x deg_lat site.lat", "A - deg_lat", "A - text site.lat", "A - count sitechan.sta"}) {
    EXPECT_TRUE(ElementDescription(line).is_constant()) << line;
  }
  for (const char* line : {"A - deg_lat site.lat", "A - new_keyword site.lat", "A - Text site.lat", "A - string '1'"}) {
    EXPECT_FALSE(ElementDescription(line).is_constant()) << line;
  }
}

TEST(ElementDescription, LeavesWhatNeedsNoRecordAsItIs) {
  EXPECT_EQ(evaluated("A - text site.lat"), "site.lat");
  EXPECT_EQ(evaluated("A - count sitechan.sta"), "sitechan.sta");
  EXPECT_EQ(evaluated("A x deg_lat site.lat"), "site.lat");
  EXPECT_EQ(evaluated("A - deg_lat"), "");
  EXPECT_EQ(evaluated("A - CATEGORIZED_GROUP snetsta.snet"), "snetsta.snet");
  EXPECT_EQ(evaluated("A - CATEGORIZED_BY_NUMBER stage.stageid"), "stage.stageid");
  EXPECT_EQ(evaluated("A - STAGE stage.stageid"), "stage.stageid");
}

TEST(ElementDescription, RefusesToEvaluatePlainGroups) {
  for (const char* text : {"A - GROUP v", "A - GROUP", "A x GROUP v"}) {
    try {
      evaluated(text);
      ADD_FAILURE() << text;
    } catch (const std::logic_error& e) {
      EXPECT_STREQ(e.what(), "Cannot evaluate groups in ElementDescription::evaluate. (yet?)");
    }
  }
}

TEST(ElementDescription, EvaluatesAtARecord) {
  FlatDatabase files;
  files.add_row("site", {{"sta", "AAK"}, {"ondate", "2001001"}, {"lat", "42.6375"}});
  Dbptr db;
  ASSERT_EQ(dbopen(files.write().c_str(), "r", &db), 0);
  Dbptr site = dblookup(db, nullptr, "site", nullptr, nullptr);
  site.record = 0;
  EXPECT_EQ(evaluated("A - deg_lat site.lat", site), "42.637500");
  EXPECT_EQ(evaluated("A r string concat(sta, ' ', sta)", site), "AAK AAK");
  EXPECT_THROW(evaluated("A - deg_lat site.nosuch", site), std::runtime_error);
  dbclose(db);
}

TEST(ElementDescription, BecomesAnAttribute) {
  EXPECT_EQ(ElementDescription("code - text A&B").as_xml_attribute(), " code=\"A&amp;B\"");
  EXPECT_EQ(ElementDescription("code - text").as_xml_attribute(), " code=\"\"");
  EXPECT_EQ(ElementDescription("code r text").as_xml_attribute(), " code=\"\"");
  EXPECT_EQ(ElementDescription("code x text A").as_xml_attribute(), "");
  EXPECT_EQ(ElementDescription("a;b x text A").as_xml_attribute(), "");
}

TEST(ElementDescription, RefusesNamesThatNoAttributeCanHave) {
  try {
    ElementDescription("a;b - text A").as_xml_attribute();
    ADD_FAILURE() << "no exception";
  } catch (const std::runtime_error& e) {
    EXPECT_STREQ(e.what(), "Invalid attribute name: [a;b]");
  }
}

TEST(Tbl2ElementDescription, TakesEveryLineThatIsThere) {
  Tbl* list = newtbl(0);
  EXPECT_THAT(Tbl2ElementDescription(list), IsEmpty());
  pushtbl(list, "A - text 1");
  pushtbl(list, nullptr);
  pushtbl(list, "B - text 2");
  pushtbl(list, "");
  const std::vector<ElementDescription> lines = Tbl2ElementDescription(list);
  ASSERT_EQ(lines.size(), 3u);
  EXPECT_EQ(lines[0].name(), "A");
  EXPECT_EQ(lines[1].value(), "2");
  EXPECT_EQ(lines[2].name(), "");
  EXPECT_EQ(maxtbl(list), 4);
  freetbl(list, nullptr);
}

TEST(ElementDescription, HasBlanksBetweenItsWordsAndNoTabs) {
  const ElementDescription line("\tA - text 1");
  EXPECT_EQ(line.name(), "\tA");
}

}  // namespace
}  // namespace triglub_test
