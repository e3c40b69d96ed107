// What of an element is written, left out and taken back.
#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "document/written.h"
#include "tree/tree_reading.h"

namespace triglub_test {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;

using triglub::DetailLevel;

// Station AAK with channels BHE (no descrip) and BHZ.
const MadeRows kRows = {
    {"network", {{"net", "KR"}, {"netname", "Kyrgyz"}}},
    {"snetsta", {}},
    {"site", {{"lat", "42.6375"}, {"lon", "200.5"}}},
    {"sitechan", {{"chan", "BHE"}}},
    {"sitechan", {{"chan", "BHZ"}, {"descrip", "vertical <1>"}}},
};

std::string optional(const std::string& names) { return "optional &Tbl{\n" + names + "}\n"; }

struct Case {
  const char* what;
  std::string tree;
  std::string text;
};

const Case kCases[] = {
    {"an empty value stands empty", document("a - string nettype\n", "B - string nettype\n"),
     " <Root a=\"\">\n  <B></B>\n </Root>\n"},
    {"optional lines that are empty are not there",
     document("a - string nettype\nb - string net\n", "B - string nettype\nC - string netname\n",
              optional("a\nB\nC\n")),
     " <Root b=\"KR\">\n  <C>Kyrgyz</C>\n </Root>\n"},
    {"a required attribute that is empty leaves out the element", document("a r string nettype\n", "B - string net\n"),
     ""},
    {"a required leaf that is empty leaves out the element", document("a - string net\n", "B r string nettype\n"), ""},
    {"of one element only",
     document("", "A - string net\ngone - GROUP\nB - string net\n", "",
              group("gone", "Gone", "", "X - string net\nY r string nettype\n")),
     " <Root>\n  <A>KR</A>\n  <B>KR</B>\n </Root>\n"},
    {"a required group that writes nothing leaves out the element",
     document("", "A - string net\ngone r GROUP\n", "", group("gone", "Gone", "", "Y r string nettype\n")), ""},
    {"a required group that writes something stays", document("", "kept r GROUP\n", "", group("kept", "Kept", "", "")),
     " <Root>\n  <Kept>\n  </Kept>\n </Root>\n"},
    {"a required line of categories needs one of them",
     document("", "channel r CATEGORIZED_GROUP chan\n", "",
              group("channel", "Channel", "code - string chan\n", "Description r string descrip\n")),
     " <Root>\n  <Channel code=\"BHZ\">\n   <Description>vertical &lt;1&gt;</Description>\n  </Channel>\n </Root>\n"},
    {"an optional group that holds nothing is not there",
     document("", "hollow - GROUP\nfull - GROUP\n", optional("hollow\nfull\n"),
              group("hollow", "Hollow", "a - string nettype\n", "B - string nettype\n", optional("a\nB\n")) +
                  group("full", "Full", "a - string nettype\n", "")),
     " <Root>\n  <Full a=\"\">\n  </Full>\n </Root>\n"},
    {"an empty leaf is held",
     document("", "full - GROUP\n", optional("full\n"), group("full", "Full", "", "B - string nettype\n")),
     " <Root>\n  <Full>\n   <B></B>\n  </Full>\n </Root>\n"},
    {"optional groups in each other go together",
     document("", "outer - GROUP\n", optional("outer\n"),
              group("outer", "Outer", "", "inner - GROUP\n", optional("inner\n")) +
                  group("inner", "Inner", "", "B - string nettype\n", optional("B\n"))),
     " <Root>\n </Root>\n"},
    {"a transparent group writes its children in place",
     document("", "A - string net\nbare - GROUP\nC - string net\n", "", group("bare", "-", "", "B - string netname\n")),
     " <Root>\n  <A>KR</A>\n  <B>Kyrgyz</B>\n  <C>KR</C>\n </Root>\n"},
    {"required in a transparent group takes back its content only",
     document("", "A - string net\nbare - GROUP\n", "", group("bare", "-", "", "B - string net\nC r string nettype\n")),
     " <Root>\n  <A>KR</A>\n </Root>\n"},
    {"a required transparent group that writes nothing leaves out the element",
     document("", "A - string net\nbare r GROUP\n", "",
              group("bare", "-", "", "B - string nettype\n", optional("B\n"))),
     ""},
    {"text of the file stands as it is, with entities", document("a - text x &amp; y\n", "B - text 1 &lt; 2\n"),
     " <Root a=\"x &amp; y\">\n  <B>1 &lt; 2</B>\n </Root>\n"},
    {"a line that is left out is not there", document("a x string net\n", "B x string net\nC - string net\n"),
     " <Root>\n  <C>KR</C>\n </Root>\n"},
    {"quotes in attributes are entities", document("a - string concat('\"', net)\n", "B - string concat('\"', net)\n"),
     " <Root a=\"&quot;KR\">\n  <B>\"KR</B>\n </Root>\n"},
    {"a value that is worked out over the records",
     document("", "A - string first(chan)\nB - string latest(chan)\nC - string count(chan)\n"),
     " <Root>\n  <A>BHE</A>\n  <B>BHZ</B>\n  <C>2</C>\n </Root>\n"},
};

TEST(ElementWriter, WritesWhatIsThere) {
  const MadeDatabase made(kRows);
  for (const Case& c : kCases) {
    const Written written = write_document(made, c.tree);
    EXPECT_EQ(written.text, c.text) << c.what;
    EXPECT_EQ(written.is_written, !c.text.empty()) << c.what;
  }
}

TEST(ElementWriter, PartsAreTheWhole) {
  const MadeDatabase made(kRows);
  const std::string channel = group("channel", "Channel", "code - string chan\n", "D - string descrip\n");
  const std::string hollow = group("channel", "Channel", "d - string descrip\n", "", optional("d\n"));
  const std::string trees[] = {
      document("a - string net\n", "A - string net\nchannel - CATEGORIZED_GROUP chan\nB - string net\n", "", channel),
      document("", "channel r CATEGORIZED_GROUP chan\n", "", channel),
      document("", "channel - CATEGORIZED_GROUP chan\n", "", hollow),
      document("", "channel - CATEGORIZED_GROUP chan\n", optional("channel\n"), hollow),
      document("a - deg_lat lon\n", "channel - CATEGORIZED_GROUP chan\nB - deg_lat lon\n", "", channel),
  };
  for (const std::string& tree : trees) {
    const Written whole = write_document(made, tree);
    const Written parts = write_in_parts(made, tree);
    EXPECT_TRUE(parts.is_written) << tree;
    EXPECT_EQ(parts.text, whole.text) << tree;
    EXPECT_EQ(parts.told, whole.told) << tree;
  }
}

TEST(ElementWriter, PartsTellWhatTheWholeTells) {
  // One station in two networks: neighbours with the same row of site.
  const MadeDatabase made({{"site", {{"lon", "200.5"}}}, {"snetsta", {}}, {"snetsta", {{"snet", "XX"}}}});
  const std::string tree = document("", "network - CATEGORIZED_GROUP snet\n", "",
                                    group("network", "Network", "code - string snet\n", "A - deg_lon lon\n"));
  const Written whole = write_document(made, tree);
  EXPECT_THAT(whole.told,
              ElementsAre("note parameter file:17: A: brought into range by whole turns: 2 (site:1; site:1)"));
  EXPECT_EQ(write_in_parts(made, tree).told, whole.told);
}

TEST(ElementWriter, WhatMayBeTakenBackIsWrittenWhole) {
  const MadeDatabase made(kRows);
  const std::string channel = group("channel", "Channel", "code - string chan\n", "");
  const std::string bare = group("bare", "-", "", "channel - CATEGORIZED_GROUP chan\n");
  const std::string trees[] = {
      document("", "channel - CATEGORIZED_GROUP chan\nchannel r GROUP\n", "", channel),
      document("", "bare - GROUP\n", "", bare + channel),
      document("", "A - string net\n"),
      document("a r string nettype\n", "channel - CATEGORIZED_GROUP chan\n", "", channel),
  };
  for (const std::string& tree : trees) EXPECT_FALSE(write_in_parts(made, tree).is_written) << tree;
}

// Channels enough for a text of several of the pieces in which it is handed on.
MadeRows many_channels() {
  MadeRows rows = {{"snetsta", {}}, {"site", {}}};
  for (int i = 0; i < 3000; ++i) {
    rows.push_back({"sitechan", {{"chan", "C" + std::to_string(i)}, {"descrip", std::string(50, 'x')}}});
  }
  return rows;
}

const std::string kLargeChannel = group("channel", "Channel", "code - string chan\n", "D - string descrip\n");

TEST(ElementWriter, ARootThatIsTakenBackHasWrittenNothingHoweverLarge) {
  const MadeDatabase made(many_channels());
  const Written written =
      write_document(made, document("", "channel - CATEGORIZED_GROUP chan\ngone r GROUP\n", "",
                                    kLargeChannel + group("gone", "Gone", "", "Y r string nettype\n")));
  EXPECT_FALSE(written.is_written);
  EXPECT_EQ(written.text.size(), 0U);
}

TEST(ElementWriter, AGroupThatIsTakenBackLeavesTheTextAroundItHoweverLarge) {
  const MadeDatabase made(many_channels());
  const std::string gone = group("gone", "Gone", "", "channel - CATEGORIZED_GROUP chan\nnever r GROUP\n") +
                           group("never", "Never", "", "Y r string nettype\n");
  const Written with = write_document(
      made, document("", "channel - CATEGORIZED_GROUP chan\ngone - GROUP\nlast - GROUP\n", "",
                     kLargeChannel + gone + group("last", "Last", "", "channel - CATEGORIZED_GROUP chan\n")));
  const Written without =
      write_document(made, document("", "channel - CATEGORIZED_GROUP chan\nlast - GROUP\n", "",
                                    kLargeChannel + group("last", "Last", "", "channel - CATEGORIZED_GROUP chan\n")));
  EXPECT_GT(without.text.size(), std::size_t{400000});
  EXPECT_EQ(with.text, without.text);
}

TEST(ElementWriter, AGroupOfNothingButElementsThatAreTakenBackLeavesALargeTextBeforeIt) {
  const MadeDatabase made(kRows);
  const std::string large(std::size_t{1} << 17, 'x');
  const Written written =
      write_document(made, document("", "A - text " + large + "\nbare - GROUP\nB - string net\n", "",
                                    group("bare", "-", "", "channel - CATEGORIZED_GROUP chan\n") +
                                        group("channel", "Channel", "", "Y r string nettype\n")));
  EXPECT_EQ(written.text, " <Root>\n  <A>" + large + "</A>\n  <B>KR</B>\n </Root>\n");
}

TEST(ElementWriter, ARequiredGroupThatComesLateKeepsALargeText) {
  const MadeDatabase made(many_channels());
  const Written written = write_document(made, document("", "channel - CATEGORIZED_GROUP chan\nlast r GROUP\n", "",
                                                        kLargeChannel + group("last", "Last", "", "")));
  EXPECT_TRUE(written.is_written);
  EXPECT_GT(written.text.size(), std::size_t{200000});
  EXPECT_TRUE(written.text.ends_with("  <Last>\n  </Last>\n </Root>\n"));
}

const std::string kLevels =
    document("", "station r GROUP\n", "",
             group("station", "Station", "code - string fsta\n", "channel r CATEGORIZED_GROUP chan\n") +
                 group("channel", "Channel", "code - string chan\n", "stage r CATEGORIZED_GROUP stageid\n") +
                 group("stage", "Stage", "number - integer stageid\n", ""));

TEST(ElementWriter, GroupsBeyondTheLevelAreNotThereAndNotMissed) {
  const MadeDatabase made(kRows);
  const std::string channels = "   <Channel code=\"BHE\">\n   </Channel>\n   <Channel code=\"BHZ\">\n   </Channel>\n";
  EXPECT_EQ(write_document(made, kLevels, DetailLevel::network).text, " <Root>\n </Root>\n");
  EXPECT_EQ(write_document(made, kLevels, DetailLevel::station).text,
            " <Root>\n  <Station code=\"AAK\">\n  </Station>\n </Root>\n");
  EXPECT_EQ(write_document(made, kLevels, DetailLevel::channel).text,
            " <Root>\n  <Station code=\"AAK\">\n" + channels + "  </Station>\n </Root>\n");
  EXPECT_THAT(write_document(made, kLevels).text, HasSubstr("<Stage number=\"\">"));
}

struct ToldCase {
  const char* what;
  std::string tree;
  std::vector<std::string> told;
};

const ToldCase kTold[] = {
    {"required and empty",
     document("", "A - string net\ngone - GROUP\n", "", group("gone", "Gone", "", "Y r string nettype\n")),
     {"warning parameter file:17: Gone left out: Y is empty: 1 (network:1)"}},
    {"required and missing",
     document("", "gone r GROUP\n", "", group("gone", "Gone", "", "Y r string nettype\n")),
     {"warning parameter file:16: Gone left out: Y is empty: 1 (network:1)",
      "warning parameter file:8: Root left out: gone is missing: 1 (sitechan:1)"}},
    {"another value at another record",
     document("", "A - string chan\n"),
     {"warning parameter file:8: A: not the same for all records of its element; that of the first stands: 1 "
      "(sitechan:1 and "
      "sitechan:2)"}},
    {"brought into range",
     document("", "A - deg_lon lon\n"),
     {"note parameter file:8: A: brought into range by whole turns: 1 (site:1)"}},
    {"out of range",
     document("", "A - deg_lat lon\n"),
     {"warning parameter file:8: A: out of range, left empty: 1 (site:1)"}},
    {"no number",
     document("", "A - float netname\n"),
     {"warning parameter file:8: A: no number, left empty: 1 (network:1)"}},
    {"no date", document("", "A - epoch 1e18\n"), {"warning parameter file:8: A: no date, left empty: 1 (sitechan:1)"}},
    {"not worked out",
     document("", "A - float 1 / (lat - lat)\n"),
     {"warning parameter file:8: A: cannot be worked out, left empty: 1 (site:1)"}},
    {"assumed",
     document("", "A - string assume(nettype, 'x')\n"),
     {"note parameter file:8: A: a null, for which a value is assumed: 1 (network:1)"}},
    {"a null is nothing to tell", document("", "A - float elev\nB - epoch epoch.time\nC - deg_az hang\n"), {}},
    {"a code",
     document("", "station - GROUP\n", "", group("station", "Station", "code - text aak\n", "")),
     {"warning parameter file:14: a code that FDSN does not allow for a Station: 1 ('aak')"}},
};

TEST(ElementWriter, TellsWhatIsLeftOutAndWhatIsDoubtful) {
  const MadeDatabase made(kRows);
  for (const ToldCase& c : kTold) EXPECT_EQ(write_document(made, c.tree).told, c.told) << c.what;
}

TEST(ElementWriter, WithoutRecordsThereIsNoDocument) {
  const MadeDatabase made({{"network", {{"net", "KR"}}}});
  const std::string tree = document("", "A - text x\n");
  EXPECT_FALSE(write_document(made, tree).is_written);
  EXPECT_EQ(write_document(made, tree).text, "");
  EXPECT_FALSE(write_in_parts(made, tree).is_written);
  EXPECT_EQ(write_document(made, tree, DetailLevel::network).text, " <Root>\n  <A>x</A>\n </Root>\n");
}

}  // namespace
}  // namespace triglub_test
