// Parameter files of edition 2 in the functions that edition 1 has as well.
#include <gmock/gmock.h>

#include <sstream>
#include <string>

#include "conversion.h"
#include "elements.h"
#include "epoch_document.h"
#include "fatal_failure.h"

namespace triglub_test {
namespace {

using ::testing::ExitedWithCode;
using ::testing::HasSubstr;
using ::testing::ThrowsMessage;
using triglub::DetailLevel;
using triglub::FatalFailure;
using triglub::flags_for;

std::string tree_of_edition_2() {
  return "edition 2\nroot_node root\n" +
         definition("root", "FDSNStationXML", "", "network - CATEGORIZED_GROUP snetsta.snet\n") +
         definition("network", "Network", "code - string snetsta.snet\n", "channel - CATEGORIZED_GROUP epoch.time\n") +
         definition("channel", "Channel", "code - string sitechan.chan\nstartDate - epoch epoch.time\n", "");
}

class Editions : public Conversion {
 protected:
  Editions() {
    add_channels({"BHZ"});
    parse(tree_of_edition_2());
  }

  std::string write(unsigned int flags) {
    std::ostringstream out;
    own_.write(stations_.database(), pf_, subset_, out, flags);
    return out.str();
  }

  triglub::Conversion own_;
};

TEST_F(Editions, AllWritersWriteTheSameDocumentOfEdition2) {
  std::ostringstream out;
  triglub::EpochDocument document(stations_.database(), pf_, subset_, DetailLevel::channel);
  EXPECT_TRUE(document.write(out));
  EXPECT_EQ(out.str(),
            " <FDSNStationXML>\n  <Network code=\"KR\">\n"
            "   <Channel code=\"BHZ\" startDate=\"2001-01-01T00:00:00Z\">\n   </Channel>\n"
            "  </Network>\n </FDSNStationXML>\n");
  EXPECT_EQ(write(flags_for(DetailLevel::channel)), out.str());
  EXPECT_EQ(convert(flags_for(DetailLevel::channel)), out.str());
}

TEST_F(Editions, AConversionWritesDocumentsOfEachInTurns) {
  const std::string second = write(flags_for(DetailLevel::channel));
  parse(whole_tree());
  EXPECT_THAT(write(flags_for(DetailLevel::channel)), HasSubstr("<Network code=\"KR\" >"));
  parse(tree_of_edition_2());
  EXPECT_EQ(write(flags_for(DetailLevel::channel)), second);
}

TEST_F(Editions, Edition2IsNotWrittenPieceByPiece) {
  const auto is_refused = ThrowsMessage<FatalFailure>(
      "a document of edition 2 is written whole: by db2stationxml or triglub::EpochDocument");
  EXPECT_THAT([&] { own_.prepare(stations_.database(), pf_, subset_, 0); }, is_refused);
  write(0);
  std::ostringstream out;
  const ElementGroup network(pf_, "network");
  EXPECT_THAT([&] { own_.write_node(out, stations_.database(), network, SmartIndex(1, true)); }, is_refused);
  EXPECT_THAT([&] { own_.write_group_line(out, stations_.database(), network, network[0], SmartIndex(1, true)); },
              is_refused);
  EXPECT_EQ(out.str(), "");
}

TEST_F(Editions, TheFunctionsOfTheProcessEndItOverPieces) {
  EXPECT_EXIT(prepare_conversion(stations_.database(), pf_, subset_, 0), ExitedWithCode(1),
              "fatal: a document of edition 2 is written whole");
}

}  // namespace
}  // namespace triglub_test
