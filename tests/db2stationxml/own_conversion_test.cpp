// Conversions that a program holds itself: each gives what the functions of the process give, remembers for itself, and
// ends with an exception where those end the process.
#include <gmock/gmock.h>

#include <cstdlib>
#include <iostream>
#include <memory>

#include "conversion.h"
#include "dbhelper.h"
#include "resp_helper.h"
#include "support/collected_log.h"

namespace triglub_test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::ThrowsMessage;
using triglub::DetailLevel;
using triglub::FatalFailure;
using triglub::flags_for;

class OwnConversion : public Conversion {
 protected:
  std::string write(triglub::Conversion& conversion, Stations& stations, unsigned int flags) {
    if (pf_ == nullptr) parse(whole_tree());
    std::ostringstream out;
    conversion.write(stations.database(), pf_, subset_, out, flags);
    return out.str();
  }
  std::string write(unsigned int flags) { return write(own_, stations_, flags); }

  static std::string stage_alone() {
    return preamble("root") + definition("root", "Root", "", "stage - STAGE stage\n");
  }
  static void add_stage_with_file(Stations& stations, const std::string& file) {
    add_channels(stations, {"BHZ"});
    stations.add_stage("AAK", "BHZ", 1, {{"dir", "resp"}, {"dfile", file}});
    stations.write_response("resp/" + file);
  }

  triglub::Conversion own_;
  Stations others_;
};

TEST_F(OwnConversion, WritesWhatTheProcessWritesAtEveryLevel) {
  add_two_networks();
  for (const DetailLevel level :
       {DetailLevel::network, DetailLevel::station, DetailLevel::channel, DetailLevel::response}) {
    EXPECT_EQ(write(flags_for(level)), convert(flags_for(level)));
  }
}

TEST_F(OwnConversion, LeavesTheStateOfTheProcessAlone) {
  add_two_networks();
  parse(whole_tree());
  verbosity = 3;
  set_detail_level(0x10);
  const std::string format = date_xml_format;
  const CollectedLog log;
  write(flags_for(DetailLevel::response));
  EXPECT_THAT(log.lines(), ElementsAre());
  EXPECT_EQ(verbosity, 3u);
  EXPECT_EQ(xml_depth, 0u);
  EXPECT_EQ(date_xml_format, format);
  EXPECT_TRUE(max_detail_level_reached(ElementGroup(pf_, "channel")));
}

TEST_F(OwnConversion, LearnsKeywordsForItself) {
  add_channels({"BHZ"});
  parse(preamble("root") + definition("root", "Root", "", "L - new_keyword site.lat\n"));
  EXPECT_THAT(write(0), HasSubstr("<L>42.637500</L>"));
  EXPECT_FALSE(INTERPRETERS.contains("new_keyword"));
  convert(0);
  EXPECT_TRUE(INTERPRETERS.contains("new_keyword"));
}

TEST_F(OwnConversion, ChainsUnitsForItself) {
  add_channels({"BHZ"});
  stations_.add_stage("AAK", "BHZ", 1, {{"iunits", "m/s"}, {"ounits", "V"}});
  add_channels(others_, {"BHZ"});
  others_.add_stage("AAK", "BHZ", 1, {{"iunits", "-"}, {"ounits", "-"}});
  parse(stage_alone());
  write(0);
  triglub::Conversion another;
  EXPECT_THAT(write(another, others_, 0), HasSubstr("<Name>unknown</Name>"));
  EXPECT_THAT(write(own_, others_, 0), HasSubstr("<Name>V</Name>"));
  own_.forget_units();
  EXPECT_THAT(write(own_, others_, 0), HasSubstr("<Name>unknown</Name>"));
}

TEST_F(OwnConversion, ReadsItsResponsesOnce) {
  add_stage_with_file(stations_, "a.paz");
  const std::string before = write(0x40);
  EXPECT_THAT(before, HasSubstr("<PolesZeros"));
  stations_.write_file("resp/a.paz", "no response at all");
  EXPECT_EQ(write(0x40), before);
  triglub::Conversion later;
  EXPECT_THAT(write(later, stations_, 0x40), Not(HasSubstr("<PolesZeros")));
}

TEST_F(OwnConversion, TakesResponsesThatWereReadBefore) {
  add_stage_with_file(stations_, "a.paz");
  const auto responses = std::make_shared<const ResponseCache>(stations_.database(), "stage");
  stations_.write_file("resp/a.paz", "no response at all");
  for (int i = 0; i < 2; ++i) {
    triglub::Conversion conversion;
    conversion.use_responses(responses);
    EXPECT_THAT(write(conversion, stations_, 0x40), HasSubstr("<PolesZeros"));
  }
}

