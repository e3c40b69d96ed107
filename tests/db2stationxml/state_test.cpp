// What a conversion leaves behind for the next one in the same process. CTest runs each test in a process of its own.
#include <gmock/gmock.h>

#include "conversion.h"
#include "dbhelper.h"
#include "resp_helper.h"
#include "support/collected_log.h"

namespace triglub_test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

class State : public Conversion {
 protected:
  // A document of nothing but the response stages of the first record.
  static std::string stage_alone() {
    return preamble("root") + definition("root", "Root", "", "stage - STAGE stage\n");
  }
  static std::string value_alone(const std::string& line) {
    return preamble("root") + definition("root", "Root", "", line + "\n");
  }
  static void add_stage(Stations& stations, const Row& values) {
    add_channels(stations, {"BHZ"});
    stations.add_stage("AAK", "BHZ", 1, values);
  }
  static void add_stage_with_file(Stations& stations, const std::string& file) {
    add_stage(stations, {{"dir", "resp"}, {"dfile", file}});
    stations.write_response("resp/" + file);
  }
  static std::string units(const std::string& input, const std::string& output) {
    return "<InputUnits><Name>" + input + "</Name></InputUnits>\n           <OutputUnits><Name>" + output +
           "</Name></OutputUnits>";
  }

  Stations others_;
};

TEST_F(State, StartsWithUnknownUnits) {
  add_stage(stations_, {{"iunits", "-"}, {"ounits", "-"}});
  parse(stage_alone());
  EXPECT_THAT(convert(0), HasSubstr(units("unknown", "unknown")));
}

TEST_F(State, HandsTheLastUnitsOnToTheNextConversion) {
  add_stage(stations_, {{"iunits", "m/s"}, {"ounits", "V"}});
  add_stage(others_, {{"iunits", "-"}, {"ounits", "-"}});
  parse(stage_alone());
  EXPECT_THAT(convert(0), HasSubstr(units("m/s", "V")));
  EXPECT_THAT(convert(others_, 0), HasSubstr(units("V", "V")));
  XmlResponse::forget_units();
  EXPECT_THAT(convert(others_, 0), HasSubstr(units("unknown", "unknown")));
}

TEST_F(State, StartsWithEmptyFieldBuffers) {
  add_stage(stations_, {});
  stations_.change_schema("stage", "iunits ", "xunits ");
  parse(stage_alone());
  EXPECT_THAT(convert(0), HasSubstr(units("", "V")));
}

TEST_F(State, KeepsTheTextOfAFieldThatTheNextDatabaseDoesNotHave) {
  add_stage(stations_, {{"iunits", "m/s"}, {"ounits", "V"}});
  add_stage(others_, {{"iunits", "other"}, {"ounits", "counts"}});
  others_.change_schema("stage", "iunits ", "xunits ");
  parse(stage_alone());
  convert(0);
  EXPECT_THAT(convert(others_, 0), HasSubstr(units("m/s", "counts")));
  EXPECT_THAT(convert(0), HasSubstr(units("m/s", "V")));
}

TEST_F(State, KeepsBothUnitsOfARowWithoutEither) {
  add_stage(stations_, {{"iunits", "m/s"}, {"ounits", "V"}});
  add_stage(others_, {{"iunits", "other"}, {"ounits", "counts"}});
  others_.change_schema("stage", "ounits ", "xunits ");
  parse(stage_alone());
  convert(0);
  EXPECT_THAT(convert(others_, 0), HasSubstr(units("other", "V")));
}

TEST_F(State, CutsUnitsThatAreWiderThanTheirBuffer) {
  add_stage(stations_, {{"iunits", "ABCDEFGHIJKLMNOP"}, {"ounits", "V"}});
  // One field where two were: its value is "ABCDEFGHIJKLMNOP V".
  stations_.change_schema("stage",
                          "iunits   t 16 %-16s   -              -       unit of the input\n"
                          "        ounits   t 16 %-16s   -              -       unit of the output",
                          "iunits   t 33 %-33s   -              -       unit of the input");
  parse(stage_alone());
  EXPECT_THAT(convert(0), HasSubstr(units("ABCDEFGHIJKLMNOP", "")));
}

