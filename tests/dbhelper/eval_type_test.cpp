#include <gmock/gmock.h>

#include <cerrno>
#include <cstdlib>
#include <random>

#include "dbhelper.h"
#include "elements/keywords.h"
#include "one_site.h"
#include "support/collected_log.h"
#include "support/random_seed.h"

namespace triglub_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using EvalType = OneSite;

// The codes that there are: from 0 to before this.
std::size_t code_count() { return triglub::keyword_codes().size(); }

TEST(Interpreters, FilesEveryKeyword) {
  const std::map<std::string, GroupType> expected = {
      {"deg_lat", GroupType(0)},
      {"deg_lon", GroupType(1)},
      {"dip", GroupType(2)},
      {"deg_az", GroupType(3)},
      {"record_count", GroupType(4)},
      {"meters", GroupType(5)},
      {"float", GroupType(6)},
      {"integer", GroupType(7)},
      {"force_lookup", GroupType(8)},
      {"lookup", GroupType(9)},
      {"string", GroupType(10)},
      {"epoch", GroupType(11)},
      {"julian", GroupType(12)},
      {"GROUP", GroupType(13)},
      {"CATEGORIZED_GROUP", GroupType(14)},
      {"CATEGORIZED_BY_NUMBER", GroupType(15)},
      {"STAGE", GroupType(16)},
      {"other_pf:site", GroupType(17)},
  };
  EXPECT_EQ(INTERPRETERS, expected);
}

TEST_F(EvalType, BringsAnglesIntoTheirRanges) {
  // dnorth and deast have a null value of 0, so that every number but 0 can stand in them.
  const struct {
    const char* type;
    const char* value;
    const char* text;
  } cases[] = {
      {"deg_lat", "42.6375", "42.637500"}, {"deg_lat", "100", "-80.000000"}, {"deg_lat", "-95", "85.000000"},
      {"deg_lat", "90", "90.000000"},      {"deg_lat", "-90", "-90.000000"}, {"deg_lat", "270", "90.000000"},
      {"deg_lon", "190", "-170.000000"},   {"deg_lon", "180", "180.000000"}, {"deg_lon", "-180", "-180.000000"},
      {"deg_lon", "-190.5", "169.500000"}, {"deg_lon", "540", "180.000000"}, {"deg_az", "360", "0.000000"},
      {"deg_az", "720", "0.000000"},       {"deg_az", "-10", "350.000000"},  {"deg_az", "359.9", "359.900000"},
      {"deg_az", "-360", "0.000000"},      {"dip", "90", "0.000000"},        {"dip", "0.5", "-89.500000"},
      {"dip", "180", "90.000000"},         {"dip", "270", "0.000000"},       {"dip", "-90", "0.000000"},
      {"dip", "271", "181.000000"},
  };
  for (const auto& c : cases) {
    FlatDatabase files;
    files.add_row("site", {{"sta", "A"}, {"ondate", "2001001"}, {"deast", c.value}});
    Dbptr db;
    ASSERT_EQ(dbopen(files.write().c_str(), "r", &db), 0);
    Dbptr site = dblookup(db, nullptr, "site", nullptr, nullptr);
    site.record = 0;
    EXPECT_EQ(eval_as_type(site, "deast", c.type), c.text) << c.type << " of " << c.value;
    dbclose(db);
  }
}

TEST_F(EvalType, MarksNullAngles) {
  const Dbptr site = site_with({});
  for (const char* type : {"deg_lat", "deg_lon", "deg_az", "dip"}) {
    EXPECT_EQ(eval_as_type(site, "lat", type), "<!--null-->0.0") << type;
  }
}

TEST_F(EvalType, MarksNullsHoweverTheFileWritesThem) {
  EXPECT_EQ(eval_as_type(site_with({{"lat", "-999.0"}, {"lon", ""}}), "lat", "deg_lat"), "<!--null-->0.0");
  EXPECT_EQ(eval_as_type(first("site"), "lon", "deg_lon"), "74.494200");
}

TEST_F(EvalType, TurnsKilometresIntoMetres) {
  // An unknown elevation is not marked: the number shows that it is none.
  EXPECT_EQ(eval_as_type(site_with({}), "elev", "meters"), "-999000.000000");
  EXPECT_EQ(eval_as_type(first("site"), "elev", "meters"), "1500.000000");
}

TEST_F(EvalType, EvaluatesExpressions) {
  const Dbptr site = first("site");
  EXPECT_EQ(eval_as_type(site, "elev * 1000 + 0.25", "float"), "1500.25");
  EXPECT_EQ(eval_as_type(site, "elev * 2", "integer"), "3");
  EXPECT_EQ(eval_as_type(site, "concat(sta, '.', staname)", "string"), "AAK.Ala Archa");
  EXPECT_EQ(eval_as_type(site, "upper(staname)", "lookup"), "ALA ARCHA");
  EXPECT_EQ(eval_as_type(site, "ondate", "julian"), "2001-01-01T00:00:00");
  EXPECT_EQ(eval_as_type(site, "epoch(ondate)", "epoch"), "2001-01-01T00:00:00.000");
}