TEST_F(OwnConversion, TakesResponsesAtOnceWhateverTheLevel) {
  add_stage_with_file(stations_, "a.paz");
  own_.use_responses(std::make_shared<const ResponseCache>(stations_.database(), "stage"));
  parse(stage_alone());
  EXPECT_THAT(write(0), HasSubstr("<PolesZeros"));
}

// Filter texts are kept by the place of the filter in memory, where another may come to stand.
TEST_F(OwnConversion, WritesTheResponsesOfTheCacheItHasNow) {
  add_stage_with_file(stations_, "a.paz");
  std::string latest;
  for (const char* gain : {"1.0", "2.0", "3.0", "4.0"}) {
    stations_.write_file("resp/a.paz",
                         std::string("theoretical 1 instrument paz author\n") + gain + " 1.0\n1\n-0.1 0.2\n1\n0 0\n");
    own_.use_responses(std::make_shared<const ResponseCache>(stations_.database(), "stage"));
    EXPECT_THAT(write(0x40), HasSubstr(std::string("<NormalizationFactor>") + gain[0] + "</NormalizationFactor>"));
  }
}

TEST_F(OwnConversion, WritesNodesAndGroupLinesByThemselves) {
  add_channels({"BHZ", "BHN"});
  parse(preamble("root") + definition("root", "Root", "", "A - text 1\nchannel - CATEGORIZED_GROUP sitechan.chan\n") +
        definition("channel", "Channel", "code - string sitechan.chan\n", ""));
  const Dbptr view = own_.prepare(stations_.database(), pf_, subset_, 0);
  const ElementGroup root(pf_, "root");
  const SmartIndex all(2, true);
  std::ostringstream node;
  own_.write_node(node, view, root, all);
  EXPECT_EQ(node.str(),
            " <Root>\n  <A>1</A>\n  <Channel code=\"BHN\" >\n  </Channel>\n"
            "  <Channel code=\"BHZ\" >\n  </Channel>\n </Root>\n");
  std::ostringstream shared;
  own_.write_node(shared, view, root, all,
                  [&](const ElementDescription& line) { shared << "[" << line.name() << "]"; });
  EXPECT_EQ(shared.str(), " <Root>\n  <A>1</A>\n[channel] </Root>\n");
  std::ostringstream line;
  own_.write_group_line(line, view, root, root[1], all);
  EXPECT_EQ(line.str(), " <Channel code=\"BHN\" >\n </Channel>\n <Channel code=\"BHZ\" >\n </Channel>\n");
}

TEST_F(OwnConversion, GoesOnAfterItWasMoved) {
  add_two_networks();
  const std::string before = write(0x40);
  triglub::Conversion moved = std::move(own_);
  EXPECT_EQ(write(moved, stations_, 0x40), before);
}

// --- failures ------------------------------------------------------------------------------------------------------

template <typename Matcher>
auto fails_with(Matcher text) {
  return ThrowsMessage<FatalFailure>(text);
}

TEST_F(OwnConversion, FailsWithoutEndingTheProcess) {
  add_channels({"BHZ"});
  std::ostringstream out;
  EXPECT_THAT([&] { own_.write(stations_.database(), nullptr, subset_, out, 0); },
              fails_with("No parameter file specified"));
  parse("epochtime_xmlstring_format a\njdate_xmlstring_format b\n");
  EXPECT_THAT([&] { write(0); }, fails_with("parameter file: no root_node"));
  parse(preamble("root") + definition("root", "Root", "", "root - GROUP\n"));
  EXPECT_THAT([&] { write(0); }, fails_with("Exceeded maximum node level. Group recursion in parameter file?"));
  parse(preamble("root") + definition("root", "Root", "", "n - count no.such\n"));
  EXPECT_THAT([&] { write(0); }, fails_with("db field [no.such] not found"));
  EXPECT_THAT([&] { own_.categories(stations_.database(), ElementDescription("a - text b"), SmartIndex(0, false)); },
              fails_with("get_categories: called on an element that was not a categorized group"));
}

TEST_F(OwnConversion, IsNotStoppedByAStageWhoseFileIsMissing) {
  add_channels({"BHZ"});
  stations_.add_stage("AAK", "BHZ", 1, {{"dir", "resp"}, {"dfile", "missing.paz"}});
  parse(stage_alone());
  const CollectedLog log;
  EXPECT_EQ(write(0x40), " <Root>\n </Root>\n");
  EXPECT_THAT(log.lines_with("warning: "), ElementsAre(HasSubstr("problems with response file \"resp/missing.paz\"")));
}