TEST_F(State, ReadsAResponseFileOnceInAProcess) {
  add_stage_with_file(stations_, "a.paz");
  const std::string before = convert(0x40);
  EXPECT_THAT(before, HasSubstr("<PolesZeros"));
  stations_.write_file("resp/a.paz", "no response at all");
  EXPECT_EQ(convert(0x40), before);
  // Another database with a file of the same name gets the first one's response.
  add_stage_with_file(others_, "a.paz");
  others_.write_file("resp/a.paz", "no response either");
  EXPECT_EQ(convert(others_, 0x40), before);
}

TEST_F(State, TakesItsOwnResponsesAgainAtEachCallOfTheResponseLevel) {
  add_stage_with_file(stations_, "a.paz");
  add_stage_with_file(others_, "b.paz");
  parse(stage_alone());
  const std::string document = convert(0x40);
  EXPECT_THAT(document, HasSubstr("<PolesZeros"));
  // A program may write stages of its own between two conversions.
  ResponseCache cache(others_.database(), "stage");
  XmlResponse::set_cache(cache);
  EXPECT_THAT(convert(others_, 0x00), HasSubstr("<PolesZeros"));
  EXPECT_EQ(convert(0x40), document);
  const CollectedLog log;
  EXPECT_THAT(convert(others_, 0x00), Not(HasSubstr("<PolesZeros")));
  EXPECT_THAT(log.lines(), ElementsAre(HasSubstr("\"resp/b.paz\"")));
}

TEST_F(State, ReadsNoResponsesForAMasterViewThatCannotBeMade) {
  add_stage_with_file(stations_, "a.paz");
  add_stage_with_file(others_, "b.paz");
  parse(stage_alone());
  setarr(subset_, "nosuch", "/x/");
  EXPECT_THROW(convert(0x40), dbquery_error);
  delarr(subset_, "nosuch");
  EXPECT_THAT(convert(others_, 0x40), HasSubstr("<PolesZeros"));
}

TEST_F(State, PreparesNothingOverAMasterViewThatCannotBeMade) {
  add_stage_with_file(stations_, "a.paz");
  parse(stage_alone());
  convert(0x40);  // the responses are there
  setarr(subset_, "nosuch", "/x/");
  for (const unsigned int level : {0x08u, 0x40u}) {
    EXPECT_THROW(prepare_conversion(stations_.database(), pf_, subset_, level), dbquery_error) << level;
  }
}

TEST_F(State, GoesBackToItsFirstResponsesWhateverCacheWasSetSince) {
  add_stage_with_file(stations_, "a.paz");
  add_stage_with_file(others_, "b.paz");
  parse(stage_alone());
  convert(0x40);
  ResponseCache cache(others_.database(), "stage");
  XmlResponse::set_cache(cache);
  const CollectedLog log;
  EXPECT_THAT(convert(others_, 0x40), Not(HasSubstr("<PolesZeros")));
  EXPECT_THAT(log.lines(), ElementsAre(HasSubstr("\"resp/b.paz\"")));
}

TEST_F(State, TriesAgainAfterResponsesThatCouldNotBeRead) {
  add_stage_with_file(stations_, "a.paz");
  stations_.change_schema("stage", "dfile ", "xfile ");
  add_stage_with_file(others_, "a.paz");
  const CollectedLog log;
  try {
    convert(0x40);
    ADD_FAILURE() << "no exception";
  } catch (const dbquery_error& e) {
    EXPECT_STREQ(e.std::runtime_error::what(), "unsuccessful query of dbRECORD_COUNT");
  }
  EXPECT_THAT(convert(others_, 0x40), HasSubstr("<PolesZeros"));
}

TEST_F(State, KeepsTheNullValueOfAFieldsPosition) {
  add_channels({"BHZ"});
  others_.change_schema("site", "-999.0000      degrees latitude", "-99.0000       degrees latitude");
  others_.add_network("KR");
  others_.add_station("KR", "AAK", "-99.0000");
  others_.add_channel("AAK", "BHZ");
  parse(value_alone("Latitude - deg_lat site.lat"));
  EXPECT_THAT(convert(0), HasSubstr("42.637500"));
  EXPECT_THAT(convert(others_, 0), HasSubstr(">81.000000<"));
}

