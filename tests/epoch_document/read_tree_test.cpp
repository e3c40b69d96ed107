#include <gmock/gmock.h>

#include <string>

#include "document/written.h"
#include "element_tree.h"
#include "fatal_failure.h"
#include "support/collected_log.h"
#include "tree/tree_reading.h"

namespace triglub_test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

const MadeRows kStation = {{"snetsta", {}}, {"site", {}}, {"sitechan", {}}};

TEST(ReadTree, ASoundTreeIsToldNothing) {
  const MadeDatabase made(kStation);
  const CollectedLog log;
  const auto tree = triglub::read_tree(made.db(), parsed(document("", "A - float station_epoch.time\n")).get());
  ASSERT_NE(tree, nullptr);
  EXPECT_EQ(tree->root().tag, "Root");
  EXPECT_THAT(log.lines(), IsEmpty());
}

TEST(ReadTree, EveryFaultIsComplainedAbout) {
  const MadeDatabase made(kStation);
  const CollectedLog log;
  const std::string text = document("", "A - string site.latt\nB - wrong sta\nC - string 1 +\n");
  EXPECT_EQ(triglub::read_tree(made.db(), parsed(text).get()), nullptr);
  EXPECT_THAT(log.lines(),
              ElementsAre(AllOf(StartsWith("warning: parameter file:8: "), HasSubstr("lat")),
                          StartsWith("warning: parameter file:9: "), StartsWith("warning: parameter file:10: ")));
}

TEST(ReadTree, CategoriesAndCountsHaveNoFunctionsOverRecords) {
  const MadeDatabase made(kStation);
  for (const char* line : {"c - CATEGORIZED_GROUP first(chan)\n", "c - CATEGORIZED_BY_NUMBER count(chan)\n",
                           "c - count latest(epoch.time)\n"}) {
    const CollectedLog log;
    EXPECT_EQ(triglub::read_tree(made.db(), parsed(document("", line, "", group("c", "C", "", ""))).get()), nullptr)
        << line;
    EXPECT_THAT(log.lines(),
                ElementsAre(HasSubstr("functions over records (first, earliest, latest, count) have no place")));
  }
}

TEST(ReadTree, AFaultyTreeMakesNoDocument) {
  const MadeDatabase made(kStation);
  const CollectedLog log;
  try {
    write_document(made, document("", "A - wrong sta\n"));
    FAIL() << "no failure";
  } catch (const triglub::FatalFailure& failure) {
    EXPECT_STREQ(failure.what(), "parameter file: cannot be used");
  }
}

}  // namespace
}  // namespace triglub_test
