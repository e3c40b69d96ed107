// Whatever the tables hold: what comes out is a document, or a message that names the row.
#include "tool/hostile_tables.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <regex>
#include <string>
#include <vector>

#include "support/random_seed.h"

namespace triglub_test {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

constexpr const char* kEdition1 = "stationxml-edition1";
constexpr const char* kEdition2 = "stationxml";

TEST(HostileTables, MakeADocumentAsTheyAre) {
  const HostileTables tables;
  for (const char* edition : kEditions) {
    const Outcome outcome = tables.convert(edition, "--strict");
    EXPECT_EQ(outcome.status, 0) << outcome.output;
    EXPECT_EQ(tables.fault(), "");
  }
}

// Of edition 1: the value, and what is told of its row.
struct Refusal {
  const char* field;
  const char* value;
  const char* told;
};

const Refusal kRefusals[] = {
    {"stage.ounits", "co\x01nts",
     ".stage:1: field stage.ounits: 'co\\x01nts' may not stand in XML as it is: the "
     "character U+0001, which XML does not allow"},
    {"stage.ounits", "c\xEF\xBF\xBE", "the character U+FFFE, which XML does not allow"},
    {"stage.iunits", "c\xEF\xBF\xBF", "the character U+FFFF, which XML does not allow"},
    {"stage.ounits", "]]>", ".stage:1: field stage.ounits: ']]>' may not stand in XML as it is"},
    {"schanloc.loc", "\x02", ".schanloc:1: field schanloc.loc: '\\x02' may not stand in XML as it is"},
    {"snetsta.fsta", "X\x1F", ".snetsta:1: field snetsta.fsta: 'X\\x1f' may not stand in XML as it is"},
    {"site.lat", "1e-310",
     ".site:1: field site.lat: expected a number for Latitude, neither too large nor too small "
     "for a double, found '1e-310'"},
    {"site.lon", "1e-400", ".site:1: field site.lon: expected a number for Longitude"},
    {"sensor.endtime", "1e15", ".sensor:1: field sensor.endtime: expected a time of the years 1 to 9999, found '1e15'"},
    {"sensor.time", "-1e15", ".sensor:1: field sensor.time: expected a time of the years 1 to 9999, found '-1e15'"},
    {"sensor.endtime", "253402300800", ".sensor:1: field sensor.endtime: expected a time of the years 1 to 9999"},
    {"snetsta.fsta", "A.*",
     ".snetsta:1: field snetsta.fsta: 'A.*' tells no category: expected no character that means "
     "something in a pattern"},
    {"snetsta.fsta", "A/B", ".snetsta:1: field snetsta.fsta: 'A/B' tells no category"},
    {"stage.samprate", "1e308", ".stage:2 (AAA BHZ stage 2 resp/d.fir): no input rate can be worked out of samprate"},
};

TEST(HostileTables, AreRefusedByEdition1WithTheRow) {
  for (const Refusal& refusal : kRefusals) {
    const HostileTables tables(OtherValues{{refusal.field, refusal.value}});
    const Outcome outcome = tables.convert(kEdition1);
    EXPECT_EQ(outcome.status, 1) << refusal.field << ": " << outcome.output;
    EXPECT_THAT(outcome.output, HasSubstr(refusal.told));
    EXPECT_FALSE(std::filesystem::exists(tables.document())) << refusal.field;
  }
}

TEST(HostileTables, AreWrittenByEdition1WhereTheTreeMakesThemSafe) {
  for (const char* field : {"site.staname", "network.netname", "instrument.insname", "sitechan.descrip"}) {
    const HostileTables tables(OtherValues{{field, "a\x01 & <b> ]]>"}});
    const Outcome outcome = tables.convert(kEdition1);
    EXPECT_EQ(outcome.status, 0) << field << ": " << outcome.output;
    EXPECT_EQ(tables.fault(), "") << field;
  }
}

// Of trees of edition 1 whose one element has this value: together the texts are no XML, by themselves they may be.
TEST(HostileTables, AreRefusedWhereTheTreePutsThemTogetherWrongly) {
  const std::string values[] = {
      "concat(site.staname, schanloc.fchan)",
      R"(staname =~ /x/ ? "" : concat("]]", ">"))",
  };
  for (const std::string& value : values) {
    const HostileTables tables(OtherValues{{"site.staname", "a]]"}, {"schanloc.fchan", ">b"}});
    const std::string tree = tables.files().write_file(
        "tree.pf", "root_node root\nroot &Arr{\n name Texts\n attributes &Tbl{\n }\n elements &Tbl{\n  Text - string " +
                       value + "\n }\n}\n");
    const Outcome outcome = tables.convert(tree);
    EXPECT_EQ(outcome.status, 1) << value;
    EXPECT_THAT(outcome.output, HasSubstr("the document would be no XML (line ")) << value;
    EXPECT_FALSE(std::filesystem::exists(tables.document())) << value;
  }
}