TEST_F(State, AsksTheFirstDatabaseForItsNullValue) {
  others_.change_schema("site", "-999.0000      degrees latitude", "-99.0000       degrees latitude");
  others_.add_network("KR");
  others_.add_station("KR", "AAK", "-99.0000");
  others_.add_channel("AAK", "BHZ");
  parse(value_alone("Latitude - deg_lat site.lat"));
  EXPECT_THAT(convert(others_, 0), HasSubstr("<!--null-->0.0"));
}

// The same number, but not the same text.
TEST_F(State, ComparesNullValuesLetterByLetter) {
  add_channels({"BHZ"});
  others_.change_schema("site", "-999.0000      degrees latitude", "-999.0         degrees latitude");
  others_.add_network("KR");
  others_.add_station("KR", "AAK", "-999.0");
  others_.add_channel("AAK", "BHZ");
  parse(value_alone("Latitude - deg_lat site.lat"));
  EXPECT_THAT(convert(0), HasSubstr(">42.637500<"));
  EXPECT_THAT(convert(others_, 0), HasSubstr(">81.000000<"));
}

TEST_F(State, RemembersEveryKeywordItHasMet) {
  add_channels({"BHZ"});
  add_channels(others_, {"BHZ"});
  EXPECT_EQ(INTERPRETERS.size(), 18u);
  parse(value_alone("A - foo site.lat"));
  EXPECT_THAT(convert(0), HasSubstr("<A>42.637500</A>"));
  EXPECT_EQ(INTERPRETERS.size(), 19u);
  parse(value_alone("A - bar site.lat"));
  convert(others_, 0);
  convert(others_, 0);
  EXPECT_EQ(INTERPRETERS.size(), 20u);
  EXPECT_EQ(INTERPRETERS.at("foo"), deg_lat);
  EXPECT_EQ(INTERPRETERS.at("bar"), deg_lat);
}

// A group tagged Channel whose sample rate is `samplerate`, and a response below it.
std::string channel_tree(const std::string& samplerate) {
  return preamble("channel") +
         definition("channel", "Channel", "", "SampleRate - text " + samplerate + "\nresponse_group - GROUP\n") +
         definition("response_group", "Response", "", "");
}

class SampleRate : public State {
 protected:
  // What the response line of a channel gives by itself: no channel's own rate is looked at.
  std::string response_line(Stations& stations) {
    const Dbptr view = prepare_conversion(stations.database(), pf_, subset_, 0);
    const ElementGroup channel(pf_, "channel");
    std::ostringstream out;
    xml_create_group_line(out, view, channel, channel[1], SmartIndex(1, true));
    return out.str();
  }
};

TEST_F(SampleRate, IsNotZeroBeforeTheFirstChannel) {
  add_channels({"BHZ"});
  parse(channel_tree("0"));
  EXPECT_THAT(response_line(stations_), HasSubstr("<Response>"));
}

TEST_F(SampleRate, OfTheLastChannelOutlivesItsConversion) {
  add_channels({"BHZ"});
  add_channels(others_, {"BHZ"});
  parse(channel_tree("0"));
  EXPECT_THAT(convert(0), Not(HasSubstr("<Response>")));
  EXPECT_EQ(response_line(others_), "");
  // Other groups leave it as it is.
  parse(value_alone("SampleRate - text 40"));
  convert(0);
  parse(channel_tree("40"));
  EXPECT_EQ(response_line(others_), "");
  EXPECT_THAT(convert(0), HasSubstr("<Response>"));
  EXPECT_THAT(response_line(others_), HasSubstr("<Response>"));
}

