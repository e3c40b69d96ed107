#include <gmock/gmock.h>

#include "conversion.h"
#include "dbhelper.h"
#include "support/collected_log.h"

namespace triglub_test {
namespace {

using ::testing::ElementsAre;
using ::testing::ExitedWithCode;
using ::testing::HasSubstr;
using ::testing::Not;

class NodeWriter : public Conversion {
 protected:
  // The document of a root group with these lines and further definitions.
  std::string document(const std::string& lines, const std::string& definitions = "", unsigned int flags = 0) {
    parse(preamble("root") + definition("root", "Root", "", lines) + definitions);
    return convert(flags);
  }
  // What stands between the root's tags.
  std::string body(const std::string& lines, const std::string& definitions = "", unsigned int flags = 0) {
    const std::string text = document(lines, definitions, flags);
    EXPECT_TRUE(text.starts_with(" <Root>\n") && text.ends_with(" </Root>\n")) << text;
    return text.substr(8, text.size() - 17);
  }
};

TEST_F(NodeWriter, WritesNothingForAnEmptyIndex) {
  add_channels({"BHZ", "BHN"});
  parse(whole_tree());
  const Dbptr view = prepare_conversion(stations_.database(), pf_, subset_, 0);
  std::ostringstream out;
  xml_depth = 20;  // would be too deep, if it were looked at
  xml_create_node(out, view, ElementGroup(pf_, "root"), SmartIndex(2, false));
  EXPECT_EQ(out.str(), "");
  EXPECT_EQ(xml_depth, 20u);
}

TEST_F(NodeWriter, WritesNothingForAnIndexThatHasLostItsLowerBorder) {
  add_channels({"BHZ", "BHN"});
  parse(whole_tree());
  const Dbptr view = prepare_conversion(stations_.database(), pf_, subset_, 0);
  SmartIndex index(2, true);
  index.set(0, false);
  ASSERT_EQ(index.as_string(), "([01],2,1)");
  std::ostringstream out;
  xml_create_node(out, view, ElementGroup(pf_, "root"), index);
  EXPECT_EQ(out.str(), "");
  index.reset_borders();
  xml_create_node(out, view, ElementGroup(pf_, "root"), index);
  EXPECT_THAT(out.str(), HasSubstr("<Channel code=\"BHZ\""));
}

TEST_F(NodeWriter, TellsOfNodesWithoutRecordsToo) {
  add_channels({"BHZ"});
  parse(whole_tree());
  const Dbptr view = prepare_conversion(stations_.database(), pf_, subset_, 3);
  std::ostringstream out;
  const CollectedLog log;
  xml_create_node(out, view, ElementGroup(pf_, "root"), SmartIndex(1, false));
  EXPECT_THAT(log.lines(), ElementsAre("debug: Function: xml_create_node"));
}

TEST_F(NodeWriter, EvaluatesAttributesBeforeElementsEachOnce) {
  add_channels({"BHZ"});
  parse(preamble("root") + definition("root", "Root", "a - float 1 / 0\nb x float 2 / 0\n",
                                      "c - float 3 / 0\nd x float 4 / 0\ne - integer 5 % 0\n"));
  const CollectedLog log;
  EXPECT_EQ(convert(0), " <Root a=\"0\"  >\n  <c>0</c>\n  <e>0</e>\n </Root>\n");
  EXPECT_THAT(log.lines(), ElementsAre("warning: dbex_evalstr failure [1 / 0]", "warning: dbex_evalstr failure [3 / 0]",
                                       "warning: dbex_evalstr failure [5 % 0]"));
}

TEST_F(NodeWriter, WritesContentAloneForALineThatIsTransparent) {
  add_channels({"BHZ"});
  EXPECT_EQ(body("- - text one\n- - count sitechan.sta\n"), "  one\n  1\n");
}

TEST_F(NodeWriter, CountsANullAsOneValue) {
  add_channels({"BHZ", "BHN"});
  EXPECT_EQ(body("N - count stage.stageid\nM - count schanloc.auth\n"), "  <N>1</N>\n  <M>1</M>\n");
}

TEST_F(NodeWriter, WritesLinesInOrder) {
  add_channels({"BHZ"});
  EXPECT_EQ(
      body("B - text 2\nA - text 1\nskipped x text 3\nempty - text\nCount - count sitechan.sta\nR - record_count x\n"),
      "  <B>2</B>\n  <A>1</A>\n  <empty></empty>\n  <Count>1</Count>\n  <R></R>\n");
}

TEST_F(NodeWriter, NeverLooksAtLinesThatAreIgnored) {
  add_channels({"BHZ"});
  EXPECT_EQ(body("missing x GROUP\nmissing x CATEGORIZED_GROUP nosuch\nmissing x CATEGORIZED_BY_NUMBER nosuch\n"
                 "n x count nosuch\nb@d x text 1\nA - text 1\n"),
            "  <A>1</A>\n");
}

TEST_F(NodeWriter, DoesNotEscapeOrAlterContent) {
  add_channels({"BHZ"});
  EXPECT_EQ(body("A - text a & b <c/>\nL - deg_lat site.lat\n"), "  <A>a & b <c/></A>\n  <L>42.637500</L>\n");
}

TEST_F(NodeWriter, WrapsLongContent) {
  add_channels({"BHZ"});
  const std::string text(80, 'x');
  EXPECT_EQ(body("A - text " + text + "\n"), "  <A>\n   " + text + "\n  </A>\n");
}

TEST_F(NodeWriter, IndentsBelowATransparentGroup) {
  add_channels({"BHZ"});
  EXPECT_EQ(body("inner - GROUP\nB - text 2\n", definition("inner", "-", "", "A - text 1\n")),
            "   <A>1</A>\n  <B>2</B>\n");
}

TEST_F(NodeWriter, MayHaveATransparentRoot) {
  add_channels({"BHZ"});
  parse(preamble("root") + definition("root", "-", "", "A - text 1\n"));
  EXPECT_EQ(convert(0), "  <A>1</A>\n");
}

TEST_F(NodeWriter, TakesValuesFromTheFirstRecord) {
  add_channels({"BHZ", "BHN", "BHE"});
  EXPECT_EQ(body("C - string sitechan.chan\n"), "  <C>BHE</C>\n");
}

TEST_F(NodeWriter, CountsDistinctValuesOfTheNodesRecords) {
  add_two_networks();
  stations_.add_stage("AAK", "BHN", 1);
  stations_.add_stage("AAK", "BHN", 2);
  EXPECT_EQ(body("Stations - count sitechan.sta\nChannels - count sitechan.chan\nn - CATEGORIZED_GROUP snetsta.snet\n",
                 definition("n", "N", "", "Stations - count sitechan.sta\nChannels - count sitechan.chan\n")),
            "  <Stations>2</Stations>\n  <Channels>2</Channels>\n"
            "  <N>\n   <Stations>1</Stations>\n   <Channels>1</Channels>\n  </N>\n"
            "  <N>\n   <Stations>1</Stations>\n   <Channels>2</Channels>\n  </N>\n");
}

std::string group_with(const std::string& value) { return definition("c", "C", "v - string " + value + "\n", ""); }

TEST_F(NodeWriter, SplitsByCategoryInByteOrder) {
  add_channels({"9", "100", "10"});
  EXPECT_EQ(body("c - CATEGORIZED_GROUP sitechan.chan\n", group_with("sitechan.chan")),
            "  <C v=\"10\" >\n  </C>\n  <C v=\"100\" >\n  </C>\n  <C v=\"9\" >\n  </C>\n");
  EXPECT_EQ(body("c - CATEGORIZED_BY_NUMBER sitechan.chan\n", group_with("sitechan.chan")),
            "  <C v=\"9\" >\n  </C>\n  <C v=\"10\" >\n  </C>\n  <C v=\"100\" >\n  </C>\n");
}

TEST_F(NodeWriter, SkipsACategoryThatIsNullForAll) {
  add_channels({"BHZ", "BHN"});
  const CollectedLog log;
  EXPECT_EQ(body("c - CATEGORIZED_BY_NUMBER stage.stageid\nA - text 1\n", group_with("sitechan.chan"), 1),
            "  <A>1</A>\n");
  EXPECT_THAT(log.lines(), ::testing::Contains("debug:  vector Categorized Group:contains: | -1"));
}

TEST_F(NodeWriter, WritesANullCategoryAmongOthers) {
  stations_.add_network("KR");
  stations_.add_station("KR", "AAK");
  stations_.add_channel("AAK", "A", "BH");
  stations_.add_channel("AAK", "B", "-1");
  EXPECT_EQ(body("c - CATEGORIZED_GROUP schanloc.loc\n", group_with("schanloc.loc")),
            "  <C v=\"-1\" >\n  </C>\n  <C v=\"BH\" >\n  </C>\n");
}

TEST_F(NodeWriter, GivesEachRecordToOneCategory) {
  // In view order the locations are AA, AAB, AA, AAB: AA takes what lies between its first and last record.
  stations_.add_network("KR");
  stations_.add_station("KR", "AAK");
  stations_.add_channel("AAK", "A", "AA");
  stations_.add_channel("AAK", "B", "AAB");
  stations_.add_channel("AAK", "C", "AA");
  stations_.add_channel("AAK", "D", "AAB");
  EXPECT_EQ(body("c - CATEGORIZED_GROUP schanloc.loc\n",
                 definition("c", "C", "v - string schanloc.loc\n", "Channels - count sitechan.chan\n")),
            "  <C v=\"AA\" >\n   <Channels>3</Channels>\n  </C>\n"
            "  <C v=\"AAB\" >\n   <Channels>1</Channels>\n  </C>\n");
}

TEST_F(NodeWriter, TakesNoRecordFromAnEarlierCategory) {
  // B, A, B: what B's first and last record enclose is A's already.
  stations_.add_network("KR");
  stations_.add_station("KR", "AAK");
  stations_.add_channel("AAK", "X", "B");
  stations_.add_channel("AAK", "Y", "A");
  stations_.add_channel("AAK", "Z", "B");
  EXPECT_EQ(body("c - CATEGORIZED_GROUP schanloc.loc\n",
                 definition("c", "C", "v - string schanloc.loc\n", "Channels - count sitechan.chan\n")),
            "  <C v=\"A\" >\n   <Channels>1</Channels>\n  </C>\n"
            "  <C v=\"B\" >\n   <Channels>2</Channels>\n  </C>\n");
}

TEST_F(NodeWriter, WritesNothingForACategoryThatLostItsRecords) {
  stations_.add_network("KR");
  stations_.add_station("KR", "AAK");
  stations_.add_channel("AAK", "A", "AA");
  stations_.add_channel("AAK", "B", "AAB");
  stations_.add_channel("AAK", "C", "AA");
  EXPECT_EQ(body("c - CATEGORIZED_GROUP schanloc.loc\n", group_with("schanloc.loc")), "  <C v=\"AA\" >\n  </C>\n");
}

TEST_F(NodeWriter, TakesNothingFromACategoryThatMerelyContainsAnother) {
  add_channels({"AA", "AAB"});
  EXPECT_EQ(body("c - CATEGORIZED_GROUP sitechan.chan\n",
                 definition("c", "C", "v - string sitechan.chan\n", "Channels - count sitechan.chan\n")),
            "  <C v=\"AA\" >\n   <Channels>1</Channels>\n  </C>\n"
            "  <C v=\"AAB\" >\n   <Channels>1</Channels>\n  </C>\n");
}

TEST_F(NodeWriter, PutsCategoriesIntoTheConditionAsTheyStand) {
  add_channels({"A(B"});
  const auto convert_it = [&] { document("c - CATEGORIZED_GROUP sitechan.chan\n", group_with("sitechan.chan")); };
  EXPECT_EXIT(convert_it(), ExitedWithCode(1), "fatal: expression didn't compile: \\[sitechan.chan =~ /A\\(B/\\]");
}

TEST_F(NodeWriter, CanWriteAGroupTwice) {
  add_channels({"BHZ", "BHN"});
  EXPECT_EQ(body("c - CATEGORIZED_GROUP sitechan.chan\nc - GROUP\n", group_with("sitechan.chan")),
            "  <C v=\"BHN\" >\n  </C>\n  <C v=\"BHZ\" >\n  </C>\n  <C v=\"BHN\" >\n  </C>\n");
}

// A channel whose sample rate line is `samplerate`, with a response below it.
std::string channel_with(const std::string& samplerate, const std::string& name = "Channel") {
  return definition("channel", name, "", samplerate + "response_group - GROUP\n") +
         definition("response_group", "Response", "", "");
}

TEST_F(NodeWriter, WritesTheResponseOfAChannelWithSamples) {
  add_channels({"BHZ"});
  const std::string response = "   <Response>\n   </Response>\n";
  const struct {
    const char* samplerate;
    bool written;
  } cases[] = {
      {"SampleRate - text 40\n", true},  {"SampleRate - text 0\n", false},      {"", false},
      {"SampleRate - text 0.0\n", true}, {"SampleRate - text\n", true},         {"samplerate - text 40\n", false},
      {"SampleRate x text 0\n", false},  {"SampleRate - float 1 - 1\n", false},
  };
  for (const auto& c : cases) {
    const std::string text = body("channel - GROUP\n", channel_with(c.samplerate));
    EXPECT_EQ(text.find(response) != std::string::npos, c.written) << c.samplerate << text;
  }
}

TEST_F(NodeWriter, TakesASampleRateThatIsAGroupByTheTextInTheFile) {
  add_channels({"BHZ"});
  for (const char* text : {"0", "40"}) {
    const std::string line = std::string("SampleRate - GROUP ") + text + "\n";
    // Another node of the same depth has been written before.
    const std::string before = "other - GROUP\n";
    const std::string definitions =
        channel_with(line) + definition("SampleRate", "-", "", "") + definition("other", "Other", "", "A - text 7\n");
    const std::string document = body(before + "channel - GROUP\n", definitions);
    EXPECT_EQ(document.find("<Response>") == std::string::npos, std::string(text) == "0") << document;
  }
}

TEST_F(NodeWriter, SuppressesOnlyTheResponseGroupOfAChannel) {
  add_channels({"BHZ"});
  EXPECT_EQ(body("channel - GROUP\n",
                 definition("channel", "Channel", "", "other - GROUP\n") + definition("other", "Response", "", "")),
            "  <Channel>\n   <Response>\n   </Response>\n  </Channel>\n");
  EXPECT_THAT(body("channel - GROUP\n", channel_with("SampleRate - text 0\n", "Stream")), HasSubstr("<Response>"));
}

TEST_F(NodeWriter, SuppressesOnlyPlainGroupsOfThatName) {
  add_channels({"BHZ"});
  const std::string response = definition("response_group", "Response", "", "");
  for (const char* type : {"CATEGORIZED_GROUP", "CATEGORIZED_BY_NUMBER"}) {
    EXPECT_EQ(body("channel - GROUP\n",
                   definition("channel", "Channel", "", std::string("response_group - ") + type + " schanloc.loc\n") +
                       response),
              "  <Channel>\n   <Response>\n   </Response>\n  </Channel>\n")
        << type;
  }
  EXPECT_EQ(body("channel - GROUP\n", definition("channel", "Channel", "", "response_group - text 1\n")),
            "  <Channel>\n   <response_group>1</response_group>\n  </Channel>\n");
}

TEST_F(NodeWriter, JudgesEachChannelByItsOwnSampleRate) {
  add_channels({"BHZ", "LOG"});
  const std::string none = channel_with("");
  EXPECT_THAT(body("channel - GROUP\n", none), Not(HasSubstr("<Response>")));
  EXPECT_THAT(body("channel - GROUP\n", channel_with("SampleRate - text 20\n")), HasSubstr("<Response>"));
  EXPECT_THAT(body("channel - GROUP\n", none), Not(HasSubstr("<Response>")));
}

TEST_F(NodeWriter, WritesResponseStagesInPlace) {
  add_channels({"BHZ"});
  stations_.add_stage("AAK", "BHZ", 1);
  EXPECT_EQ(body("A - text 1\nstage - STAGE stage\nskipped x STAGE stage\nB - text 2\n"),
            "  <A>1</A>\n" + digital_stage() + "  <B>2</B>\n");
}

TEST_F(NodeWriter, WritesNothingOfAStageWhoseFileHoldsSeveralFilters) {
  add_channels({"BHZ"});
  stations_.add_stage("AAK", "BHZ", 1, {{"dir", "resp"}, {"dfile", "two.paz"}});
  const std::string filter = "theoretical 1 instrument paz\n1.0\n0\n0\n";
  stations_.write_file("resp/two.paz", filter + filter);
  const CollectedLog log;
  EXPECT_EQ(body("stage - STAGE stage\nA - text 1\n", "", 0x40), "  <A>1</A>\n");
  EXPECT_THAT(log.lines(),
              ElementsAre(HasSubstr("warning: Problem with Response: expected single group. instead got 2 [db(")));
}

TEST_F(NodeWriter, LeavesGroupLinesToWhoeverWritesThem) {
  add_channels({"BHZ"});
  parse(preamble("root") + definition("root", "Root", "code - string sitechan.chan\n",
                                      "A - text 1\nn - GROUP\nB - count sitechan.sta\nx x GROUP\n"
                                      "c - CATEGORIZED_GROUP sta\nm - CATEGORIZED_BY_NUMBER sta\n"));
  const Dbptr view = prepare_conversion(stations_.database(), pf_, subset_, 0);
  std::ostringstream out;
  const GroupLineWriter writer = [&](const ElementDescription& line) { out << "[" << line.name() << "]"; };
  xml_create_node(out, view, ElementGroup(pf_, "root"), SmartIndex(1, true), writer);
  EXPECT_EQ(out.str(), " <Root code=\"BHZ\" >\n  <A>1</A>\n[n]  <B>1</B>\n[c][m] </Root>\n");
  xml_create_node(out, view, ElementGroup(pf_, "root"), SmartIndex(1, false), writer);
  EXPECT_TRUE(out.str().ends_with("[c][m] </Root>\n"));
}

TEST_F(NodeWriter, WritesOneGroupLineByItself) {
  add_channels({"BHZ", "BHN"});
  parse(preamble("root") + definition("root", "Root", "", "c - CATEGORIZED_GROUP sitechan.chan\nc - GROUP\n") +
        group_with("sitechan.chan"));
  const Dbptr view = prepare_conversion(stations_.database(), pf_, subset_, 0);
  const ElementGroup root(pf_, "root");
  const auto line = [&](std::size_t i, const SmartIndex& index) {
    std::ostringstream out;
    xml_create_group_line(out, view, root, root[i], index);
    return out.str();
  };
  EXPECT_EQ(line(0, SmartIndex(2, true)), " <C v=\"BHN\" >\n </C>\n <C v=\"BHZ\" >\n </C>\n");
  EXPECT_EQ(line(0, SmartIndex(std::vector<bool>{false, true})), " <C v=\"BHZ\" >\n </C>\n");
  EXPECT_EQ(line(1, SmartIndex(2, true)), " <C v=\"BHN\" >\n </C>\n");
  EXPECT_EQ(line(0, SmartIndex(2, false)), "");
}

TEST_F(NodeWriter, WritesFifteenLevels) {
  add_channels({"BHZ"});
  std::string definitions;
  for (int i = 2; i <= 16; ++i) {
    definitions +=
        definition("g" + std::to_string(i), "G", "", i < 16 ? "g" + std::to_string(i + 1) + " - GROUP\n" : "");
  }
  EXPECT_EXIT(document("g2 - GROUP\n", definitions), ExitedWithCode(1),
              "fatal: Exceeded maximum node level. Group recursion in parameter file\\?");
  // The walk before the writing lets the root and fifteen levels below it pass.
  EXPECT_EXIT(document("g2 - GROUP\n", definitions, 1), ExitedWithCode(1), "fatal: Exceeded maximum node level");
  // One level less.
  const std::string text = document("g3 - GROUP\n", definitions);
  EXPECT_THAT(text, HasSubstr("\n               <G>\n               </G>\n"));
  EXPECT_EQ(xml_depth, 0u);
}

TEST_F(NodeWriter, JudgesTheDepthBeforeAnyValue) {
  add_channels({"BHZ"});
  parse(preamble("root") + definition("root", "Root", "", "A - deg_lat nosuch\n"));
  const Dbptr view = prepare_conversion(stations_.database(), pf_, subset_, 0);
  std::ostringstream out;
  const auto write_at = [&](unsigned int depth) {
    xml_depth = depth;
    xml_create_node(out, view, ElementGroup(pf_, "root"), SmartIndex(1, true));
  };
  EXPECT_THROW(write_at(14), std::runtime_error);
  EXPECT_EXIT(write_at(15), ExitedWithCode(1), "fatal: Exceeded maximum node level. Group recursion");
  EXPECT_EQ(out.str(), "");
}

TEST_F(NodeWriter, FlushesTagLines) {
  add_channels({"BHZ"});
  parse(preamble("root") + definition("root", "Root", "", "A - text 1\n"));
  struct Flushes : std::stringbuf {
    int count = 0;
    int sync() override { return ++count, 0; }
  } buffer;
  std::ostream out(&buffer);
  db2stationxml(stations_.database(), pf_, subset_, out, 0);
  EXPECT_EQ(buffer.count, 2);
}

TEST_F(NodeWriter, LeavesAttributesAloneThatAreIgnored) {
  add_channels({"BHZ"});
  EXPECT_EQ(body("c - GROUP\n", definition("c", "C", "a x GROUP v\nb<c x text v\n", "")), "  <C  >\n  </C>\n");
}

TEST_F(NodeWriter, CannotEvaluateAnAttributeThatIsAGroup) {
  add_channels({"BHZ"});
  EXPECT_THROW(document("c - GROUP\n", definition("c", "C", "a - GROUP v\n", "")), std::logic_error);
}

TEST_F(NodeWriter, TakesOnlyTheWholeNameForAChannel) {
  add_channels({"BHZ"});
  EXPECT_THAT(body("channel - GROUP\n", channel_with("SampleRate - text 0\n", "Channels")), HasSubstr("<Response>"));
}

// A category that says more than itself goes the long way: the records between its matches are its own too.
TEST_F(NodeWriter, TakesCategoriesForPatterns) {
  stations_.add_network("XX");
  for (const char* sta : {"S1", "S2", "S3"}) {
    stations_.add_row("snetsta", {{"snet", "XX"}, {"fsta", sta}, {"sta", sta}});
    stations_.add_row("site", {{"sta", sta}, {"ondate", "1990001"}, {"staname", sta[1] == '1' ? "A.B" : "AxB"}});
    stations_.add_channel(sta, "BHZ");
  }
  const std::string text =
      document("c - CATEGORIZED_GROUP site.staname\nN - count site.staname\n",
               definition("c", "C", "v - string site.staname\n", "Stations - count site.sta\n"), 1);
  EXPECT_THAT(text, HasSubstr("  <C v=\"A.B\" >\n   <Stations>3</Stations>\n  </C>\n  <N>2</N>\n"));
  EXPECT_THAT(text, Not(HasSubstr("AxB")));
}

TEST_F(NodeWriter, TracesCategoriesThatArePatterns) {
  add_channels({"BHZ"});
  const CollectedLog log;
  document("c - CATEGORIZED_GROUP site.lat\n", definition("c", "C", "", ""), 1);
  EXPECT_THAT(log.lines(), testing::Contains("debug:  vector Categorized Group:contains: | 42.6375"));
}

}  // namespace
}  // namespace triglub_test
