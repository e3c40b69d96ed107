// Databases that lack rows of snetsta, calibration and stage: what is made of affiliation and instrument instead.
#include <gmock/gmock.h>

#include <fstream>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "epochs/record_view.h"
#include "platform/columns.h"
#include "platform/record_expression.h"
#include "platform/sources.h"
#include "support/made_database.h"

namespace triglub {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using triglub_test::at_hour;
using triglub_test::FieldTexts;
using triglub_test::kb_core_row;
using triglub_test::MadeDatabase;
using triglub_test::MadeRows;

// The records of a database, with what was told.
class Made {
 public:
  Made(Dbptr db, const std::string& units) {
    RecordChoice choice;
    choice.calibration_units = units;
    view_ = make_record_view(db, choice, &findings_);
  }
  explicit Made(const MadeDatabase& database, const std::string& units = "m") : Made(database.db(), units) {}
  ~Made() { release(view_); }
  Made(const Made&) = delete;
  Made& operator=(const Made&) = delete;

  std::vector<std::string> values(const char* expression) const {
    std::string fault;
    const auto compiled = RecordExpression::compile(view_.view, expression, &fault);
    EXPECT_NE(compiled, nullptr) << fault;
    std::vector<std::string> values;
    for (std::uint32_t i = 0; i < rows_of(view_.view, kSitechan).size(); ++i) {
      RecordValue value;
      EXPECT_TRUE(compiled->evaluate_text(i, {.first = i, .count = 1}, &value));
      values.emplace_back(value.is_null ? "null" : value.text);
    }
    return values;
  }
  std::string place(RecordTable table, std::uint32_t record) const { return row_place(view_.view, table, record); }
  const ResponseTables& tables() const { return view_.tables; }
  const Findings& findings() const { return findings_; }