TEST_F(SampleRate, OfAChannelThatCannotBeWrittenLeavesTheOneBefore) {
  add_channels({"BHZ"});
  const std::string definitions = channel_tree("0") +
                                  definition("odd_value", "Channel", "", "SampleRate - text 0\nA - deg_lat nosuch\n") +
                                  definition("odd_attribute", "Channel", "a;b - text 1\n", "SampleRate - text 0\n");
  parse(definitions);
  const Dbptr view = prepare_conversion(stations_.database(), pf_, subset_, 0);
  std::ostringstream out;
  for (const char* name : {"odd_value", "odd_attribute"}) {
    EXPECT_THROW(xml_create_node(out, view, ElementGroup(pf_, name), SmartIndex(1, true)), std::runtime_error);
  }
  EXPECT_EQ(out.str(), "");
  xml_depth = 0;
  EXPECT_THAT(response_line(stations_), HasSubstr("<Response>"));
}

TEST_F(SampleRate, OfAChannelWithinAnotherCountsForTheOuterOnesLaterLines) {
  add_channels({"BHZ"});
  parse(preamble("channel") +
        definition("channel", "Channel", "", "SampleRate - text 40\ninner - GROUP\nresponse_group - GROUP\n") +
        definition("inner", "Channel", "", "SampleRate - text 0\n") + definition("response_group", "Response", "", ""));
  EXPECT_EQ(convert(0),
            " <Channel>\n  <SampleRate>40</SampleRate>\n  <Channel>\n   <SampleRate>0</SampleRate>\n  </Channel>\n"
            " </Channel>\n");
}

TEST_F(State, KeepsVerbosityAndCutOfTheLatestCall) {
  add_channels({"BHZ"});
  parse(whole_tree());
  const ElementGroup station(pf_, "station");
  const CollectedLog log;
  convert(0x0B);
  EXPECT_EQ(verbosity, 3u);
  EXPECT_TRUE(max_detail_level_reached(station));
  convert(0x41);
  EXPECT_EQ(verbosity, 1u);
  EXPECT_FALSE(max_detail_level_reached(station));
  convert(0x00);
  EXPECT_EQ(verbosity, 0u);
}

TEST_F(State, TakesEachCallsParameterFile) {
  add_channels({"BHZ"});
  EXPECT_THAT(convert(0), HasSubstr("<FDSNStationXML"));
  EXPECT_EQ(date_xml_format, "%G");
  parse("epochtime_xmlstring_format %Y\njdate_xmlstring_format %j\nroot_node root\n" +
        definition("root", "Other", "", "child - GROUP\n") + definition("child", "Child", "", ""));
  EXPECT_EQ(convert(0), " <Other>\n  <Child>\n  </Child>\n </Other>\n");
  EXPECT_EQ(date_xml_with_ms_format, "%Y");
  EXPECT_EQ(date_xml_format, "%j");
}

TEST_F(State, KeepsTheDepthAndTheTextOfADocumentThatWasBrokenOff) {
  add_channels({"BHZ"});
  parse(preamble("root") + definition("root", "Root", "", "A - text 1\nchild - GROUP\n") +
        definition("child", "Child", "", "B - deg_lat site.sta\n"));
  std::ostringstream out;
  EXPECT_THROW(db2stationxml(stations_.database(), pf_, subset_, out, 0), std::invalid_argument);
  EXPECT_EQ(out.str(), " <Root>\n  <A>1</A>\n");
  EXPECT_EQ(xml_depth, 2u);
  parse(value_alone("A - text 1"));
  EXPECT_EQ(convert(0), "   <Root>\n    <A>1</A>\n   </Root>\n");
  EXPECT_EQ(xml_depth, 2u);
}

TEST_F(State, TellsOfAStageWhoseUnitsAreChainedThroughAFailure) {
  add_stage(stations_, {{"ounits", "PA"}, {"dir", "resp"}, {"dfile", "missing.paz"}});
  add_stage(others_, {{"iunits", "-"}, {"ounits", "-"}});
  parse(stage_alone());
  const CollectedLog log;
  EXPECT_EQ(convert(0x40), " <Root>\n </Root>\n");
  EXPECT_THAT(log.lines_with("warning: "), ElementsAre(HasSubstr("\"resp/missing.paz\"")));
  EXPECT_THAT(convert(others_, 0x40), HasSubstr(units("PA", "PA")));
}

}  // namespace
}  // namespace triglub_test
