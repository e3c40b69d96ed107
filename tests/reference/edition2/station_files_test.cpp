// The plain form's epochs of databases that are kept as files.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "reference/edition2/epochs.h"
#include "support/flat_database.h"

namespace triglub_reference::edition2 {

namespace {

Row row_in(const std::string& line, const triglub_test::FlatTable& fields) {
  Row row;
  std::size_t at = 0;
  for (const triglub_test::FlatField& field : fields) {
    row[field.name] = at < line.size() ? line.substr(at, field.width) : "";
    at += field.width + 1;
  }
  return row;
}

Tables tables_in(const std::string& prefix) {
  Tables tables;
  for (const auto& [table, fields] : triglub_test::flat_schema()) {
    std::ifstream file(prefix + "." + table);
    for (std::string line; std::getline(file, line);) tables.rows[table].push_back(row_in(line, fields));
  }
  return tables;
}

struct Case {
  const char* database;
  std::size_t epochs;
};

class EpochsOfFiles : public testing::TestWithParam<Case> {};

TEST_P(EpochsOfFiles, AreAsManyAsTheStationsHad) {
  const std::string prefix = std::string(TRIGLUB_SOURCE_DIR) + "/" + GetParam().database;
  if (!std::filesystem::exists(prefix + ".site")) GTEST_SKIP() << "no database " << prefix;
  EXPECT_EQ(channel_epochs(tables_in(prefix)).size(), GetParam().epochs);
}

// "merged" has the stations of "observatories", its epochs told apart by sensor, calibration and stage rows only.
INSTANTIATE_TEST_SUITE_P(PlainForm, EpochsOfFiles,
                         testing::Values(Case{"examples/observatory/observatory", 64},
                                         Case{"../shared/data/observatories/observatories", 18},
                                         Case{"../shared/data/merged/merged", 18},
                                         Case{"../shared/data/moved/moved", 72}),
                         [](const auto& info) {
                           return std::filesystem::path(info.param.database).filename().string();
                         });

}  // namespace

}  // namespace triglub_reference::edition2
