// Tables of which only some rows are wanted, from each source.
#include "engine/table/row_conditions.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "built_table.h"
#include "engine/source/memory/memory_source.h"
#include "engine/source/open/open_source.h"
#include "tables.h"

namespace triglub_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using triglub::RowConditions;

enum class From { flat, memory };

class ConditionsOf : public ::testing::TestWithParam<From> {
 protected:
  // The rows of `site` that are loaded; null when the table is refused.
  std::unique_ptr<const triglub::Table> load(const std::vector<Row>& rows, const RowConditions& conditions) {
    if (GetParam() == From::memory) {
      source_ = std::make_shared<triglub::MemorySource>("m", triglub::MemorySource::Tables{{"site", rows}});
    } else {
      for (const Row& row : rows) files_.add_row("site", row);
      source_ = triglub::open_source(files_.write());
    }
    const triglub::Schema& schema = *source_->schema();
    const auto& site = schema.tables()[static_cast<std::size_t>(schema.find("site"))];
    place_ = source_->table_place(site) + (GetParam() == From::memory ? " row " : ":");
    return source_->load(site, conditions);
  }

  static std::vector<Row> rows() {
    return {{{"sta", "AAK"}, {"ondate", "1990001"}, {"lat", "42.5"}},
            {{"sta", "ANMO"}, {"ondate", "1990001"}, {"lat", "34.5"}},
            {{"sta", "AAK"}, {"ondate", "2000001"}, {"lat", "42.5"}},
            {{"sta", ""}, {"ondate", ""}},
            {{"sta", "Z\xFC"}, {"ondate", "2000001"}, {"staname", "longer"}}};
  }
  Texts taken(const RowConditions& conditions) {
    const auto table = load(rows(), conditions);
    Texts places;
    for (std::uint32_t row = 0; row < table->row_count(); ++row) {
      places.push_back(table->place_of(row).substr(place_.size()) + " " + std::string(table->text(0, row)));
    }
    return places;
  }

  FlatDatabase files_;
  std::shared_ptr<const triglub::Source> source_;
  std::string place_;
  CollectedLog log_;
};

INSTANTIATE_TEST_SUITE_P(Sources, ConditionsOf, ::testing::Values(From::flat, From::memory),
                         [](const auto& from) { return from.param == From::flat ? "Flat" : "Memory"; });

TEST_P(ConditionsOf, NothingTakeEveryRow) {
  EXPECT_THAT(taken({}), ElementsAre("1 AAK", "2 ANMO", "3 AAK", "4 -", "5 Z\xC3\xBC"));
}
TEST_P(ConditionsOf, OneFieldTakeItsTexts) { EXPECT_THAT(taken({{"sta", {"AAK"}}}), ElementsAre("1 AAK", "3 AAK")); }
TEST_P(ConditionsOf, SeveralTextsTakeAnyOfThem) {
  EXPECT_THAT(taken({{"sta", {"ANMO", "Z\xC3\xBC", "NONE"}}}), ElementsAre("2 ANMO", "5 Z\xC3\xBC"));
}
TEST_P(ConditionsOf, NoTextTakeNothing) { EXPECT_THAT(taken({{"sta", {}}}), IsEmpty()); }
TEST_P(ConditionsOf, ANullTakeItsNullText) {
  EXPECT_THAT(taken({{"sta", {"-"}}}), ElementsAre("4 -"));
  EXPECT_THAT(taken({{"sta", {""}}}), IsEmpty());
}
TEST_P(ConditionsOf, NumbersTakeTheirTexts) {
  EXPECT_THAT(taken({{"ondate", {"2000001", "-1"}}}), ElementsAre("3 AAK", "4 -", "5 Z\xC3\xBC"));
}
TEST_P(ConditionsOf, RealsTakeTheirTexts) {
  EXPECT_THAT(taken({{"lat", {"42.5", "-999.0000"}}}), ElementsAre("1 AAK", "3 AAK", "4 -", "5 Z\xC3\xBC"));
}
TEST_P(ConditionsOf, SeveralFieldsTakeWhatMeetsEach) {
  EXPECT_THAT(taken({{"sta", {"AAK"}}, {"ondate", {"2000001"}}}), ElementsAre("3 AAK"));
}

TEST_P(ConditionsOf, RowsLeaveValuesAsTheyAre) {
  const auto table = load(rows(), {{"ondate", {"2000001"}}});
  EXPECT_THAT(column_texts(*table, "sta"), ElementsAre("AAK", "Z\xC3\xBC"));
  EXPECT_THAT(column_texts(*table, "lat"), ElementsAre("42.5", "-999.0000"));
  EXPECT_THAT(column_texts(*table, "staname"), ElementsAre("-", "longer"));
  EXPECT_EQ(table->place_of(1), place_ + "5");
}

TEST_P(ConditionsOf, RowsRefuseATableForAFaultInAnyRow) {
  std::vector<Row> faulty = rows();
  faulty[1]["lat"] = "north";
  EXPECT_EQ(load(faulty, {{"sta", {"AAK"}}}), nullptr);
  EXPECT_THAT(log_.lines(), ElementsAre("warning: " + place_ + "2: field site.lat: expected a number, found 'north'",
                                        ::testing::HasSubstr("table site is not loaded")));
}

TEST_P(ConditionsOf, AFieldThatIsNotThereAreReported) {
  EXPECT_EQ(load(rows(), {{"net", {"A"}}}), nullptr);
  EXPECT_THAT(log_.lines(), ElementsAre("warning: table site has no field 'net' to choose rows by"));
}

TEST_P(ConditionsOf, ATableWithoutRowsTakeNothing) {
  load({{}}, {});  // so that there is a database
  const triglub::Schema& schema = *source_->schema();
  const auto& network = schema.tables()[static_cast<std::size_t>(schema.find("network"))];
  EXPECT_EQ(source_->load(network, {{"net", {"A"}}})->row_count(), 0u);
  EXPECT_EQ(source_->load(network, {{"sta", {"A"}}}), nullptr);
}

// A file's lines may be of any lengths.
TEST(RowConditions, FindTheDigitsOfTheRowsThatAreLeft) {
  for (const std::string& padding : Texts{"", "   "}) {
    const FlatDatabase files;
    std::string bytes;
    for (int i = 0; i < 100; ++i) {
      bytes += flat_row("affiliation", {{"net", "N" + std::to_string(i % 3)}, {"lddate", std::to_string(i) + ".0"}}) +
               (i % 2 == 0 ? padding : "") + "\n";
    }
    files.write_file("db.affiliation", bytes);
    const auto source = triglub::open_source(files.prefix());
    const auto table = source->load(source->schema()->tables()[5], {{"net", {"N1"}}});
    ASSERT_EQ(table->row_count(), 33u);
    for (std::uint32_t row = 0; row < 33; ++row) EXPECT_EQ(table->text(2, row), std::to_string(row * 3 + 1) + ".0");
  }
}

}  // namespace
}  // namespace triglub_test
