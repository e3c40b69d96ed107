// The plain form's documents, held against documents by hand.
#include "reference/edition2/writer.h"

#include <gtest/gtest.h>

#include <string>

#include "reference/edition2/made_tables.h"
#include "reference/edition2/random_case.h"

namespace triglub_reference::edition2 {

namespace {

// One place, channels BHZ and LHZ, LHZ with a depth and without a chanid.
Request request_for(const std::map<std::string, Group>& groups, Level level = Level::response) {
  Request request;
  request.tables = tables_of({{SITECHAN, {{"chanid", "9"}, {"hang", "10"}}},
                              {SITECHAN, {{"chan", "LHZ"}, {"edepth", "0.5"}, {"hang", "9"}}},
                              {SITE, {}},
                              {SNETSTA, {}}});
  request.tree.root = "root";
  request.tree.groups = groups;
  request.level = level;
  return request;
}

std::string written(const std::map<std::string, Group>& groups, Level level = Level::response) {
  return plain_conversion(request_for(groups, level)).document;
}

TEST(PlainWriter, EmptyValuesStandUnlessTheyAreOptional) {
  EXPECT_EQ(written({{"root", {"R", {{"a", "-", "string", "descrip"}}, {{"B", "-", "string", "descrip"}}, {}}}}),
            " <R a=\"\">\n  <B></B>\n </R>\n");
  EXPECT_EQ(
      written({{"root", {"R", {{"a", "-", "string", "descrip"}}, {{"B", "-", "string", "descrip"}}, {"a", "B"}}}}),
      " <R>\n </R>\n");
}

TEST(PlainWriter, AMissingValueThatIsRequiredLeavesTheElementOut) {
  EXPECT_EQ(written({{"root", {"R", {}, {{"child", "-", "GROUP", ""}, {"B", "-", "text", "b"}}, {}}},
                     {"child", {"C", {{"a", "r", "string", "descrip"}}, {{"D", "-", "text", "d"}}, {}}}}),
            " <R>\n  <B>b</B>\n </R>\n");
  EXPECT_EQ(written({{"root", {"R", {}, {{"child", "r", "GROUP", ""}, {"B", "-", "text", "b"}}, {}}},
                     {"child", {"C", {}, {{"D", "r", "string", "descrip"}}, {}}}}),
            "");
}

TEST(PlainWriter, AMissingValueOfATransparentGroupLeavesItsContentOut) {
  EXPECT_EQ(written({{"root", {"R", {}, {{"child", "-", "GROUP", ""}, {"B", "-", "text", "b"}}, {}}},
                     {"child", {"-", {}, {{"D", "-", "text", "d"}, {"E", "r", "string", "descrip"}}, {}}}}),
            " <R>\n  <B>b</B>\n </R>\n");
}

TEST(PlainWriter, ATransparentGroupWritesInPlace) {
  EXPECT_EQ(written({{"root", {"R", {}, {{"child", "-", "GROUP", ""}}, {}}},
                     {"child", {"-", {}, {{"D", "-", "text", "d"}, {"e", "-", "GROUP", ""}}, {}}},
                     {"e", {"E", {}, {}, {}}}}),
            " <R>\n  <D>d</D>\n  <E>\n  </E>\n </R>\n");
}

TEST(PlainWriter, AnOptionalGroupThatHoldsNothingIsLeftOut) {
  const Group child = {"C", {}, {{"D", "-", "string", "descrip"}}, {"D"}};
  EXPECT_EQ(written({{"root", {"R", {}, {{"c", "-", "GROUP", ""}}, {"c"}}}, {"c", child}}), " <R>\n </R>\n");
  EXPECT_EQ(written({{"root", {"R", {}, {{"c", "-", "GROUP", ""}}, {}}}, {"c", child}}),
            " <R>\n  <C>\n  </C>\n </R>\n");
}

// The channels' codes in the order in which a category has them.
std::string codes_by(const std::string& type, const std::string& expression, bool is_optional) {
  Group root = {"R", {}, {{"c", "-", type, expression}}, {}};
  if (is_optional) root.optional = {"c"};
  const std::string document = written({{"root", root}, {"c", {"-", {}, {{"C", "-", "string", "chan"}}, {}}}});
  std::string codes;
  for (std::size_t at = document.find("<C>"); at != std::string::npos; at = document.find("<C>", at + 1)) {
    codes += document.substr(at + 3, 3) + " ";
  }
  return codes;
}

TEST(PlainWriter, CategoriesAreInTheirOrder) {
  EXPECT_EQ(codes_by("CATEGORIZED_GROUP", "chan", false), "BHZ LHZ ");
  EXPECT_EQ(codes_by("CATEGORIZED_GROUP", "sta", false), "BHZ ");
  EXPECT_EQ(codes_by("CATEGORIZED_GROUP", "chan == 'BHZ' ? 10 : 9", false), "BHZ LHZ ");
  EXPECT_EQ(codes_by("CATEGORIZED_BY_NUMBER", "chan == 'BHZ' ? 10 : 9", false), "LHZ BHZ ");
  EXPECT_EQ(codes_by("CATEGORIZED_GROUP", "hang", false), "LHZ BHZ ");
  EXPECT_EQ(codes_by("CATEGORIZED_GROUP", "chan == 'BHZ' ? '10' : '9'", false), "BHZ LHZ ");
  EXPECT_EQ(codes_by("CATEGORIZED_BY_NUMBER", "chan == 'BHZ' ? '10' : '9'", false), "LHZ BHZ ");
  EXPECT_EQ(codes_by("CATEGORIZED_BY_NUMBER", "chan == 'BHZ' ? 'a' : '9'", false), "LHZ BHZ ");
}

TEST(PlainWriter, RecordsWithoutACategoryComeFirstOrNotAtAll) {
  EXPECT_EQ(codes_by("CATEGORIZED_GROUP", "edepth", false), "BHZ LHZ ");
  EXPECT_EQ(codes_by("CATEGORIZED_GROUP", "edepth", true), "LHZ ");
  EXPECT_EQ(codes_by("CATEGORIZED_GROUP", "sitechan.chanid", false), "LHZ BHZ ");
}

TEST(PlainWriter, GroupsBelowTheLevelAreNotMissed) {
  const std::map<std::string, Group> groups = {
      {"root", {"R", {}, {{"c", "r", "GROUP", ""}, {"B", "-", "text", "b"}}, {}}}, {"c", {"Channel", {}, {}, {}}}};
  EXPECT_EQ(written(groups, Level::channel), " <R>\n  <Channel>\n  </Channel>\n  <B>b</B>\n </R>\n");
  EXPECT_EQ(written(groups, Level::station), " <R>\n  <B>b</B>\n </R>\n");
}

TEST(PlainWriter, NothingIsWrittenOfNoRecords) {
  Request request = request_for({{"root", {"R", {}, {}, {}}}});
  request.conditions["chan"] = "XYZ";
  EXPECT_EQ(plain_conversion(request).document, "");
}

constexpr const char* kMovedStation = R"( <FDSNStationXML schemaVersion="1.2">
  <Source>Norway</Source>
  <Network code="KR" endDate="2000-01-03T00:00:00Z">
   <TotalNumberStations>1</TotalNumberStations>
   <SelectedNumberStations>1</SelectedNumberStations>
   <Station code="AAK" endDate="2000-01-01T05:00:00Z">
    <Latitude>42.5</Latitude>
    <Longitude>74</Longitude>
    <Elevation>0</Elevation>
    <Site>
     <Name>AAK</Name>
    </Site>
    <TotalNumberChannels>1</TotalNumberChannels>
    <SelectedNumberChannels>1</SelectedNumberChannels>
    <Channel code="BHZ" startDate="1999-12-31T00:00:00Z" endDate="2000-01-01T05:00:00Z" locationCode="">
     <Depth>100</Depth>
     <Dip>-90</Dip>
     <Response>
      <Stage number="1">
       <Gain>1500</Gain>
      </Stage>
      <Stage number="2">
       <Unit>V</Unit>
      </Stage>
     </Response>
    </Channel>
   </Station>
   <Station code="AAK" startDate="2000-01-01T05:00:00Z" endDate="2000-01-03T00:00:00Z">
    <Latitude>42.75</Latitude>
    <Longitude>-170</Longitude>
    <Elevation>12.3</Elevation>
    <Site>
     <Name>Hill &amp; dale</Name>
    </Site>
    <TotalNumberChannels>1</TotalNumberChannels>
    <SelectedNumberChannels>1</SelectedNumberChannels>
    <Channel code="BHZ" startDate="2000-01-01T05:00:00Z" endDate="2000-01-03T00:00:00Z" locationCode="">
     <Depth>100</Depth>
     <Dip>-90</Dip>
     <SampleRate>40</SampleRate>
     <Sensor>
      <Description>STS-2</Description>
     </Sensor>
    </Channel>
   </Station>
  </Network>
 </FDSNStationXML>
)";

TEST(PlainWriter, AStationThatMovedInTheMiddleOfADay) {
  Request request;
  request.tables = tables_of({{SNETSTA, {}},
                              {SITE, {{"offdate", "2000001"}, {"lat", "42.5"}, {"lon", "74.0"}}},
                              {SITE,
                               {{"ondate", "2000001"},
                                {"offdate", "2000002"},
                                {"lat", "42.75"},
                                {"lon", "190"},
                                {"elev", "0.0123"},
                                {"staname", "Hill & dale"}}},
                              {SITECHAN, {{"vang", "0"}, {"edepth", "0.1"}}},
                              {SCHANLOC, {{"loc", "--"}}},
                              {SENSOR, {{"time", at_hour(-24)}, {"endtime", at_hour(5)}}},
                              {SENSOR, {{"time", at_hour(5)}, {"endtime", at_hour(48)}, {"inid", "1"}}},
                              {INSTRUMENT, {{"inid", "1"}, {"insname", "STS-2"}, {"samprate", "40.0000000"}}},
                              {STAGE, {{"stageid", "2"}, {"endtime", at_hour(5)}, {"iunits", "V"}}},
                              {STAGE, {{"stageid", "1"}, {"endtime", at_hour(5)}, {"gnom", "1500"}}}});
  request.tree = document_tree();
  request.site = {{"country", "Norway"}};
  EXPECT_EQ(plain_conversion(request).document, kMovedStation);
}

TEST(PlainWriter, ADayThatIsNoDateFails) {
  Request request = request_for({{"root", {"R", {}, {}, {}}}});
  request.tables.rows["site"][0]["offdate"] = "2001366";
  EXPECT_NE(plain_conversion(request).failure, "");
}

TEST(PlainWriter, TheTreeAsAParameterFile) {
  Tree tree;
  tree.root = "root";
  tree.groups["root"] = {"R", {{"a", "-", "text", "1"}}, {{"B", "r", "string", "chan"}}, {"a"}};
  EXPECT_EQ(tree_text(tree),
            "edition 2\nroot_node root\nroot &Arr{\n    name R\n    attributes &Tbl{\n        a - text 1\n    }\n"
            "    elements &Tbl{\n        B r string chan\n    }\n    optional &Tbl{\n        a\n    }\n}\n");
}

}  // namespace

}  // namespace triglub_reference::edition2