 private:
  Findings findings_;
  RecordView view_;
};

const MadeRows kStation = {{"site", {}}, {"sitechan", {}}};

MadeRows with(MadeRows rows, const MadeRows& more) {
  rows.insert(rows.end(), more.begin(), more.end());
  return rows;
}

// --- codes ----------------------------------------------------------------------------------------------------------

TEST(CoreTables, AStationWithoutCodesHasThoseOfItsNetworks) {
  const MadeDatabase made(with(kStation, {{"affiliation", {{"net", "II"}}},
                                          {"affiliation", {{"net", "KR"}}},
                                          {"affiliation", {{"net", "II"}}},
                                          {"affiliation", {{"net", "-"}}},
                                          {"affiliation", {{"net", "XX"}, {"sta", "ELSE"}}},
                                          {"network", {{"net", "KR"}, {"netname", "Kyrgyz"}}}}));
  const Made records(made);
  EXPECT_THAT(records.values("concat(snet, \".\", fsta)"), ElementsAre("II.AAK", "KR.AAK"));
  EXPECT_THAT(records.values("netname"), ElementsAre("null", "Kyrgyz"));
  EXPECT_EQ(made.shortened(records.place(kSnetsta, 0)), "affiliation:1");
  EXPECT_EQ(made.shortened(records.place(kSnetsta, 1)), "affiliation:2");
  EXPECT_THAT(made.lines_of(records.findings()), IsEmpty());
}

TEST(CoreTables, AStationWithCodesHasThese) {
  const MadeDatabase made(with(kStation, {{"affiliation", {{"net", "II"}}}, {"snetsta", {{"fsta", "X"}}}}));
  EXPECT_THAT(Made(made).values("concat(snet, \".\", fsta)"), ElementsAre("KR.X"));
}

TEST(CoreTables, AStationWithoutEitherIsLeftOutAndTold) {
  const MadeDatabase made(kStation);
  const Made records(made);
  EXPECT_THAT(records.values("sta"), IsEmpty());
  EXPECT_THAT(made.lines_of(records.findings()),
              ElementsAre(HasSubstr("no row of snetsta or affiliation has their station: 1 (site:1)"),
                          HasSubstr("no row of snetsta or affiliation has their station: 1 (sitechan:1)")));
}

// KB Core has times of memberships.
TEST(CoreTables, AMembershipHoldsForItsTime) {
  triglub_test::FlatDatabase files;
  files.add_line("site", kb_core_row("site", {{"sta", "AAK"}}));
  for (const auto& [on, off] : std::vector<std::pair<const char*, const char*>>{
           {"2000001", "2000365"}, {"2001001", "2001365"}, {"2002001", "2002365"}}) {
    files.add_line("sitechan",
                   kb_core_row("sitechan", {{"sta", "AAK"}, {"chan", "BHZ"}, {"ondate", on}, {"offdate", off}}));
  }
  // In II to the middle of 2000, in KR for all of 2001.
  files.add_line("affiliation",
                 kb_core_row("affiliation", {{"net", "II"}, {"sta", "AAK"}, {"endtime", "960000000.0"}}));
  files.add_line(
      "affiliation",
      kb_core_row("affiliation",
                  {{"net", "KR"}, {"sta", "AAK"}, {"time", "978307200.00000"}, {"endtime", "1009843200.00000"}}));
  Dbptr db;
  ASSERT_EQ(dbopen(files.write().c_str(), "r", &db), 0);
  {
    const Made records(db, "m");
    EXPECT_THAT(records.values("concat(snet, \" \", ondate)"), ElementsAre("II 2000001", "KR 2001001"));
    ASSERT_EQ(records.findings().all().size(), 1u);
    EXPECT_THAT(records.findings().all()[0].what, HasSubstr("no row of affiliation holds at their time"));
    EXPECT_THAT(records.findings().all()[0].places, ElementsAre(testing::EndsWith("sitechan:3")));
  }
  dbclose(db);
}

// --- calibrations ---------------------------------------------------------------------------------------------------

MadeRows with_instrument(FieldTexts instrument, FieldTexts sensor = {{"calratio", "1.002"}}) {
  instrument.insert({"inid", "1"});
  sensor.insert({"inid", "1"});
  return with(kStation, {{"snetsta", {}}, {"sensor", sensor}, {"instrument", instrument}});
}

constexpr const char* kOfCalibration =
    "concat(calib, \" \", calibration.calper, \" \", calibration.samprate, \" \", units)";

TEST(CoreTables, AnInstrumentTellsTheCalibration) {
  struct Case {
    MadeRows rows;
    const char* values;
  };
  for (const Case& one : std::vector<Case>{
           {with_instrument({{"ncalib", "0.063500"}, {"ncalper", "1.0"}, {"samprate", "50.0"}, {"rsptype", "V"}}),
            "0.063627 1 50 m/s"},
           {with_instrument({{"ncalib", "0.063500"}, {"ncalper", "1.0"}, {"rsptype", "vel"}}, {{"calper", "20.0"}}),
            "0.0635 20  m/s"},
           {with_instrument({{"ncalib", "2400"}, {"ncalper", "1.0"}, {"rsptype", "A"}}, {{"calper", "0.0"}}),
            "2400 1  m/s**2"},
           {with_instrument({{"ncalib", "0.1"}}, {{"calratio", "3"}}), "0.3   Pa"},
           {with_instrument({{"ncalib", "0.100001"}}, {{"calratio", "7.000003"}}), "0.7000073   Pa"},
           {with_instrument({{"ncalib", "1.25"}, {"rsptype", "d"}}, {{"calratio", "1"}}), "1.25   m"},
           {with_instrument({{"ncalib", "1.25"}, {"rsptype", "x"}}, {{"calratio", "1"}}), "1.25   Pa"},
           {with_instrument({{"ncalib", "1.000000"}, {"ncalper", "0.5"}}), "1.002 0.5  Pa"},
       }) {
    const MadeDatabase made(one.rows);
    EXPECT_THAT(Made(made, "Pa").values(kOfCalibration), ElementsAre(one.values));
  }
}

TEST(CoreTables, NothingIsMadeOfAnInstrumentThatDoesNotTell) {
  for (const FieldTexts& instrument :
       {FieldTexts{{"ncalib", "1.000000"}}, FieldTexts{}, FieldTexts{{"ncalib", "0.0"}, {"ncalper", "1"}}}) {
    const MadeDatabase made(with_instrument(instrument));
    EXPECT_THAT(Made(made).values("is_null(units)"), ElementsAre("1"));
  }
}

TEST(CoreTables, ACalibrationThatIsMadeHasTheTimeOfItsEpoch) {
  MadeRows rows = with_instrument({{"ncalib", "2"}}, {{"time", at_hour(1)}, {"endtime", at_hour(9)}});
  rows.push_back({"calibration", {{"time", at_hour(1)}, {"endtime", at_hour(4)}, {"calib", "7"}}});
  const MadeDatabase made(rows);
  const Made records(made);
  EXPECT_THAT(records.values("concat(sta, chan, \" \", calib)"), ElementsAre("AAKBHZ 7", "AAKBHZ 2"));
  EXPECT_THAT(records.values("calibration.time == epoch.time && calibration.endtime == epoch.endtime"),
              ElementsAre("1", "1"));
  EXPECT_EQ(made.shortened(records.place(triglub::kCalibration, 0)), "calibration:1");
  EXPECT_EQ(made.shortened(records.place(triglub::kCalibration, 1)), "instrument:1");
}

// The built-in schema without one field, and rows in its form.
class NarrowDatabase {
 public:
  NarrowDatabase(const std::string& table, const std::string& field) : schema_(triglub_test::flat_schema()) {
    std::erase_if(schema_.at(table), [&](const auto& known) { return known.name == field; });
    files_.write_file("db", "schema ./own.pf\n");
    files_.write_file("own.pf", text_without(table, field));
  }
  void add(const std::string& table, const FieldTexts& values) {
    files_.add_line(table, triglub_test::flat_row(table, values, schema_));
  }
  Dbptr open() {
    Dbptr db;
    if (dbopen(files_.write().c_str(), "r", &db) != 0) throw std::runtime_error("dbopen");
    return db;
  }

