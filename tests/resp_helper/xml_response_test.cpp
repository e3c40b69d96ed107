#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <stdexcept>
#include <string>

#include "resp_helper.h"
#include "stage_database.h"
#include "support/collected_log.h"

namespace {

using triglub_test::CollectedLog;
using triglub_test::kFirText;
using triglub_test::kPazText;
using triglub_test::StageDatabase;

std::string coefficients(const std::string& input_units, const std::string& output_units) {
  return "          <Coefficients>\n"
         "           <InputUnits><Name>" +
         input_units +
         "</Name></InputUnits>\n"
         "           <OutputUnits><Name>" +
         output_units +
         "</Name></OutputUnits>\n"
         "           <CfTransferFunctionType>DIGITAL</CfTransferFunctionType>\n"
         "          </Coefficients>\n";
}

std::string decimation(const std::string& rate, const std::string& factor, const std::string& delay) {
  return "        <Decimation>\n"
         "          <InputSampleRate>" +
         rate +
         " </InputSampleRate>\n"
         "          <Factor>" +
         factor +
         "</Factor>\n"
         "          <Offset>0</Offset>\n"
         "          <Delay>" +
         delay +
         "</Delay>\n"
         "          <Correction>" +
         delay +
         "</Correction>\n"
         "        </Decimation>\n";
}

std::string gain(const std::string& value, const std::string& frequency) {
  return "          <StageGain>\n"
         "            <Value>" +
         value +
         "</Value>\n"
         "            <Frequency>" +
         frequency +
         "</Frequency>\n"
         "          </StageGain>\n";
}

template <typename Operation>
std::string runtime_error_of(Operation operation) {
  try {
    operation();
  } catch (const std::runtime_error& error) {
    return error.what();
  }
  return "nothing thrown";
}

// Rows are added, then the cache is made, then rows are written.
class XmlResponseTest : public testing::Test {
 protected:
  XmlResponseTest() { XmlResponse::forget_units(); }

  // A row with the response file NAME in the folder "resp".
  void add_stage_with_file(const std::string& name, const std::string& text,
                           std::map<std::string, std::string> values = {}) {
    stages_.files.write_file("resp/" + name, text);
    values.insert({{"dir", "resp"}, {"dfile", name}});
    stages_.add_stage(values);
  }

  XmlResponse writer(std::int64_t record, const std::string& table = "stage") {
    if (!cache_) XmlResponse::set_cache(cache_.emplace(stages_.database(), "stage"));
    return {stages_.stage(record), table};
  }

  std::string stage_text(std::int64_t record) { return writer(record).stage2xml(-1); }

