#include <gmock/gmock.h>

#include <cstdlib>
#include <iostream>
#include <regex>

#include "conversion.h"
#include "dbhelper.h"
#include "resp_helper.h"
#include "support/collected_log.h"

namespace triglub_test {
namespace {

using ::testing::AllOf;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::ExitedWithCode;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;

class Entry : public Conversion {};

TEST_F(Entry, WritesTheWholeTree) {
  add_two_networks();
  const CollectedLog log;
  EXPECT_EQ(convert(0x40),
            " <FDSNStationXML schemaVersion=\"1.1\" >\n"
            "  <Source>Example</Source>\n"
            "  <Network code=\"IU\" >\n"
            "   <SelectedNumberStations>1</SelectedNumberStations>\n"
            "   <Station code=\"ANMO\" >\n"
            "    <Latitude>34.945900</Latitude>\n"
            "    <Channel code=\"BHZ\"  locationCode=\"10\" >\n"
            "     <SampleRate>40</SampleRate>\n"
            "     <Response>\n"
            "     </Response>\n"
            "    </Channel>\n"
            "   </Station>\n"
            "  </Network>\n"
            "  <Network code=\"KR\" >\n"
            "   <SelectedNumberStations>1</SelectedNumberStations>\n"
            "   <Station code=\"AAK\" >\n"
            "    <Latitude>42.637500</Latitude>\n"
            "    <Channel code=\"BHN\"  locationCode=\"00\" >\n"
            "     <SampleRate>40</SampleRate>\n"
            "     <Response>\n"
            "     </Response>\n"
            "    </Channel>\n"
            "    <Channel code=\"BHZ\"  locationCode=\"00\" >\n"
            "     <SampleRate>40</SampleRate>\n"
            "     <Response>\n"
            "      <Stage number=\"1\" >\n" +
                digital_stage() +
                "      </Stage>\n"
                "     </Response>\n"
                "    </Channel>\n"
                "   </Station>\n"
                "  </Network>\n"
                " </FDSNStationXML>\n");
  EXPECT_THAT(log.lines(), IsEmpty());
  EXPECT_EQ(xml_depth, 0u);
}

TEST_F(Entry, CutsTheTreeAtTheDetailLevel) {
  add_two_networks();
  const struct {
    unsigned int flags;
    bool stations, channels, stages;
  } cases[] = {
      {0x08, false, false, false}, {0x10, true, false, false},     {0x20, true, true, false},
      {0x40, true, true, true},    {0x00, true, true, true},       {0x04, true, true, true},
      {0x18, true, true, true},    {0x48, true, true, true},       {0x78, true, true, true},
      {0x80, true, true, true},    {0xFFFFFF84, true, true, true}, {0x0C, false, false, false},
      {0x90, true, false, false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.flags);
    const CollectedLog log;
    const std::string document = convert(c.flags);
    EXPECT_THAT(document, HasSubstr("<Network code=\"KR\" >"));
    EXPECT_EQ(document.find("<Station ") != std::string::npos, c.stations);
    EXPECT_EQ(document.find("<Channel ") != std::string::npos, c.channels);
    EXPECT_EQ(document.find("<Stage ") != std::string::npos, c.stages);
    EXPECT_EQ(verbosity, 0u);
    EXPECT_THAT(log.lines(), IsEmpty());
  }
}

TEST_F(Entry, WritesAllOfTheCutLevelsParentButThatChild) {
  add_channels({"BHZ"});
  parse(preamble("root") +
        definition("root", "Network", "code - text KR\n", "First - text 1\nstation - GROUP\nLast - text 2\n") +
        definition("station", "Station", "", "Inner - text 3\n"));
  EXPECT_EQ(convert(0x08), " <Network code=\"KR\" >\n  <First>1</First>\n  <Last>2</Last>\n </Network>\n");
}

TEST_F(Entry, NeverCutsTheRoot) {
  add_channels({"BHZ"});
  parse(preamble("root") + definition("root", "Station", "", "A - text 1\nchild - GROUP\n") +
        definition("child", "Station", "", "B - text 2\n"));
  EXPECT_EQ(convert(0x08), " <Station>\n  <A>1</A>\n </Station>\n");
}

TEST(DetailLevel, IsTheNameOfTheFirstElementLeftOut) {
  Pf* pf = nullptr;
  ASSERT_EQ(
      pfparse(definition("a", "Station", "", "") + definition("b", "Channel", "", "") +
                  definition("c", "Stage", "", "") + definition("d", "station", "", "") + definition("e", "", "", ""),
              "test", &pf),
      0);
  const struct {
    unsigned int level;
    bool station, channel, stage;
  } cases[] = {{0x08, true, false, false},  {0x10, false, true, false}, {0x20, false, false, true},
               {0x40, false, false, false}, {0, false, false, false},   {0x18, false, false, false},
               {0x09, false, false, false}};
  for (const auto& c : cases) {
    set_detail_level(c.level);
    EXPECT_EQ(max_detail_level_reached({pf, "a"}), c.station) << c.level;
    EXPECT_EQ(max_detail_level_reached({pf, "b"}), c.channel) << c.level;
    EXPECT_EQ(max_detail_level_reached({pf, "c"}), c.stage) << c.level;
    EXPECT_FALSE(max_detail_level_reached({pf, "d"})) << c.level;
    // Where nothing is cut, the name of nothing is the cut: only a group without a name has it.
    EXPECT_EQ(max_detail_level_reached({pf, "e"}), !(c.station || c.channel || c.stage)) << c.level;
  }
  pffree(pf);
}

TEST(Tracing, FollowsTheVerbosity) {
  for (unsigned int level = 0; level <= 3; ++level) {
    verbosity = level;
    const CollectedLog log;
    EXPECT_EQ(info_level(), level != 0);
    show_func("name");
    if (level == 3) {
      EXPECT_THAT(log.lines(), ElementsAre("debug: Function: name"));
    } else {
      EXPECT_THAT(log.lines(), IsEmpty());
    }
  }
}

// The engine's own lines about the steps of the master view are its own business.
constexpr const char* step_trace = "debug: dbprocess: ";

TEST_F(Entry, TracesAtVerbosityOneAndTwo) {
  add_two_networks();
  for (const unsigned int level : {1u, 2u}) {
    const CollectedLog log;
    convert(0x10 | level);
    EXPECT_EQ(verbosity, level);
    EXPECT_THAT(log.lines_without(step_trace),
                ElementsAre("debug: root node: root", "debug: after process", "debug:  3 records after merging",
                            "debug:  vector Categorized Group:contains: | IU | KR",
                            "debug:  vector Categorized Group:contains: | ANMO",
                            "debug:  vector Categorized Group:contains: | AAK"));
    EXPECT_THAT(log.lines_with(step_trace), SizeIs(10));
  }
}

TEST_F(Entry, TracesFunctionsAtVerbosityThree) {
  add_two_networks();
  setarr(subset_, "snetsta.snet", "/IU/");
  const CollectedLog log;
  convert(0x13);
  EXPECT_THAT(
      log.lines_without(step_trace),
      ElementsAre("debug: Function: db2stationxml", "debug: root node: root", "debug: Function: create_master_view",
                  "debug: after process", "debug:  1 records after merging", "debug: Function: xml_create_node",
                  "debug: Function: get_categories(network)", "debug:  vector Categorized Group:contains: | IU",
                  "debug: Function: pseudo_subset", "debug: Function: xml_create_node",
                  "debug: Function: get_categories(SelectedNumberStations)", "debug: Function: get_categories(station)",
                  "debug:  vector Categorized Group:contains: | ANMO", "debug: Function: pseudo_subset",
                  "debug: Function: xml_create_node"));
}

TEST_F(Entry, ComputesNoCategoriesOfAChildThatIsCut) {
  add_two_networks();
  const CollectedLog log;
  convert(0x09);
  EXPECT_THAT(log.lines_without(step_trace),
              ElementsAre("debug: root node: root", "debug: after process", "debug:  3 records after merging",
                          "debug:  vector Categorized Group:contains: | IU | KR"));
}

TEST_F(Entry, ReadsTheDateFormats) {
  add_channels({"BHZ"});
  convert(0);
  EXPECT_EQ(date_xml_with_ms_format, "%GT%H:%M:%S.%u");
  EXPECT_EQ(date_xml_format, "%G");
}

TEST_F(Entry, WritesNothingWithoutRecords) {
  add_two_networks();
  setarr(subset_, "snetsta.snet", "/XX/");
  EXPECT_EQ(convert(0x40), "");
  EXPECT_EQ(xml_depth, 0u);
}

TEST_F(Entry, TakesOnlyWhatTheSubsetSelects) {
  add_two_networks();
  setarr(subset_, "snetsta.snet", "/KR|IU/");
  setarr(subset_, " sitechan.chan ", "/.*Z/");
  const std::string document = convert(0x20);
  EXPECT_THAT(document, AllOf(HasSubstr("\"ANMO\""), HasSubstr("\"AAK\""), Not(HasSubstr("BHN"))));
}

TEST_F(Entry, EndsTheProcessWithoutAParameterFile) {
  add_channels({"BHZ"});
  const Dbptr db = stations_.database();
  EXPECT_EXIT(db2stationxml(db, nullptr, subset_, std::cout, 0), ExitedWithCode(1),
              "fatal: No parameter file specified");
}

TEST_F(Entry, TellsWhereItIsBeforeItEndsWithoutAParameterFile) {
  add_channels({"BHZ"});
  const Dbptr db = stations_.database();
  EXPECT_EXIT(db2stationxml(db, nullptr, subset_, std::cout, 0x43), ExitedWithCode(1),
              "debug: Function: db2stationxml\n.*fatal: No parameter file specified\n$");
}

TEST_F(Entry, LooksForTheDateFormatsBeforeItTellsTheRoot) {
  add_channels({"BHZ"});
  parse("root_node root\n" + definition("root", "Root", "", ""));
  const CollectedLog log;
  EXPECT_EQ(convert(1), " <Root>\n </Root>\n");
  EXPECT_THAT(log.lines_without("debug: dbprocess: "),
              ElementsAre("warning: pfget_string: [epochtime_xmlstring_format] not found",
                          "warning: pfget_string: [jdate_xmlstring_format] not found", "debug: root node: root",
                          "debug: after process", "debug:  1 records after merging"));
}

TEST_F(Entry, EndsTheProcessWithoutARootNode) {
  add_channels({"BHZ"});
  parse("epochtime_xmlstring_format %G\njdate_xmlstring_format %G\n");
  for (const unsigned int flags : {0u, 1u, 3u, 0x40u, 0x41u}) {
    EXPECT_EXIT(convert(flags), ExitedWithCode(1), "fatal: parameter file: no root_node") << flags;
  }
}

TEST_F(Entry, LogsThatTheRootNodeIsMissing) {
  add_channels({"BHZ"});
  parse("epochtime_xmlstring_format %G\njdate_xmlstring_format %G\n");
  const CollectedLog log;
  prepare_conversion(stations_.database(), pf_, subset_, 1);
  EXPECT_THAT(log.lines(), Contains("debug: root node: (null)"));
}

TEST_F(Entry, EndsTheProcessWhenADefinitionIsMissing) {
  add_channels({"BHZ"});
  parse(preamble("root") + definition("root", "Root", "", "nosuch - GROUP\n"));
  EXPECT_EXIT(convert(0), ExitedWithCode(1), "fatal: parameter file: group \\[nosuch\\] has no name");
  parse(preamble("root"));
  EXPECT_EXIT(convert(0), ExitedWithCode(1), "fatal: parameter file: group \\[root\\] has no name");
}

TEST_F(Entry, EndsTheProcessWhenAValueCannotBeHad) {
  add_channels({"BHZ"});
  parse(preamble("root") + definition("root", "Root", "", "A - deg_lat nosuch\n"));
  EXPECT_EXIT(convert(0), ExitedWithCode(1), "fatal: db field \\[nosuch\\] not found");
  parse(preamble("root") + definition("root", "Ro.ot", "", ""));
  EXPECT_EXIT(convert(0), ExitedWithCode(1), "fatal: Unsafe tag: Ro.ot");
  parse(preamble("root") + definition("root", "Root", "a;b - text 1\n", ""));
  EXPECT_EXIT(convert(0), ExitedWithCode(1), "fatal: Invalid attribute name: \\[a;b\\]");
}

TEST_F(Entry, LetsOtherExceptionsPass) {
  add_channels({"BHZ"});
  parse(preamble("root") + definition("root", "Root", "", "A - force_lookup site.lat\n"));
  EXPECT_THROW(convert(0), std::logic_error);
  parse(preamble("root") + definition("root", "Root", "", "A - deg_lat site.sta\n"));
  EXPECT_THROW(convert(0), std::invalid_argument);
}

TEST_F(Entry, LetsANonNumericCategoryPass) {
  add_channels({"BHZ", "BHN"});
  parse(preamble("root") + definition("root", "Root", "", "c - CATEGORIZED_BY_NUMBER sitechan.chan\n") +
        definition("c", "C", "", ""));
  EXPECT_THROW(convert(0), std::invalid_argument);
}

TEST_F(Entry, LetsACategoryThatIsNoIntPass) {
  add_channels({});
  stations_.add_channel("AAK", "A");
  stations_.add_row("sitechan", {{"sta", "AAK"}, {"chan", "B"}, {"ondate", "2001001"}});
  stations_.add_row("schanloc", {{"sta", "AAK"}, {"chan", "B"}});
  stations_.add_sensor("AAK", "B", {{"endtime", "4000000000.00000"}});
  stations_.add_row("calibration", {{"sta", "AAK"}, {"chan", "B"}, {"time", Stations::begin}});
  parse(preamble("root") + definition("root", "Root", "", "A - text 1\nc - CATEGORIZED_BY_NUMBER sensor.endtime\n") +
        definition("c", "C", "", ""));
  std::ostringstream out;
  EXPECT_THROW(db2stationxml(stations_.database(), pf_, subset_, out, 0), std::out_of_range);
  EXPECT_EQ(out.str(), " <Root>\n  <A>1</A>\n");
}

std::string recursive_tree() { return preamble("a") + definition("a", "A", "", "a - GROUP\n"); }

TEST_F(Entry, FindsARecursiveTreeBeforeWritingWhenItTells) {
  add_channels({"BHZ"});
  parse(recursive_tree());
  for (const unsigned int flags : {1u, 2u, 3u}) {
    std::ostringstream out;
    try {
      db2stationxml(stations_.database(), pf_, subset_, out, flags);
      ADD_FAILURE() << flags;
    } catch (const std::runtime_error& e) {
      EXPECT_STREQ(e.what(), "Exceeded maximum node depth");
    }
    EXPECT_EQ(out.str(), "");
  }
}

MATCHER_P2(HasCount, pattern, count, "") {
  const std::regex expression(pattern);
  return std::distance(std::sregex_iterator(arg.begin(), arg.end(), expression), std::sregex_iterator()) == count;
}

TEST_F(Entry, EndsTheProcessInTheMiddleOfARecursiveTreeWhenSilent) {
  add_channels({"BHZ"});
  parse(recursive_tree());
  const Dbptr db = stations_.database();
  EXPECT_EXIT(db2stationxml(db, pf_, subset_, std::cerr, 0), ExitedWithCode(1),
              AllOf(HasCount("<A>\n", 15),
                    HasSubstr("fatal: Exceeded maximum node level. Group recursion in parameter file?")));
}

TEST_F(Entry, ThrowsWhenTheMasterViewCannotBeMade) {
  add_channels({"BHZ"});
  parse(whole_tree());
  setarr(subset_, "site.lat", "/42.*/");  // not yet joined when subsets are taken
  for (const unsigned int flags : {0u, 1u, 0x40u}) {
    std::ostringstream out;
    try {
      db2stationxml(stations_.database(), pf_, subset_, out, flags);
      ADD_FAILURE() << flags;
    } catch (const dbquery_error& e) {
      EXPECT_STREQ(e.std::runtime_error::what(), "unsuccessful query of dbRECORD_COUNT");
    }
    EXPECT_EQ(out.str(), "");
  }
}

TEST_F(Entry, FindsABrokenMasterViewBeforeARecursiveTree) {
  add_channels({"BHZ"});
  parse(recursive_tree());
  setarr(subset_, "nosuch", "/x/");
  for (const unsigned int flags : {0u, 1u, 3u}) EXPECT_THROW(convert(flags), dbquery_error) << flags;
}

TEST_F(Entry, TakesNoArrayOfSubsetsForEverything) {
  add_two_networks();
  parse(whole_tree());
  std::ostringstream out;
  EXPECT_EQ(db2stationxml(stations_.database(), pf_, nullptr, out, 0x20), 0);
  EXPECT_EQ(out.str(), convert(0x20));
}

TEST_F(Entry, PreparesForProgramsThatWriteNodesThemselves) {
  add_two_networks();
  parse(whole_tree());
  const Dbptr view = prepare_conversion(stations_.database(), pf_, subset_, 0x08);
  EXPECT_EQ(db_nrecs(view), 3);
  std::ostringstream out;
  xml_create_node(out, view, ElementGroup(pf_, "network"), SmartIndex(3, true));
  EXPECT_EQ(out.str(), " <Network code=\"KR\" >\n  <SelectedNumberStations>2</SelectedNumberStations>\n </Network>\n");
}

// Stages that name a response file, to see which responses are there.
class ResponseLevel : public Conversion {
 protected:
  static void add_stage_with_file(Stations& stations, const std::string& file) {
    stations.add_network("KR");
    stations.add_station("KR", "AAK");
    stations.add_channel("AAK", "BHZ");
    stations.add_stage("AAK", "BHZ", 1, {{"dir", "resp"}, {"dfile", file}});
    stations.write_response("resp/" + file);
  }
};

TEST_F(ResponseLevel, ReadsTheResponses) {
  add_stage_with_file(stations_, "a.paz");
  for (const unsigned int flags : {0x40u, 0x41u}) {
    const CollectedLog log;
    EXPECT_THAT(convert(flags), HasSubstr("<PolesZeros"));
    EXPECT_THAT(log.lines_with("warning"), IsEmpty());
  }
}

// Each in a process that has not read any responses before.
TEST_F(ResponseLevel, ReadsTheResponsesAtEveryVerbosity) {
  add_stage_with_file(stations_, "a.paz");
  const auto convert_and_exit = [&](unsigned int flags) {
    std::exit(convert(flags).find("<PolesZeros") == std::string::npos ? 3 : 0);
  };
  for (const unsigned int flags : {0x40u, 0x41u, 0x42u, 0x43u, 0x44u}) {
    EXPECT_EXIT(convert_and_exit(flags), ExitedWithCode(0), "") << flags;
  }
}

TEST_F(ResponseLevel, IsNotMetByOtherLevels) {
  add_stage_with_file(stations_, "a.paz");
  for (const unsigned int flags : {0x00u, 0x48u, 0x04u}) {
    EXPECT_EXIT(convert(flags), ExitedWithCode(1), "fatal: ") << flags;
  }
}

TEST_F(ResponseLevel, KeepsTheFirstCallsResponsesForTheProcess) {
  add_stage_with_file(stations_, "a.paz");
  EXPECT_THAT(convert(0x40), HasSubstr("<PolesZeros"));
  Stations others;
  add_stage_with_file(others, "b.paz");
  std::ostringstream out;
  const CollectedLog log;
  EXPECT_EQ(db2stationxml(others.database(), pf_, subset_, out, 0x40), 0);
  EXPECT_THAT(out.str(), Not(HasSubstr("<PolesZeros")));
  EXPECT_THAT(log.lines(), ElementsAre(HasSubstr("Problem with Response: problems with response file \"resp/b.paz\"")));
  // A call at another level finds them too.
  EXPECT_THAT(convert(0x00), HasSubstr("<PolesZeros"));
}

TEST_F(ResponseLevel, GoesOnAfterAResponseThatIsMissing) {
  add_stage_with_file(stations_, "a.paz");
  stations_.add_stage("AAK", "BHZ", 2, {{"dir", "resp"}, {"dfile", "missing.paz"}});
  stations_.add_stage("AAK", "BHZ", 3);
  const CollectedLog log;
  const std::string document = convert(0x40);
  const std::vector<std::string> warnings = log.lines_with("warning: ");
  ASSERT_THAT(warnings, SizeIs(1));
  EXPECT_TRUE(std::regex_match(
      warnings[0],
      std::regex(R"(warning: Problem with Response: problems with response file "resp/missing.paz" \[db\(.*\.1\)\])")))
      << warnings[0];
  EXPECT_THAT(document, HasSubstr("      <Stage number=\"2\" >\n      </Stage>\n"));
  EXPECT_THAT(document, HasSubstr("      <Stage number=\"3\" >\n" + digital_stage()));
}

}  // namespace
}  // namespace triglub_test