 private:
  static std::string text_without(const std::string& table, const std::string& field) {
    std::stringstream text;
    text << std::ifstream(TRIGLUB_SOURCE_DIR "/data/schemas/css3.0.pf").rdbuf();
    std::string schema = text.str();
    const std::size_t line = schema.find("        " + field + " ", schema.find("\n" + table + " &Arr{"));
    return schema.erase(line, schema.find('\n', line) + 1 - line);
  }

  std::map<std::string, triglub_test::FlatTable> schema_;
  triglub_test::FlatDatabase files_;
};

// As if it were null.
TEST(CoreTables, ASchemaOfOnesOwnMayLackWhatTellsTheCalibration) {
  struct Case {
    const char* table;
    const char* field;
    const char* values;
  };
  const FieldTexts instrument = {{"ncalib", "3"}, {"ncalper", "5"}, {"samprate", "50"}, {"rsptype", "V"}};
  for (const Case& one : std::vector<Case>{{"sensor", "calratio", "3 20 50 m/s"},
                                           {"sensor", "calper", "6 5 50 m/s"},
                                           {"instrument", "ncalper", "6 20 50 m/s"},
                                           {"instrument", "samprate", "6 20  m/s"},
                                           {"instrument", "rsptype", "6 20 50 Pa"},
                                           {"instrument", "ncalib", "   "}}) {
    NarrowDatabase files(one.table, one.field);
    const auto add = [&](const char* table, FieldTexts values, const FieldTexts& more = {}) {
      values.insert(more.begin(), more.end());
      if (one.table == std::string_view(table)) values.erase(one.field);
      files.add(table, values);
    };
    const FieldTexts channel = {{"sta", "AAK"}, {"chan", "BHZ"}};
    add("site", {{"sta", "AAK"}, {"ondate", "1990001"}});
    add("snetsta", {{"snet", "KR"}, {"fsta", "AAK"}, {"sta", "AAK"}});
    add("sitechan", channel, {{"ondate", "2000001"}});
    add("sensor", channel, {{"time", "946684800.0"}, {"inid", "1"}, {"calratio", "2"}, {"calper", "20"}});
    add("instrument", instrument, {{"inid", "1"}});
    const Dbptr db = files.open();
    EXPECT_THAT(Made(db, "Pa").values(kOfCalibration), ElementsAre(one.values)) << one.field;
    dbclose(db);
  }
}

TEST(CoreTables, ACalibrationThatIsMadeHasNoEndWhereItsEpochHasNone) {
  const MadeDatabase made(with_instrument({{"ncalib", "2"}}));
  EXPECT_THAT(Made(made).values("is_null(calibration.endtime)"), ElementsAre("1"));
}

// --- stages ---------------------------------------------------------------------------------------------------------

const FieldTexts kFiles = {{"resp/all",
                            "theoretical 1 i paz\n1\n0\n0\n"
                            "theoretical 2 i paz\n1\n0\n0\n"
                            "theoretical 3 i fir\n400\n1\n1\n0\n"
                            "theoretical 4 i iir\n100\n1\n1\n1\n1\n"},
                           {"resp/rates",
                            "theoretical 1 i fir\n400\n1\n1\n0\n"
                            "theoretical 2 i fir\n100\n1\n1\n0\n"
                            "theoretical 3 i fir\n20\n1\n1\n0\n"},
                           {"resp/none", "theoretical 1 i fir\n0\n1\n1\n0\n"},
                           {"resp/one", "theoretical 1 i fap\n1\n1 1 0\n"},
                           {"resp/empty", "# nothing yet\n"}};

FieldTexts naming(const char* file) {
  return {{"ncalib", "0.4"}, {"ncalper", "1"}, {"samprate", "50.0"},
          {"rsptype", "V"},  {"dir", "resp"},  {"dfile", file}};
}

TEST(CoreTables, AnInstrumentsFileTellsTheStages) {
  const MadeDatabase made(with_instrument(naming("all"), {{"calratio", "1"}}), kFiles);
  const Made records(made);
  EXPECT_THAT(records.values("concat(stageid, \" \", chain.number, \" \", gtype, \" \", gnom)"),
              ElementsAre("1 1 paz 2.5e+09", "2 2 paz 1", "3 3 fir 1", "4 4 iir 1"));
  EXPECT_THAT(records.values("concat(iunits, \" \", ounits)"), ElementsAre("m/s V", "V V", "V count", "count count"));
  EXPECT_THAT(records.values("decifac"), ElementsAre("null", "null", "4", "2"));
  EXPECT_THAT(records.values("concat(stage.dir, \"/\", stage.dfile)"), testing::Each("resp/all"));
  EXPECT_EQ(made.shortened(records.place(kStage, 3)), "instrument:1");
  ASSERT_EQ(records.tables().instrument_stages.size(), 4u);
  EXPECT_TRUE(records.tables().instrument_stages[0].is_normalized);
  EXPECT_EQ(records.tables().instrument_stages[3].group, 3u);
  EXPECT_FALSE(records.tables().instrument_stages[3].is_normalized);
}

TEST(CoreTables, RatesGoDownToThatOfTheNextGroupAndOfTheChannel) {
  const auto factors = [](const char* file, const char* rate) {
    FieldTexts instrument = naming(file);
    instrument["samprate"] = rate;
    const MadeDatabase made(with_instrument(instrument), kFiles);
    return Made(made).values("decifac");
  };
  EXPECT_THAT(factors("rates", "10"), ElementsAre("4", "5", "2"));
  EXPECT_THAT(factors("rates", "6.6666667"), ElementsAre("4", "5", "3")) << "2.99999998";
  EXPECT_THAT(factors("rates", "-1.0"), ElementsAre("4", "5", "null")) << "a channel without a rate";
  EXPECT_THAT(factors("rates", "0"), ElementsAre("4", "5", "null"));
  EXPECT_THAT(factors("none", "10"), ElementsAre("null")) << "a filter without a rate";
}

TEST(CoreTables, ACalibrationOfTheDatabaseTellsTheGainWithItsDigits) {
  MadeRows rows = with_instrument(naming("all"));
  rows.push_back({"calibration", {{"calib", "0.063627"}}});
  const MadeDatabase made(rows, kFiles);
  const Made records(made);
  EXPECT_THAT(records.values("gnom"), ElementsAre("15716598300", "1", "1", "1"));
  EXPECT_THAT(records.values("decifac"), ElementsAre("null", "null", "4", "2")) << "by the rate of the instrument";
}

TEST(CoreTables, WithoutACalibrationThereIsNoGain) {
  FieldTexts instrument = naming("one");
  instrument.erase("ncalib");
  instrument.erase("ncalper");
  const MadeDatabase made(with_instrument(instrument), kFiles);
  EXPECT_THAT(Made(made).values("is_null(gnom)"), ElementsAre("1"));
}

TEST(CoreTables, TheLastStageGivesCounts) {
  const MadeDatabase made(with_instrument(naming("one")), kFiles);
  EXPECT_THAT(Made(made).values("concat(iunits, \" \", ounits)"), ElementsAre("m/s count"));
}

// What is wrong with it is told when it is to be written.
TEST(CoreTables, AFileThatCannotBeReadOrHasNothingIsOneStage) {
  for (const char* file : {"nothing", "empty"}) {
    const MadeDatabase made(with_instrument(naming(file)), kFiles);
    EXPECT_THAT(Made(made).values("concat(stageid, \" \", stage.dfile)"), ElementsAre(std::string("1 ") + file));
  }
}

TEST(CoreTables, AnInstrumentsFileIsReadOnce) {
  const MadeDatabase made(with_instrument(naming("all")), kFiles);
  const Made records(made);
  const auto& stages = records.tables().instrument_stages;
  for (const InstrumentStage& stage : stages) EXPECT_EQ(stage.file, stages[0].file);
  EXPECT_EQ(stages[0].file->response->groups.size(), 4u);
}

TEST(CoreTables, StagesOfTheDatabaseAreTheChain) {
  MadeRows rows = with_instrument(naming("all"));
  rows.push_back({"stage", {{"stageid", "1"}, {"gnom", "5"}}});
  const MadeDatabase made(rows, kFiles);
  EXPECT_THAT(Made(made).values("gnom"), ElementsAre("5"));
  EXPECT_THAT(Made(made).tables().instrument_stages, IsEmpty());
}

TEST(CoreTables, EpochsThatShareInstrumentAndCalibrationShareStages) {
  MadeRows rows = with_instrument(naming("all"), {{"endtime", at_hour(4)}, {"calratio", "1"}});
  rows.push_back({"sensor", {{"inid", "1"}, {"time", at_hour(4)}, {"endtime", at_hour(8)}, {"calratio", "1"}}});
  rows.push_back({"sensor", {{"inid", "1"}, {"time", at_hour(8)}, {"calratio", "2"}}});
  const MadeDatabase made(rows, kFiles);
  const Made records(made);
  EXPECT_EQ(records.values("stageid").size(), 12u);
  EXPECT_EQ(records.tables().instrument_stages.size(), 8u);
}

TEST(CoreTables, NothingIsAddedWhereNothingIsMissing) {
  MadeRows rows = with_instrument(naming("all"));
  rows.push_back({"calibration", {{"calib", "1.5"}}});
  rows.push_back({"stage", {{"stageid", "1"}}});
  rows.push_back({"affiliation", {{"net", "II"}}});
  const MadeDatabase made(rows, kFiles);
  const Made records(made);
  EXPECT_EQ(records.tables().stage.table, made.table("stage").table);
  EXPECT_EQ(records.tables().calibration.table, made.table("calibration").table);
}

}  // namespace
}  // namespace triglub
