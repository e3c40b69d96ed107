// Which response files a document of edition 2 is made of, and what becomes of it where one cannot be had.
#include <gmock/gmock.h>

#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "document/written.h"
#include "fatal_failure.h"
#include "support/open_files.h"
#include "tree/tree_reading.h"

namespace triglub_test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using triglub::DetailLevel;
using triglub::EpochDocument;
using triglub::ResponseReach;

constexpr const char* kGain = "theoretical 1 instrument paz\n1 1\n0\n0\n";

const std::string kTree = document("", "stage - CATEGORIZED_BY_NUMBER stageid\n", "",
                                   group("stage", "Stage", "number - integer stageid\n", "filter - STAGE\n"));

MadeRows chain_of(const std::string& dir, const std::string& file) {
  return {{"snetsta", {}},
          {"site", {}},
          {"sitechan", {}},
          {"calibration", {{"fc", "1"}}},
          {"stage", {{"stageid", "1"}, {"gnom", "2"}, {"dir", dir}, {"dfile", file}}}};
}

// A chain that comes out of the file that its instrument names.
MadeRows instrument_of(const std::string& dir, const std::string& file) {
  return {{"affiliation", {{"net", "KR"}}},
          {"site", {}},
          {"sitechan", {}},
          {"sensor", {{"inid", "1"}}},
          {"instrument", {{"inid", "1"}, {"ncalib", "2"}, {"ncalper", "1"}, {"dir", dir}, {"dfile", file}}}};
}

Written write_within(const MadeDatabase& made, ResponseReach reach) {
  EpochDocument document(made.db(), parsed(kTree).get(), nullptr, DetailLevel::response, reach);
  std::ostringstream out;
  const bool is_written = document.write(out);
  return {is_written, out.str(), made.lines_of(document.findings())};
}

class ResponseReachOfDocuments : public testing::Test {
 protected:
  ResponseReachOfDocuments() : others_() { others_.write_file("o.paz", kGain); }
  FlatDatabase others_;
};

TEST_F(ResponseReachOfDocuments, IsTheFolderOfTheTableWhereThatIsAsked) {
  for (const auto& rows : {chain_of(others_.folder(), "o.paz"), instrument_of(others_.folder(), "o.paz")}) {
    const MadeDatabase made(rows);
    EXPECT_THAT(write_within(made, ResponseReach::anywhere).text, HasSubstr("<PolesZeros>"));
    const Written confined = write_within(made, ResponseReach::below_table);
    EXPECT_THAT(confined.text, testing::Not(HasSubstr("<PolesZeros>")));
    ASSERT_THAT(confined.told, ElementsAre(HasSubstr("channel epochs written without their stages: the response file "
                                                     "cannot be used")));
    EXPECT_THAT(confined.told.front(), HasSubstr("(AAK BHZ): " + others_.folder() + "/o.paz: outside of "));
  }
}

TEST_F(ResponseReachOfDocuments, HasTheFilesBelowTheTable) {
  for (const auto& rows : {chain_of("resp", "s.paz"), instrument_of("resp", "s.paz")}) {
    const MadeDatabase made(rows, {{"resp/s.paz", kGain}});
    const Written confined = write_within(made, ResponseReach::below_table);
    EXPECT_THAT(confined.text, HasSubstr("<PolesZeros>"));
  }
}

TEST_F(ResponseReachOfDocuments, AFileThatTheMachineCannotReadEndsTheDocument) {
  for (const auto& rows : {chain_of("resp", "s.paz"), instrument_of("resp", "s.paz")}) {
    const MadeDatabase made(rows, {{"resp/s.paz", kGain}});
    EXPECT_TRUE(write_within(made, ResponseReach::anywhere).is_written);  // the tables are loaded by now
    try {
      const NoMoreOpenFiles none;
      write_within(made, ResponseReach::anywhere);
      ADD_FAILURE() << "a document without stages";
    } catch (const triglub::FatalFailure& failure) {
      EXPECT_THAT(failure.what(), HasSubstr("s.paz: cannot read: Too many open files"));
    }
  }
}

}  // namespace
}  // namespace triglub_test