  StageDatabase stages_;
  std::optional<ResponseCache> cache_;
};

TEST_F(XmlResponseTest, WritesAStageWithoutFileAsADigitalOne) {
  stages_.add_calibration("0.05");
  stages_.add_stage({{"iunits", "V"},
                     {"ounits", "COUNTS"},
                     {"gnom", "1677720"},
                     {"decifac", "5"},
                     {"samprate", "40"},
                     {"dir", "resp"}});
  XmlResponse row = writer(0);
  EXPECT_EQ(row.stagecount(), 0);
  EXPECT_EQ(row.stage2xml(-1), coefficients("V", "COUNTS") + decimation("40", "5", "0"));  // the rate is not scaled
  EXPECT_EQ(row.stage2xml(0), row.stage2xml(-1));
  EXPECT_EQ(row.stage2xml(99), row.stage2xml(-1));
  EXPECT_EQ(row.decimation_as_xml(), decimation("40", "5", "0"));
  EXPECT_EQ(row.stagegain_as_xml(), gain("1.67772e+06", "0.05"));
}

TEST_F(XmlResponseTest, WritesNullsAsTheyAre) {
  stages_.add_stage({});
  XmlResponse row = writer(0);
  EXPECT_EQ(row.stage2xml(-1), coefficients("unknown", "unknown") + decimation("-1", "1", "0"));
  EXPECT_EQ(row.stagegain_as_xml(), gain("-1", "-1"));
}

TEST_F(XmlResponseTest, TakesUnitsThatAreNotStatedFromTheStageBefore) {
  stages_.add_stage({{"iunits", "M/S"}, {"ounits", "V"}});
  stages_.add_stage({{"ounits", "COUNTS"}});
  stages_.add_stage({});
  stages_.add_stage({{"iunits", "PA"}});
  stages_.add_stage({});
  EXPECT_EQ(stage_text(0), coefficients("M/S", "V") + decimation("-1", "1", "0"));
  EXPECT_EQ(stage_text(1), coefficients("V", "COUNTS") + decimation("-1", "1", "0"));
  EXPECT_EQ(stage_text(2), coefficients("COUNTS", "COUNTS") + decimation("-1", "1", "0"));
  EXPECT_EQ(stage_text(3), coefficients("PA", "PA") + decimation("-1", "1", "0"));
  EXPECT_EQ(stage_text(4), coefficients("PA", "PA") + decimation("-1", "1", "0"));
  XmlResponse::forget_units();
  EXPECT_EQ(stage_text(4), coefficients("unknown", "unknown") + decimation("-1", "1", "0"));
}

TEST_F(XmlResponseTest, ChainsUnitsOfARowWhoseResponseFails) {
  stages_.add_stage({{"ounits", "V"}, {"dir", "resp"}, {"dfile", "none"}});
  stages_.add_stage({});
  EXPECT_THROW(writer(0), std::runtime_error);
  EXPECT_EQ(stage_text(1), coefficients("V", "V") + decimation("-1", "1", "0"));
}

TEST_F(XmlResponseTest, CarriesUnitsOnThatCannotBeRead) {
  stages_.add_stage({{"iunits", "M/S"}, {"ounits", "V"}, {"gnom", "5"}, {"decifac", "2"}, {"samprate", "10"}});
  stages_.files.add_row("site", {{"sta", "AAK"}});
  writer(0);
  Dbptr site = dblookup(stages_.database(), nullptr, "site", nullptr, "0");
  XmlResponse row(site, "stage");
  EXPECT_EQ(row.stage2xml(-1), coefficients("M/S", "V") + decimation("-1", "1", "0"));
  EXPECT_EQ(row.stagegain_as_xml(), gain("0", "-1"));
  XmlResponse::forget_units();
  EXPECT_EQ(XmlResponse(site, "stage").stage2xml(-1), coefficients("", "") + decimation("-1", "1", "0"));
}

TEST_F(XmlResponseTest, TakesUnitsOfTheFieldsWholeWidth) {
  stages_.add_stage({{"iunits", "ABCDEFGHIJKLMNOP"}, {"ounits", "qrstuvwxyz012345"}, {"gtype", std::string(20, 'g')}});
  stages_.add_stage({{"iunits", "V"}, {"ounits", "V"}});
  EXPECT_EQ(stage_text(0), coefficients("ABCDEFGHIJKLMNOP", "qrstuvwxyz012345") + decimation("-1", "1", "0"));
  EXPECT_EQ(stage_text(1), coefficients("V", "V") + decimation("-1", "1", "0"));
}

TEST_F(XmlResponseTest, WritesPolesAndZerosWithoutDecimation) {
  stages_.add_calibration("1");
  add_stage_with_file("a.paz", kPazText, {{"iunits", "M/S"}, {"ounits", "V"}, {"gnom", "1500"}, {"stageid", "1"}});
  XmlResponse row = writer(0);
  EXPECT_EQ(row.stagecount(), 1);
  Paz paz;
  paz.normalization = 2;
  EXPECT_EQ(row.stage2xml(-1), paz_as_xml(&paz, "M/S", "V"));
  EXPECT_EQ(row.stage2xml(0), paz_as_xml(&paz, "M/S", "V"));
  EXPECT_EQ(row.stagegain_as_xml(), gain("1500", "1"));
}

struct FirRow {
  const char* decimation_factor;
  const char* sample_rate;
  const char* written_rate;
  const char* written_factor;
};

TEST_F(XmlResponseTest, WritesTheRateThatEntersAFir) {
  const FirRow rows[] = {
      {"4", "25", "100", "4"},       {"1", "40", "40", "1"},
      {"-1", "25", "25", "1"},    // without a factor the rate stands as it is
      {"-1", "-1", "-100", "1"},  // neither: the filter's own rate (100), divided by the null
      {"2", "-1", "-2", "2"},     // the null rate is scaled too, and the filter's not asked
      {"1", "-1", "100", "1"},    // ... unless it stays -1
      {"10", "0.125", "1.25", "10"},
  };
  std::int64_t record = 0;
  for (const FirRow& row : rows) {
    add_stage_with_file("a.fir", kFirText,
                        {{"iunits", "V"},
                         {"ounits", "V"},
                         {"stageid", std::to_string(record++)},
                         {"decifac", row.decimation_factor},
                         {"samprate", row.sample_rate}});
  }
  record = 0;
  for (const FirRow& row : rows) {
    Fir fir;
    fir.numerators = {0.25, 0.5, 0.25};
    EXPECT_EQ(stage_text(record++),
              fir_as_xml(&fir, "V", "V") + decimation(row.written_rate, row.written_factor, "0.01"))
        << row.decimation_factor << " " << row.sample_rate;
  }
}

TEST_F(XmlResponseTest, WritesTheDelayAsCorrectionToo) {
  add_stage_with_file("a.fir", "theoretical 1 x fir\n400 47.5\n1\n1\n0\n", {{"decifac", "1"}, {"samprate", "400"}});
  XmlResponse row = writer(0);
  Fir fir;
  fir.samprate = 400;
  fir.delay = 47.5;
  EXPECT_EQ(row.decimation_as_xml(&fir), decimation("400", "1", "0.11875"));
}

TEST_F(XmlResponseTest, WritesACommentForAFap2) {
  add_stage_with_file("a.fap2", "theoretical 1 x fap2\n0\n", {{"gnom", "2"}});
  XmlResponse row = writer(0);
  EXPECT_EQ(row.stage2xml(-1), "     <!-- FAP2 not implemented  --> \n");
  EXPECT_EQ(row.stagegain_as_xml(), gain("2", "-1"));
}

TEST_F(XmlResponseTest, JudgesATypeByThreeLettersAndItsCode) {
  struct Case {
    const char* name;
    const char* text;
  };
  const Case cases[] = {
      {"fir", "<!-- Expected response type fir, which did not match retrieved response type -->\n"},
      {"firx", "<!-- Expected response type fir, which did not match retrieved response type -->\n"},
      {"fap", "<!-- Expected response type fap2, which did not match retrieved response type -->\n"},
      {"fapx", "<!-- Expected response type fap2, which did not match retrieved response type -->\n"},
      {"paz", "<!-- Expected response type paz, which did not match retrieved response type -->\n"},
      {"pazzo", "<!-- Expected response type paz, which did not match retrieved response type -->\n"},
      {"iir", ""},
      {"pa", ""},
      {"", ""},
      {"polynomial", ""},
  };
  add_stage_with_file("a", "theoretical 1 x other\n");
  XmlResponse row = writer(0);
  ResponseGroup& group = cache_->get("resp/a")->groups.at(0);
  for (const Case& item : cases) {
    group.type_name = item.name;
    EXPECT_EQ(row.stage2xml(-1), item.text) << item.name;
  }
}

// Each name with each code: only its own gives a filter, whichever the others are.
TEST_F(XmlResponseTest, WritesAFilterOnlyWhereNameAndCodeAgree) {
  const std::pair<const char*, std::string> files[] = {
      {"theoretical 1 x paz\n2\n0\n0\n", "paz"},      {"theoretical 1 x iir\n100\n0\n0\n", ""},
      {"theoretical 1 x fir\n100\n1\n1\n0\n", "fir"}, {"theoretical 1 x fap\n0\n", ""},
      {"theoretical 1 x fap2\n0\n", "fap2"},          {"theoretical 1 x other\n", ""},
  };
  for (std::size_t code = 0; code < std::size(files); ++code) {
    add_stage_with_file(std::to_string(code), files[code].first, {{"gnom", "1"}});
  }
  for (std::size_t code = 0; code < std::size(files); ++code) {
    XmlResponse row = writer(static_cast<std::int64_t>(code));
    ResponseGroup& group = cache_->get("resp/" + std::to_string(code))->groups.at(0);
    ASSERT_EQ(group.type, static_cast<int>(code));
    for (const std::string name : {"paz", "fir", "fap2"}) {
      group.type_name = name;
      const std::string comment =
          "<!-- Expected response type " + name + ", which did not match retrieved response type -->\n";
      EXPECT_EQ(row.stage2xml(-1) == comment, name != files[code].second) << name << " with " << code;
    }
    group.type_name = "iir";
    EXPECT_EQ(row.stage2xml(-1), "") << code;
  }
}

TEST_F(XmlResponseTest, TakesAnyNameThatBeginsWithFapForATableOfItsCode) {
  add_stage_with_file("a", "theoretical 1 x fap2\n0\n");
  XmlResponse row = writer(0);
  cache_->get("resp/a")->groups.at(0).type_name = "fapx";
  EXPECT_EQ(row.stage2xml(-1), "     <!-- FAP2 not implemented  --> \n");
}

TEST_F(XmlResponseTest, WritesNoTextForFiltersItDoesNotKnow) {
  add_stage_with_file("a.iir", "theoretical 1 x iir\n100\n0\n0\n", {{"gnom", "3"}});
  add_stage_with_file("b.poly", "theoretical 1 x polynomial\n1 2 3\n");
  EXPECT_EQ(stage_text(0), "");
  EXPECT_EQ(stage_text(1), "");
  EXPECT_EQ(writer(0).stagegain_as_xml(), gain("3", "-1"));
}

TEST_F(XmlResponseTest, CommentsOnAStageBeyondTheFile) {
  add_stage_with_file("a.paz", kPazText, {{"stageid", "0"}});
  add_stage_with_file("a.paz", kPazText, {{"stageid", "5"}});
  EXPECT_EQ(writer(0).stage2xml(5), "<!-- no stage 5 (max stage:1) -->\n");
  EXPECT_EQ(writer(0).stage2xml(2), "<!-- no stage 2 (max stage:1) -->\n");
  EXPECT_EQ(writer(0).stage2xml(1), "");  // the count itself is let through, but there is no such group
  EXPECT_EQ(writer(1).stage2xml(5), "");  // and so is the row's own stage number
  EXPECT_EQ(writer(1).stage2xml(6), "<!-- no stage 6 (max stage:1) -->\n");
  EXPECT_EQ(writer(0).stage2xml(-2), "");
}

TEST_F(XmlResponseTest, RefusesAFileOfSeveralGroups) {
  add_stage_with_file("ab.paz", std::string(kPazText) + kPazText);
  XmlResponse row = writer(0);
  EXPECT_EQ(runtime_error_of([&] { row.stage2xml(-1); }), "expected single group. instead got 2");
  EXPECT_EQ(runtime_error_of([&] { (void)row.stagecount(); }), "expected single group. instead got 2");
  EXPECT_EQ(runtime_error_of([&] { row.stage2xml(0); }), "expected single group. instead got 2");
  for (const int count : {0, -1, 3}) {
    cache_->get("resp/ab.paz")->group_count = count;
    EXPECT_EQ(runtime_error_of([&] { row.stage2xml(-1); }),
              "expected single group. instead got " + std::to_string(count));
  }
}

TEST_F(XmlResponseTest, RefusesARowWhoseFileIsNotInTheCache) {
  stages_.add_stage({{"dir", "resp"}, {"dfile", "x.paz"}});
  stages_.add_stage({{"dfile", "a.paz"}});
  add_stage_with_file("-a.paz", kPazText);
  EXPECT_EQ(runtime_error_of([&] { writer(0); }), "problems with response file \"resp/x.paz\"");
  EXPECT_EQ(runtime_error_of([&] { writer(1); }), "problems with response file \"-/a.paz\"");
  EXPECT_EQ(runtime_error_of([&] { writer(2); }), "problems with response file \"resp/-a.paz\"");
}

TEST_F(XmlResponseTest, FindsTheFileOfARow) {
  add_stage_with_file("a.paz", kPazText);
  stages_.add_stage({{"dir", "resp"}});
  XmlResponse row = writer(1);
  EXPECT_FALSE(row.load_response());
  EXPECT_FALSE(row.record_to_filename(stages_.stage(1), "stage"));
  EXPECT_FALSE(row.load_response());
  EXPECT_EQ(row.stagecount(), 0);
  EXPECT_TRUE(row.record_to_filename(stages_.stage(0), "any table"));
  EXPECT_TRUE(row.load_response());
  EXPECT_EQ(row.stagecount(), 1);
}

TEST_F(XmlResponseTest, ComplainsOfAnotherTableAndGoesOn) {
  add_stage_with_file("a.paz", kPazText, {{"stageid", "7"}});
  EXPECT_EQ(writer(0).stage2xml(7), "");
  const CollectedLog log;
  XmlResponse row = writer(0, "calibration");
  EXPECT_EQ(log.lines(), std::vector<std::string>{"warning: unexpected table calibration"});
  EXPECT_EQ(row.stage2xml(7), "<!-- no stage 7 (max stage:1) -->\n");  // the stage number is not read
  EXPECT_EQ(row.stage2xml(-1), writer(0).stage2xml(0));
}

TEST_F(XmlResponseTest, SaysNothingOfAnotherTableWithoutAFile) {
  stages_.add_stage({});
  const CollectedLog log;
  writer(0, "calibration");
  EXPECT_TRUE(log.lines().empty());
}

TEST_F(XmlResponseTest, IsWrittenWithoutACacheWhenTheRowNamesNoFile) {
  stages_.add_stage({});
  EXPECT_EQ(XmlResponse(stages_.stage(0), "stage").stage2xml(-1),
            coefficients("unknown", "unknown") + decimation("-1", "1", "0"));
}

using XmlResponseDeathTest = XmlResponseTest;

TEST_F(XmlResponseDeathTest, EndsWhenAFileIsNamedBeforeACacheIsSet) {
  stages_.add_stage({{"dir", "resp"}, {"dfile", "a.paz"}});
  const Dbptr row = stages_.stage(0);
  EXPECT_EXIT(XmlResponse(row, "stage"), testing::ExitedWithCode(1),
              "fatal: a stage row names the response file resp/a.paz, but no response cache has been set");
}

TEST_F(XmlResponseTest, WritesOneFilterWithTheUnitsOfEachRow) {
  const char* const units[][2] = {{"m/s", "V"}, {"m", "V"}, {"m/s", "counts"}, {"m/s", "V"}, {"m", "V"}};
  for (const auto& [input, output] : units) {
    add_stage_with_file("a.paz", kPazText, {{"iunits", input}, {"ounits", output}, {"sta", "AAK"}});
  }
  for (std::int64_t record = 0; record < 5; ++record) {
    const std::string text = stage_text(record);
    EXPECT_THAT(text, testing::HasSubstr(std::string("<InputUnits><Name>") + units[record][0] + "</Name>"));
    EXPECT_THAT(text, testing::HasSubstr(std::string("<OutputUnits><Name>") + units[record][1] + "</Name>"));
    std::ostringstream out;
    writer(record).write_stage(out, -1);
    EXPECT_EQ(out.str(), text);
  }
}

}  // namespace