TEST(HostileTables, LeaveNothingAtStandardOutputWhereTheyAreRefused) {
  const HostileTables tables(OtherValues{{"stage.ounits", "co\x01nts"}});
  const Outcome outcome =
      run_shell("$TRIGLUB convert -p stationxml-edition1 " + tables.files().prefix() + " 2> /dev/null");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.output, "");
}

TEST(HostileTables, LoseInEdition2WhatXmlDoesNotHaveWhichIsTold) {
  const struct {
    const char* field;
    const char* value;
    const char* told;
  } cases[] = {
      {"site.staname", "A\x01place", "Name: characters that XML does not allow, left out: 1 ("},
      {"schanloc.loc", "0\x02", "locationCode: characters that XML does not allow, left out: 1 ("},
      {"network.netname", "a\xEF\xBF\xBF", "Description: characters that XML does not allow, left out: 1 ("},
      {"stage.ounits", "co\x01nts", "units with characters that XML does not allow, left out: 2 ("},
  };
  for (const auto& [field, value, told] : cases) {
    const HostileTables tables(OtherValues{{field, value}});
    const Outcome outcome = tables.convert(kEdition2);
    EXPECT_EQ(outcome.status, 0) << field << ": " << outcome.output;
    EXPECT_EQ(tables.fault(), "") << field;
    EXPECT_THAT(outcome.output, HasSubstr(told));
    EXPECT_EQ(tables.convert(kEdition2, "--strict").status, 1) << field;
  }
}

TEST(HostileTables, HaveNoOtherTimeThanTheOneThatIsSet) {
  const HostileTables tables;
  for (const char* edition : kEditions) {
    for (const char* time : {"", "yesterday", "-1", "1.5", "253402300800", "99999999999999999999"}) {
      const Outcome outcome = run_shell("SOURCE_DATE_EPOCH='" + std::string(time) + "' $TRIGLUB convert -p " + edition +
                                        " " + tables.files().prefix() + " 2>&1");
      EXPECT_EQ(outcome.status, 1) << time;
      EXPECT_THAT(outcome.output, HasSubstr("SOURCE_DATE_EPOCH is \"" + std::string(time) +
                                            "\", expected whole seconds since 1970, before the year 10000"));
    }
  }
}

const std::array kTexts = {"site.staname",       "sitechan.descrip",  "snetsta.snet",    "snetsta.fsta",
                           "schanloc.fchan",     "schanloc.loc",      "network.netname", "instrument.insname",
                           "instrument.rsptype", "calibration.units", "stage.iunits",    "stage.ounits",
                           "stage.gtype"};