TEST_F(EvalType, PassesGroupExpressionsThrough) {
  for (const char* type : {"GROUP", "CATEGORIZED_GROUP", "CATEGORIZED_BY_NUMBER", "STAGE"}) {
    EXPECT_EQ(eval_as_type(first("site"), "sta", type), "sta");
    EXPECT_EQ(eval_as_type(first("site"), "no expression at all (", type), "no expression at all (");
  }
}

TEST_F(EvalType, LeavesCountsToTheNodeWriter) { EXPECT_EQ(eval_as_type(first("site"), "sta", "record_count"), ""); }

TEST_F(EvalType, ThrowsForForcedLookupsBeforeLookingAnythingUp) {
  for (const char* expr : {"sta", "nosuch"}) {
    try {
      eval_as_type(first("site"), expr, "force_lookup");
      ADD_FAILURE() << expr;
    } catch (const std::logic_error& e) {
      EXPECT_STREQ(e.what(), "basic_string::_M_construct null not valid");
    }
  }
}

TEST_F(EvalType, TakesUnknownKeywordsForLatitudesAndRemembersThem) {
  EXPECT_EQ(INTERPRETERS.count("foo"), 0u);
  EXPECT_EQ(eval_as_type(site_with({}), "lat", "foo"), "<!--null-->0.0");
  EXPECT_EQ(INTERPRETERS.at("foo"), deg_lat);
  EXPECT_EQ(INTERPRETERS.size(), code_count() + 1);
  EXPECT_EQ(eval_as_type(first("site"), "lat", "foo"), "42.637500");
  EXPECT_EQ(INTERPRETERS.size(), code_count() + 1);
}

TEST_F(EvalType, RemembersAnUnknownKeywordThatCouldNotBeEvaluated) {
  EXPECT_THROW(eval_as_type(first("site"), "nosuch", "foo"), std::runtime_error);
  EXPECT_THROW(eval_as_type(first("site"), "staname", "Deg_lat"), std::invalid_argument);
  EXPECT_EQ(INTERPRETERS.at("foo"), deg_lat);
  EXPECT_EQ(INTERPRETERS.at("Deg_lat"), deg_lat);
  EXPECT_EQ(INTERPRETERS.size(), code_count() + 2);
}

// A database whose field's null value reads like an angle: only the very same text is one.
TEST_F(EvalType, MarksTextsThatAreTheNullValueLetterByLetter) {
  const Dbptr site = site_with({{"dnorth", "0"}, {"deast", "0.0001"}});
  EXPECT_EQ(eval_as_type(site, "dnorth", "deg_az"), "<!--null-->0.0");
  EXPECT_EQ(eval_as_type(site, "deast", "deg_az"), "0.000100");
  EXPECT_EQ(eval_as_type(site, "dnorth", "meters"), "0.000000");
}

TEST_F(EvalType, ComplainsAboutACodeThatAProgramInvented) {
  INTERPRETERS["bar"] = static_cast<GroupType>(code_count());
  const CollectedLog log;
  EXPECT_EQ(eval_as_type(first("site"), "lat", "bar"), "");
  EXPECT_THAT(log.lines(), ElementsAre("warning: Unrecognized special_types value bar"));
}

TEST_F(EvalType, LetsExceptionsPass) {
  const Dbptr site = first("site");
  const auto text_of = [&](const char* expr, const char* type) -> std::string {
    try {
      return eval_as_type(site, expr, type);
    } catch (const std::exception& e) {
      return e.what();
    }
  };
  EXPECT_EQ(text_of("nosuch", "deg_lat"), "db field [nosuch] not found");
  EXPECT_EQ(text_of("nosuch", "meters"), "db field [nosuch] not found");
  // Angles and lengths are fields, no expressions.
  EXPECT_EQ(text_of("lat + 1", "deg_lat"), "db field [lat + 1] not found");
  EXPECT_EQ(text_of("elev * 2", "meters"), "db field [elev * 2] not found");
  CollectedLog log;
  EXPECT_EQ(text_of("nosuch", "string"), "failure to eval_str_expr %snosuch");
  EXPECT_EQ(text_of("1 / 0", "lookup"), "failure to eval_str_expr %s1 / 0");
  EXPECT_EQ(text_of("1 / 0", "float"), "0");
  EXPECT_EQ(text_of("1 / 0", "integer"), "0");
  EXPECT_EQ(text_of("1 / 0", "epoch"), "0000-00-00T00:00:00ERR");
  EXPECT_EQ(text_of("1 / 0", "julian"), "0000-00-00T00:00:00ERR");
  EXPECT_EQ(text_of("nosuch", "epoch"), "");
  EXPECT_EQ(text_of("nosuch", "julian"), "0000-00-00T00:00:00ERR");
  EXPECT_EQ(text_of("staname", "deg_lat"), "stod");
  EXPECT_EQ(text_of("staname", "dip"), "stod");
  EXPECT_EQ(text_of("staname", "meters"), "stod");
  EXPECT_THROW(eval_as_type(site, "staname", "deg_az"), std::invalid_argument);
  Dbptr beyond = site;
  beyond.record = 5;
  EXPECT_THROW(eval_as_type(beyond, "lat", "deg_lat"), dbquery_error);
}

