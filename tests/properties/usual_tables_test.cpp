// Most databases have one sitechan row for a channel as long as place, direction and depth stay, and tell its epochs by
// the rows of the other tables. They give the same documents as databases with a row for each epoch.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "properties/databases.h"
#include "properties/xml_reader.h"

namespace triglub_properties {

namespace {

constexpr const char* kShared = TRIGLUB_SOURCE_DIR "/../shared/data/";

std::string shared_prefix(const std::string& name) { return kShared + name + "/" + name; }

bool is_there(const std::string& name) { return std::filesystem::exists(shared_prefix(name) + ".sitechan"); }

long count_of_channels(const std::string& document) {
  const Element root = read_xml(document);
  std::size_t count = 0;
  for (const Element* network : root.all("Network")) {
    for (const Element* station : network->all("Station")) count += station->all("Channel").size();
  }
  return static_cast<long>(count);
}

long day_of(const Row& row, const char* name) { return std::stol(row.at(name)); }

bool is_same_channel(const Row& first, const Row& second) {
  const char* fields[] = {"sta", "chan", "ctype", "edepth", "hang", "vang", "descrip"};
  return std::all_of(std::begin(fields), std::end(fields),
                     [&](const char* field) { return first.at(field) == second.at(field); });
}

// True when the station came to another place after the one row of sitechan began, and before or when the other did.
bool moved_between(const std::vector<Row>& sites, const Row& first, const Row& second) {
  return std::any_of(sites.begin(), sites.end(), [&](const Row& site) {
    return site.at("sta") == first.at("sta") && day_of(site, "ondate") > day_of(first, "ondate") &&
           day_of(site, "ondate") <= day_of(second, "ondate");
  });
}

// Rows of sitechan, those that say the same of a channel in one.
struct PutTogether {
  std::map<std::pair<std::string, std::string>, Row> last;  // by sta and chan
  std::map<std::string, std::string> chanids;               // old to new
  std::map<std::string, Row> rows;                          // by new chanid

  // To be called in the order of ondate.
  void add(const Row& row, const std::vector<Row>& sites) {
    const auto [found, is_new] = last.try_emplace({row.at("sta"), row.at("chan")}, row);
    Row& standing = found->second;
    const bool goes_on = is_same_channel(standing, row) && !moved_between(sites, standing, row);
    if (!is_new && goes_on) standing["offdate"] = row.at("offdate");
    if (!goes_on) standing = row;
    chanids[row.at("chanid")] = standing.at("chanid");
    rows[standing.at("chanid")] = standing;
  }
};

Database put_together(Database database) {
  std::vector<Row>& sitechans = database.tables.rows["sitechan"];
  std::stable_sort(sitechans.begin(), sitechans.end(),
                   [](const Row& a, const Row& b) { return day_of(a, "ondate") < day_of(b, "ondate"); });
  PutTogether together;
  for (const Row& row : sitechans) together.add(row, database.tables.rows["site"]);
  sitechans.clear();
  for (const auto& [chanid, row] : together.rows) sitechans.push_back(row);
  for (Row& sensor : database.tables.rows["sensor"]) sensor["chanid"] = together.chanids.at(sensor.at("chanid"));
  return database;
}

// Documents are too long to be shown, or compared line by line.
void expect_equal(const std::string& document, const std::string& other) {
  const auto [at, ignored] = std::mismatch(document.begin(), document.end(), other.begin(), other.end());
  const std::size_t place = static_cast<std::size_t>(at - document.begin());
  EXPECT_TRUE(document == other) << "from byte " << place << ": " << document.substr(place, 100) << "\nagainst\n"
                                 << other.substr(place, 100);
}

TEST(UsualTables, GiveTheDocumentOfOneRowForEachEpoch) {
  if (!is_there("merged") || !is_there("observatories")) GTEST_SKIP() << "there is no " << kShared;
  const std::string merged = shipped_document(read_database(shared_prefix("merged")));
  EXPECT_EQ(count_of_channels(merged), 18);
  expect_equal(merged, shipped_document(read_database(shared_prefix("observatories"))));
}

TEST(UsualTables, GiveTheDocumentOfAStationThatMoves) {
  if (!is_there("moved")) GTEST_SKIP() << "there is no " << kShared;
  const Database moved = read_database(shared_prefix("moved"));
  const Database together = put_together(moved);
  EXPECT_LT(together.tables.rows.at("sitechan").size(), 60u);
  const std::string document = shipped_document(moved);
  EXPECT_EQ(count_of_channels(document), 72);
  expect_equal(document, shipped_document(together));
}

TEST(UsualTables, GiveTheDocumentOfTheExample) {
  const Database example = read_database(TRIGLUB_SOURCE_DIR "/examples/observatory/observatory");
  const std::string document = shipped_document(example);
  EXPECT_EQ(count_of_channels(document), 64);
  expect_equal(document, shipped_document(put_together(example)));
}

}  // namespace

}  // namespace triglub_properties