std::string any_text(std::mt19937_64& random, std::size_t width) {
  static const std::string kNasty[] = {"&",     "<",    ">",        "]]>",  "\xEF\xBF\xBE", "\xEF\xBF\xBF",
                                       "\"",    "'",    "\xC3\xA4", "\x80", "\xED\xA0\x80", "\x7F",
                                       "&amp;", "<!--", "-->",      "\r",   "\t",           "]]"};
  std::string text;
  while (true) {
    const std::string next = random() % 3 == 0   ? kNasty[random() % std::size(kNasty)]
                             : random() % 3 == 0 ? std::string(1, static_cast<char>(random() % 255 + 1))
                                                 : "A";
    if (text.size() + next.size() > width || random() % 12 == 0) break;
    if (next != "\n") text += next;
  }
  return text;
}

TEST(HostileTables, OfAnyTextsAreADocumentOrRefused) {
  // An expression that fails is named instead of the row that it failed for.
  static const std::regex place(R"(aaa\.[a-z]+:[0-9]+|failure to eval_str_expr %s[a-z])");
  std::mt19937_64 random(random_seed());
  int documents = 0;
  for (int round = 0; round < 40; ++round) {
    OtherValues values;
    for (const char* field : kTexts) {
      if (random() % 4 == 0) values[field] = any_text(random, 6);
    }
    const HostileTables tables(values);
    for (const char* edition : kEditions) {
      const Outcome outcome = tables.convert(edition);
      if (outcome.status == 0) {
        EXPECT_EQ(tables.fault(), "") << edition;
        std::filesystem::remove(tables.document());
        ++documents;
      } else {
        EXPECT_EQ(outcome.status, 1);
        EXPECT_THAT(outcome.output, HasSubstr("nothing is written"));
      }
    }
  }
  EXPECT_GT(documents, 20);
}

const std::array kNumbers = {"site.lat",
                             "site.lon",
                             "site.elev",
                             "sitechan.edepth",
                             "sitechan.hang",
                             "sitechan.vang",
                             "sensor.calratio",
                             "sensor.calper",
                             "instrument.samprate",
                             "instrument.ncalib",
                             "calibration.samprate",
                             "calibration.calib",
                             "calibration.calper",
                             "calibration.fc",
                             "stage.gnom",
                             "stage.samprate",
                             "stage.decifac"};

// Numbers of documents: what stands between tags or quotes and is one, or ought to be.
std::string wrong_number_in(const std::string& path) {
  std::ifstream file(path);
  const std::string text{std::istreambuf_iterator<char>(file), {}};
  static const std::regex wrong("[>\"] *[-+]?(inf|nan)[a-z]* *[<\"]", std::regex::icase);
  std::smatch found;
  return std::regex_search(text, found, wrong) ? found.str() : "";
}

TEST(HostileTables, OfAnyNumbersHaveNoneInTheDocumentThatIsNone) {
  static const char* const kExtremes[] = {"0",      "-0",     "1e308", "-1e308", "1e-308", "5e-324", "1e-310", "1e300",
                                          "-1e300", "1e-300", "-1",    "1",      "9e99",   "0.5",    "-999.0"};
  static const char* const kFactors[] = {"0", "-1", "1", "-7", "99999999"};
  // An expression that fails is named instead of the row that it failed for.
  static const std::regex place(R"(aaa\.[a-z]+:[0-9]+|failure to eval_str_expr %s[a-z])");
  std::mt19937_64 random(random_seed());
  int documents = 0;
  for (int round = 0; round < 40; ++round) {
    OtherValues values;
    for (const std::string field : kNumbers) {
      if (random() % 5 != 0) continue;
      values[field] = field == "stage.decifac" ? kFactors[random() % std::size(kFactors)]
                                               : kExtremes[random() % std::size(kExtremes)];
    }
    const HostileTables tables(values);
    for (const char* edition : kEditions) {
      const Outcome outcome = tables.convert(edition);
      if (outcome.status != 0) {
        EXPECT_TRUE(std::regex_search(outcome.output, place)) << outcome.output;
        continue;
      }
      EXPECT_EQ(wrong_number_in(tables.document()), "") << edition << outcome.output;
      std::filesystem::remove(tables.document());
      ++documents;
    }
  }
  EXPECT_GT(documents, 20);
}

}  // namespace
}  // namespace triglub_test
