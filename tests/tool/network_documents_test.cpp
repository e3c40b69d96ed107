// The command's document of one network against one call of the library.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <sstream>

#include "db2stationxml.h"
#include "resp_helper.h"
#include "tests/tool/command.h"

namespace {

constexpr const char* kDeclaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

// A database, a network of it, and whether the library's own order of records keeps the network's station epochs
// together. Where a station moved and kept its channels it does not; the command then puts the records in order first.
struct Case {
  const char* database;
  const char* network;
  bool in_order;
};

std::string library_document(const Case& c) {
  setenv("SOURCE_DATE_EPOCH", "1700000000", 1);
  setenv("TRIGLUB_PFPATH", TRIGLUB_SOURCE_DIR "/data", 1);
  Dbptr db;
  Pf* pf = nullptr;
  EXPECT_EQ(dbopen(c.database, "r", &db), 0);
  EXPECT_EQ(pfread("stationxml-edition1", &pf), 0);
  rbtree* subset = newarr(nullptr);
  const std::string pattern = "/" + std::string(c.network) + "/";
  setarr(subset, "snetsta.snet", pattern.c_str());
  std::ostringstream out;
  db2stationxml(db, pf, subset, out, 0x40);
  freearr(subset, nullptr);
  pffree(pf);
  dbclose(db);
  return out.str();
}

std::string command_document(const Case& c) {
  return triglub_test::run_shell("$TRIGLUB convert -p stationxml-edition1 --subset snetsta.snet=" +
                                 std::string(c.network) + " " + c.database + " 2>/dev/null")
      .output;
}

// The names of the cases: "observatory_XA".
std::string name_of(const testing::TestParamInfo<Case>& info) {
  return std::filesystem::path(info.param.database).filename().string() + "_" + info.param.network;
}

class NetworkDocument : public testing::TestWithParam<Case> {};

TEST_P(NetworkDocument, IsWhatOneCallOfTheLibraryWritesWhereItsOrderKeepsEpochsTogether) {
  const Case& c = GetParam();
  if (!std::filesystem::exists(std::string(c.database) + ".site")) GTEST_SKIP() << "no database " << c.database;
  const std::string library = kDeclaration + library_document(c);
  const std::string command = command_document(c);
  ASSERT_GT(command.size(), 1000u);
  EXPECT_EQ(library == command, c.in_order);
}

constexpr const char* kExample = TRIGLUB_SOURCE_DIR "/examples/observatory/observatory";
constexpr const char* kObservatories = TRIGLUB_SOURCE_DIR "/../shared/data/observatories/observatories";
constexpr const char* kMoved = TRIGLUB_SOURCE_DIR "/../shared/data/moved/moved";

INSTANTIATE_TEST_SUITE_P(Example, NetworkDocument,
                         testing::Values(Case{kExample, "9K", true}, Case{kExample, "XA", true},
                                         Case{kExample, "XB", false}, Case{kExample, "XC", true}),
                         name_of);
INSTANTIATE_TEST_SUITE_P(RealStations, NetworkDocument,
                         testing::Values(Case{kObservatories, "CI", true}, Case{kObservatories, "G", true},
                                         Case{kObservatories, "II", true}, Case{kObservatories, "NZ", true},
                                         Case{kObservatories, "SL", true}, Case{kMoved, "CL", true},
                                         Case{kMoved, "CO", true}, Case{kMoved, "G", true}, Case{kMoved, "IU", true}),
                         name_of);

TEST(AllNetworks, StandInsideOneRootElement) {
  const std::string all =
      triglub_test::run_shell("$TRIGLUB convert -p stationxml-edition1 " + std::string(kExample) + " 2>/dev/null")
          .output;
  std::string expected = kDeclaration;
  const std::string end = " </FDSNStationXML>\n";
  for (const char* network : {"9K", "XA", "XB", "XC"}) {
    std::string one = command_document({kExample, network, true}).substr(std::string(kDeclaration).size());
    ASSERT_TRUE(one.ends_with(end));
    one.resize(one.size() - end.size());
    // The root's tag and values once; of every later network only itself.
    if (network != std::string("9K")) one.erase(0, one.find("  <Network "));
    expected += one;
  }
  EXPECT_TRUE(all == expected + end);
}

}  // namespace
