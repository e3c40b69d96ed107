// Records as documents get them: their order, their totals, and which are chosen.
#include "epochs/record_view.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "fatal_failure.h"
#include "platform/columns.h"
#include "platform/record_expression.h"
#include "support/collected_log.h"
#include "support/made_database.h"

namespace triglub {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;
using triglub_test::at_hour;
using triglub_test::FieldTexts;
using triglub_test::MadeDatabase;
using triglub_test::MadeRows;

// Texts stay where they are; the array refers to them.
class Conditions {
 public:
  explicit Conditions(FieldTexts patterns) : patterns_(std::move(patterns)) {
    for (auto& [field, pattern] : patterns_) setarr(array_, field.c_str(), pattern.data());
  }
  ~Conditions() { freearr(array_, nullptr); }
  Conditions(const Conditions&) = delete;
  Conditions& operator=(const Conditions&) = delete;
  rbtree* array() const { return array_; }

 private:
  FieldTexts patterns_;
  rbtree* array_ = newarr(nullptr);
};

struct Wanted {
  FieldTexts conditions;
  bool with_empty_networks = false;
};

// The text of an expression at each record of the view.
std::vector<std::string> values_of(const MadeDatabase& made, const Wanted& wanted, const char* expression) {
  const Conditions conditions(wanted.conditions);
  Findings findings;
  const Dbptr view = make_record_view(made.db(), {conditions.array(), wanted.with_empty_networks}, &findings).view;
  const auto compiled = RecordExpression::compile(view, expression, nullptr);
  std::vector<std::string> values;
  for (std::uint32_t i = 0; i < rows_of(view, kSitechan).size(); ++i) {
    RecordValue value;
    EXPECT_TRUE(compiled->evaluate_text(i, {.first = i, .count = 1}, &value));
    values.emplace_back(value.is_null ? "null" : value.text);
  }
  release_view(view);
  return values;
}

constexpr const char* kWho =
    "concat(is_null(snet) ? network.net : snet, '.', fsta, ' ', site.sta, ' ', site.ondate, ' ', sitechan.chan, ' ', "
    "epoch.time, ' ', stage.stageid)";

TEST(Records, AreByNetworkStationPlaceChannelTimeAndStage) {
  const MadeDatabase made({{"site", {{"sta", "B"}}},
                           {"site", {{"sta", "A"}, {"ondate", "2000002"}}},
                           {"site", {{"sta", "A"}, {"offdate", "2000001"}}},
                           {"site", {{"sta", "C"}}},
                           {"snetsta", {{"snet", "Z"}, {"fsta", "X"}, {"sta", "B"}}},
                           {"snetsta", {{"snet", "Z"}, {"fsta", "X"}, {"sta", "A"}}},
                           {"snetsta", {{"snet", "K"}, {"fsta", "C"}, {"sta", "C"}}},
                           {"sitechan", {{"sta", "A"}, {"chan", "N"}, {"ondate", "2000001"}}},
                           {"sitechan", {{"sta", "A"}, {"chan", "E"}, {"ondate", "2000002"}}},
                           {"sitechan", {{"sta", "B"}}},
                           {"stage", {{"sta", "B"}, {"stageid", "10"}}},
                           {"stage", {{"sta", "B"}, {"stageid", "9"}}}});
  EXPECT_THAT(values_of(made, {}, kWho),
              ElementsAre("K.C C    ",                          // a place without channels
                          "Z.X A  N 946684800 ",                // the first place
                          "Z.X A 2000002 E 946771200 ",         // the second
                          "Z.X A 2000002 N 946771200 ",         //
                          "Z.X B  BHZ  9", "Z.X B  BHZ  10"));  // stages by number
}

TEST(Records, EachCodeOfAStationHasThemAll) {
  const MadeDatabase made({{"site", {}},
                           {"sitechan", {}},
                           {"snetsta", {{"snet", "II"}}},
                           {"snetsta", {}},
                           {"snetsta", {{"fsta", "AAK2"}}}});
  EXPECT_THAT(values_of(made, {}, "concat(snet, '.', fsta, '.', chan)"),
              ElementsAre("II.AAK.BHZ", "KR.AAK.BHZ", "KR.AAK2.BHZ"));
}

TEST(Records, PartnersThatAreNotThereReadAsNull) {
  const MadeDatabase made({{"site", {}}, {"sitechan", {}}, {"snetsta", {}}});
  for (const char* field :
       {"loc", "netname", "sensor.time", "insname", "calib", "gnom", "epoch.time", "epoch.endtime"}) {
    EXPECT_THAT(values_of(made, {}, field), ElementsAre("null")) << field;
  }
}

const MadeRows kThreePlaces = {
    {"network", {{"net", "KR"}}},
    {"network", {{"net", "ZZ"}}},
    {"snetsta", {}},
    {"snetsta", {{"fsta", "TKM"}, {"sta", "TKM"}}},
    {"snetsta", {{"fsta", "NIL"}, {"sta", "NIL"}}},
    {"site", {{"ondate", "2000001"}, {"offdate", "2000002"}, {"staname", "first"}}},
    {"site", {{"ondate", "2000011"}, {"offdate", "2000020"}, {"staname", "second"}}},
    {"site", {{"sta", "TKM"}, {"ondate", "1999001"}, {"offdate", "2000001"}, {"staname", "bare"}}},
    {"sitechan", {{"chan", "BHE"}, {"ondate", "2000001"}, {"offdate", "2000003"}}},
    {"sitechan", {{"chan", "BHZ"}, {"ondate", "2000001"}, {"offdate", "2000002"}}},
    {"sitechan", {{"chan", "BHZ"}, {"ondate", "2000011"}, {"offdate", "2000020"}}},
    {"schanloc", {{"chan", "BHE"}, {"fchan", "BHE"}, {"loc", "00"}}},
};

TEST(Records, AStationIsWidenedByTheEpochsThatAreChosen) {
  const MadeDatabase made(kThreePlaces);
  const char* station = "concat(staname, ' ', chan, ' ', station_epoch.channels, ' ', station_epoch.endtime)";
  EXPECT_THAT(values_of(made, {}, station), ElementsAre("first BHE 2 946944000", "first BHZ 2 946944000",
                                                        "second BHZ 1 948412800", "bare  0 946771200"));
  EXPECT_THAT(values_of(made, {{{"sitechan.chan", "/BHZ/"}}}, station),
              ElementsAre("first BHZ 2 946857600", "second BHZ 1 948412800"));
}

TEST(Records, ANetworkCountsItsStationsAndSpansTheirPlacesWhateverIsChosen) {
  const MadeDatabase made(kThreePlaces);
  const char* network = "concat(network_epoch.stations, ' ', network_epoch.time, ' ', network_epoch.endtime)";
  EXPECT_THAT(values_of(made, {{{"site.staname", "/second/"}}}, network), ElementsAre("2 915148800 948412800"));
}

struct ChoiceCase {
  const char* what;
  Wanted wanted;
  std::vector<std::string> records;
};

const ChoiceCase kChoices[] = {
    {"everything", {}, {"KR first BHE", "KR first BHZ", "KR second BHZ", "KR bare "}},
    {"networks without stations where they are wanted",
     {{}, true},
     {"KR first BHE", "KR first BHZ", "KR second BHZ", "KR bare ", "ZZ  "}},
    {"a field of site", {{{"site.staname", "/f.*|bare/"}}}, {"KR first BHE", "KR first BHZ", "KR bare "}},
    {"a field of channels leaves out places without them",
     {{{"site.staname", "/f.*|bare/"}, {"sitechan.chan", "/.*/"}}},
     {"KR first BHE", "KR first BHZ"}},
    {"so does a time of the epoch, whatever it asks for",
     {{{"epoch.time", "/.*/"}}},
     {"KR first BHE", "KR first BHZ", "KR second BHZ"}},
    {"a null text is what the schema has", {{{"schanloc.loc", "/-/"}}}, {"KR first BHZ", "KR second BHZ"}},
    {"a field of network keeps networks without stations", {{{"network.net", "/ZZ/"}}, true}, {"ZZ  "}},
    {"another does not",
     {{{"snetsta.snet", "/.*/"}}, true},
     {"KR first BHE", "KR first BHZ", "KR second BHZ", "KR bare "}},
    {"all conditions hold", {{{"sitechan.chan", "/BHE/"}, {"site.staname", "/second/"}}}, {}},
    {"a bare name is of the first table that has it", {{{"chan", "/BHE/"}}}, {"KR first BHE"}},
    {"texts match whole", {{{"chan", "/BH/"}}}, {}},
};

TEST(Records, AreChosenByConditions) {
  const MadeDatabase made(kThreePlaces);
  for (const ChoiceCase& c : kChoices) {
    EXPECT_THAT(values_of(made, c.wanted, "concat(network.net, ' ', staname, ' ', chan)"), ElementsAreArray(c.records))
        << c.what;
  }
}

TEST(Records, AnEpochWithoutAnEndIsChosenByTheTextThatTablesHaveForIt) {
  const MadeDatabase made({{"site", {}},
                           {"snetsta", {}},
                           {"sitechan", {{"chan", "BHE"}, {"offdate", "2000001"}}},
                           {"sitechan", {{"chan", "BHZ"}}}});
  EXPECT_THAT(values_of(made, {{{"epoch.endtime", "/9999999999\\.99900/"}}}, "chan"), ElementsAre("BHZ"));
  EXPECT_THAT(values_of(made, {{{"epoch.time", "/-9999999999\\.99900/"}}}, "chan"), ElementsAre("BHE", "BHZ"));
}

TEST(Records, AConditionThatDoesNotCompileIsRefusedWithAGuess) {
  const MadeDatabase made(kThreePlaces);
  try {
    values_of(made, {{{"site.stanam", "/x/"}}}, "chan");
    FAIL() << "no failure";
  } catch (const FatalFailure& failure) {
    EXPECT_THAT(failure.what(), StartsWith("a condition cannot be used: "));
    EXPECT_THAT(failure.what(), HasSubstr("staname"));
  }
}

TEST(Records, APatternThatIsNoneIsRefused) {
  const MadeDatabase made(kThreePlaces);
  const triglub_test::CollectedLog log;
  EXPECT_THROW(values_of(made, {{{"site.staname", "/(/"}}}, "chan"), FatalFailure);
}

TEST(Records, ChosenRowsMayBeChangedBeforeTheViewIsMade) {
  const MadeDatabase made(kThreePlaces);
  RecordChoice choice;
  choice.amend = [](const ResponseTables&, RecordRows* rows) {
    for (std::vector<std::uint32_t>& column : rows->rows) column.resize(1);
  };
  Findings findings;
  const Dbptr view = make_record_view(made.db(), choice, &findings).view;
  EXPECT_EQ(rows_of(view, kSitechan).size(), 1U);
  release_view(view);
}

TEST(Records, TheViewForNamesHasAllTablesAndNoRecord) {
  const MadeDatabase made(kThreePlaces);
  const Dbptr view = make_empty_record_view(made.db());
  EXPECT_THAT(rows_of(view, kNetworkEpoch), IsEmpty());
  for (const char* table : kRecordTableNames) {
    const bool is_epoch = std::string(table).ends_with("epoch");
    const bool is_chain = std::string(table) == "chain";
    const std::string field = std::string(table) + (is_chain ? ".number" : is_epoch ? ".time" : ".lddate");
    EXPECT_NE(RecordExpression::compile(view, field, nullptr), nullptr) << field;
  }
  release_view(view);
}

}  // namespace
}  // namespace triglub