TEST(Angles, AreReadWhateverFailedBefore) {
  errno = ERANGE;
  EXPECT_EQ(as_valid_lat("5"), "5.000000");
}

TEST(Angles, ReadNumbersAsTheStandardConversionDoes) {
  const struct {
    const char* text;
    const char* latitude;
  } cases[] = {
      {"  12.5", "12.500000"}, {"+3", "3.000000"},     {"4x", "4.000000"},
      {"1e1", "10.000000"},    {"0x1p4", "16.000000"}, {"-0", "-0.000000"},
  };
  for (const auto& c : cases) EXPECT_EQ(as_valid_lat(c.text), c.latitude) << c.text;
  for (const char* text : {"", " ", "x1", "-", "."}) {
    try {
      as_valid_lat(text);
      ADD_FAILURE() << text;
    } catch (const std::invalid_argument& e) {
      EXPECT_STREQ(e.what(), "stod");
    }
  }
  for (const char* text : {"1e999", "-1e999", "1e-999"}) {
    try {
      as_valid_lon(text);
      ADD_FAILURE() << text;
    } catch (const std::out_of_range& e) {
      EXPECT_STREQ(e.what(), "stod");
    }
  }
}

TEST(Angles, RenderAsTheStandardConversionDoes) {
  std::mt19937_64 random(random_seed());
  std::uniform_real_distribution<double> angle(-90.0, 90.0);
  for (int i = 0; i < 5000; ++i) {
    const std::string text = std::to_string(angle(random));
    ASSERT_EQ(as_valid_lat(text), std::to_string(std::stod(text)));
  }
}

class OtherPf : public OneSite {
 protected:
  OtherPf() { setenv("TRIGLUB_PFPATH", files_.folder().c_str(), 1); }
};

TEST_F(OtherPf, GivesTheValueOfAKey) {
  files_.write_file("site.pf", "Sender  Example network\n");
  EXPECT_EQ(eval_as_type(first("site"), "Sender", "other_pf:site"), "Example network");
  EXPECT_EQ(get_from_other_pf("site", "Sender"), "Example network");
}

TEST_F(OtherPf, IsReadAnewEachTime) {
  files_.write_file("site.pf", "Sender  one\n");
  EXPECT_EQ(get_from_other_pf("site", "Sender"), "one");
  files_.write_file("site.pf", "Sender  two\n");
  EXPECT_EQ(get_from_other_pf("site", "Sender"), "two");
}

TEST_F(OtherPf, IsEmptyForAMissingKey) {
  files_.write_file("site.pf", "Sender  one\n");
  const CollectedLog log;
  EXPECT_EQ(get_from_other_pf("site", "Sendr"), "");
  EXPECT_THAT(log.lines(), ElementsAre("warning: pfget_string: [Sendr] not found"));
}

TEST_F(OtherPf, IsEmptyForAFileThatCannotBeUsed) {
  files_.write_file("site.pf", "list &Tbl{\n");
  const CollectedLog log;
  EXPECT_EQ(eval_as_type(first("site"), "Sender", "other_pf:site"), "");
  EXPECT_EQ(log.lines().back(), "debug: pfread failed from other pf( site , Sender ) ");
}

TEST_F(OtherPf, IsEmptyForAMissingFile) {
  const CollectedLog log;
  EXPECT_EQ(get_from_other_pf("nosuchfile", "Sender"), "");
  EXPECT_THAT(log.lines(), ElementsAre("debug: pfread failed from other pf( nosuchfile , Sender ) "));
}

TEST_F(EvalType, CutsAnIntegersFraction) {
  EXPECT_EQ(eval_as_type(first("site"), "7.9", "integer"), "7");
  EXPECT_EQ(eval_as_type(first("site"), "1234567 + 0", "integer"), "1234567");
}

}  // namespace
}  // namespace triglub_test
