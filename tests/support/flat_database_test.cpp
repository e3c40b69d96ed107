#include "support/flat_database.h"

#include <gtest/gtest.h>

#include "support/file_text.h"

using triglub_test::file_text;
using triglub_test::flat_row;
using triglub_test::flat_schema;
using triglub_test::FlatDatabase;

namespace {

TEST(FlatDatabase, WritesTextsAtTheLeftAndNumbersAtTheRight) {
  EXPECT_EQ(flat_row("affiliation", {{"net", "KR"}, {"sta", "AAK"}, {"lddate", "1700000000.00000"}}),
            "KR       AAK     1700000000.00000");
}

TEST(FlatDatabase, FillsWhatIsNotGivenWithNullTexts) {
  EXPECT_EQ(flat_row("snetsta", {}), "-        -      -      -               -9999999999.99900");
}

TEST(FlatDatabase, LeavesAFieldBlankForAnEmptyValue) {
  EXPECT_EQ(flat_row("affiliation", {{"sta", ""}}), "-               -9999999999.99900");
}

TEST(FlatDatabase, HasRowsOfTheSchemasLengths) {
  const std::map<std::string, std::size_t> lengths = {
      {"site", 155},       {"sitechan", 140}, {"sensor", 139},  {"instrument", 239},  {"network", 137},
      {"affiliation", 33}, {"snetsta", 56},   {"schanloc", 67}, {"calibration", 175}, {"stage", 318},
  };
  ASSERT_EQ(lengths.size(), flat_schema().size());
  for (const auto& [table, length] : lengths) EXPECT_EQ(flat_row(table, {}).size(), length) << table;
}

TEST(FlatDatabase, RefusesWhatTheSchemaDoesNotHold) {
  EXPECT_THROW(flat_row("nothing", {}), std::runtime_error);
  EXPECT_THROW(flat_row("site", {{"chan", "BHZ"}}), std::runtime_error);
  EXPECT_THROW(flat_row("site", {{"sta", "SEVENCH"}}), std::runtime_error);
}

TEST(FlatDatabase, WritesItsFilesAndRemovesThem) {
  std::string folder;
  {
    FlatDatabase files("aak");
    folder = files.folder();
    files.add_row("snetsta", {{"snet", "KR"}});
    files.add_row("snetsta", {{"snet", "II"}});
    files.add_line("site", "too short");
    EXPECT_EQ(files.write(), folder + "/aak");
    EXPECT_EQ(files.write_file("resp/a.paz", "text"), folder + "/resp/a.paz");
    EXPECT_EQ(file_text(files.prefix() + ".site"), "too short\n");
    EXPECT_EQ(file_text(files.prefix() + ".snetsta"),
              flat_row("snetsta", {{"snet", "KR"}}) + "\n" + flat_row("snetsta", {{"snet", "II"}}) + "\n");
    EXPECT_EQ(file_text(folder + "/resp/a.paz"), "text");
  }
  EXPECT_FALSE(std::filesystem::exists(folder));
}

}  // namespace