// The writing of stages puts up with a std::runtime_error; a stage without any cache is a fault of the program.
TEST_F(OwnConversion, FailsForAStageWithoutACache) {
  add_stage_with_file(stations_, "a.paz");
  parse(stage_alone());
  EXPECT_THAT([&] { write(0); },
              fails_with("a stage row names the response file resp/a.paz, but no response cache has been set"));
}

TEST_F(OwnConversion, IsUsableAfterAFailure) {
  add_two_networks();
  parse(preamble("root") + definition("root", "Root", "", "n - count no.such\n"));
  EXPECT_THROW(write(0), FatalFailure);
  parse(preamble("root") + definition("root", "Root", "", "inner - GROUP\n") +
        definition("inner", "Inner", "", "a - force_lookup b\n"));
  EXPECT_THROW(write(0), std::logic_error);
  parse(whole_tree());
  EXPECT_EQ(write(0x40), convert(0x40));
}

// --- mends: depth, empty names, the view with networks
// -----------------------------------------------------------------

TEST_F(OwnConversion, WritesNoGroupLineBelowTheDeepestLevel) {
  add_channels({"BHZ"});
  parse(preamble("root") + definition("root", "Root", "", "inner - GROUP\n") +
        definition("inner", "Inner", "", "A - text 1\n"));
  const Dbptr view = prepare_conversion(stations_.database(), pf_, subset_, 0);
  const ElementGroup root(pf_, "root");
  const SmartIndex all(1, true);
  std::ostringstream out;
  xml_depth = MAX_NODE_DEPTH - 1;
  xml_create_group_line(out, view, root, root[0], all);
  EXPECT_THAT(out.str(), HasSubstr("<Inner>"));
  for (const int depth : {MAX_NODE_DEPTH, MAX_NODE_DEPTH + 1, MAX_NODE_DEPTH + 1000}) {
    EXPECT_EXIT(
        {
          xml_depth = static_cast<unsigned int>(depth);
          xml_create_group_line(out, view, root, root[0], all);
        },
        testing::ExitedWithCode(1), "Exceeded maximum node level. Group recursion in parameter file\\?");
  }
}

// The depth is judged before anything of the line, as for a node.
TEST_F(OwnConversion, JudgesTheDepthOfAGroupLineThatIsCutToo) {
  add_channels({"BHZ"});
  parse(whole_tree());
  const Dbptr view = prepare_conversion(stations_.database(), pf_, subset_, flags_for(DetailLevel::network));
  const ElementGroup network(pf_, "network");
  EXPECT_EXIT(
      {
        xml_depth = MAX_NODE_DEPTH + 1;
        xml_create_group_line(std::cout, view, network, network[1], SmartIndex(1, true));
        std::exit(0);
      },
      testing::ExitedWithCode(1), "Exceeded maximum node level");
}

TEST_F(OwnConversion, RefusesAnEmptyFieldName) {
  add_channels({"BHZ"});
  parse(whole_tree());
  const Dbptr view = prepare_conversion(stations_.database(), pf_, subset_, 0);
  Dbptr field = db_setfield(view, "sitechan.sta");
  EXPECT_THAT([&] { db_setfield(field, ""); }, ThrowsMessage<std::runtime_error>("db field [] not found"));
  EXPECT_THAT([&] { get_unique(field, "", SmartIndex(1, true)); },
              ThrowsMessage<std::runtime_error>("db field [] not found"));
  for (const char* line : {"n - count", "n - CATEGORIZED_GROUP", "n - CATEGORIZED_BY_NUMBER"}) {
    EXPECT_THAT([&] { own_.categories(field, ElementDescription(line), SmartIndex(1, true)); },
                fails_with("db field [] not found"))
        << line;
    EXPECT_EXIT(get_categories(field, ElementDescription(line), SmartIndex(1, true)), testing::ExitedWithCode(1),
                "db field \\[\\] not found");
  }
}

TEST_F(OwnConversion, LeavesTheViewWithNetworksToBeLookedUp) {
  add_two_networks();
  const auto with_net = [&] { return dblookup(stations_.database(), nullptr, "with_net", nullptr, nullptr); };
  create_master_view(stations_.database(), subset_);
  const Dbptr first = with_net();
  ASSERT_GE(first.table, 0);
  EXPECT_EQ(db_nrecs(first), 3);
  EXPECT_EQ(db_fieldlookup({first.database, first.table, dbALL, 2}, "network.net"), "IU");
  // Each call has its own, and the one before it goes.
  setarr(subset_, "snetsta.snet", "/KR/");
  create_master_view(stations_.database(), subset_);
  EXPECT_EQ(db_nrecs(with_net()), 2);
  EXPECT_THROW(db_nrecs(first), dbquery_error);
}

}  // namespace
}  // namespace triglub_test
