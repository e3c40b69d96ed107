// What is wrong with a parameter file is told with its line, all of it at once.
#include <gmock/gmock.h>
#include <stdlib.h>

#include <filesystem>

#include "support/flat_database.h"
#include "support/scoped_limit.h"
#include "tree/tree_reading.h"

namespace triglub_test {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;

struct FaultCase {
  std::string text;
  std::vector<std::string> faults;  // without "parameter file:"
};

void expect_faults(const std::vector<FaultCase>& cases) {
  for (const FaultCase& c : cases) {
    const Reading reading = read_tree(c.text);
    std::vector<std::string> expected;
    for (const std::string& fault : c.faults) expected.push_back("parameter file:" + fault);
    EXPECT_THAT(reading.faults, ElementsAreArray(expected)) << c.text;
    EXPECT_EQ(reading.tree, nullptr) << c.text;
  }
}

TEST(TreeFaults, OfTheTopLevel) {
  const std::string root = group("document", "Root", "", "");
  expect_faults({
      {"edition 2\n", {" the key 'root_node', which names the root group, is missing"}},
      {"root_nod document\n" + root,
       {" the key 'root_node', which names the root group, is missing",
        "1: the key 'root_nod' is not known; did you mean 'root_node'?"}},
      {"root_node &Tbl{\n}\n" + root, {"1: 'root_node' must be a string, the name of the root group"}},
      {"root_node &Arr{\n}\n" + root, {"1: 'root_node' must be a string, the name of the root group"}},
      {"root_node documnt\n" + root, {"1: the group 'documnt' is not defined; did you mean 'document'?"}},
      {"root_node edition\nedition 2\n", {"1: the group 'edition' is not defined"}},
      {"root_node document{name}\n" + root, {"1: the group 'document{name}' is not defined"}},
      {document("", "") + "nonsense 1\nlist &Tbl{\n}\n",
       {"10: the key 'nonsense' is not known", "11: the key 'list' is not known"}},
      {document("", "") + "unit_speling names\n",
       {"10: the key 'unit_speling' is not known; did you mean 'unit_spellings'?"}},
      {document("", "") + "unit_spellings name\nnames &Arr{\nM/S m/s\n}\n",
       {"10: the table 'name' is not defined; did you mean 'names'?"}},
      {document("", "") + "unit_spellings names\nnames &Arr{\nM/S\n}\n", {"12: the unit 'M/S' has no spelling"}},
      {document("", "") + "fir_filters fir\n",
       {"10: 'fir_filters' is 'fir': FIR or Coefficients; did you mean 'FIR'?"}},
      {document("", "") + "calib_units\n",
       {"10: 'calib_units' must be a string, the unit of ground motion of instruments that do not tell"}},
      {document("", "") + "record_order &Tbl{\n}\nepochtime_xmlstring_format x\njdate_xmlstring_format x\n",
       {"10: the key 'record_order' is of edition 1; edition 2 has no use for it",
        "12: the key 'epochtime_xmlstring_format' is of edition 1; edition 2 has no use for it",
        "13: the key 'jdate_xmlstring_format' is of edition 1; edition 2 has no use for it"}},
  });
}

TEST(TreeFaults, OfGroups) {
  expect_faults({
      {"root_node g\ng &Arr{\n}\n",
       {"2: the group 'g' has no list 'attributes'", "2: the group 'g' has no list 'elements'",
        "2: the group 'g' has no name (the string 'name': a tag, or -)"}},
      {"root_node g\ng &Arr{\nname &Tbl{\n}\nattributes x\nelements &Arr{\n}\noptional x\n}\n",
       {"3: the group 'g' has no name (the string 'name': a tag, or -)", "5: the group 'g' has no list 'attributes'",
        "6: the group 'g' has no list 'elements'", "8: the group 'g' has no list 'optional'"}},
      {"root_node g\n" + group("g", "", "", ""), {"3: '' is no name that an element can have"}},
      {"root_node g\n" + group("g", "site.lat/x", "", ""), {"3: 'site.lat/x' is no name that an element can have"}},
      {document("", "", "optionl &Tbl{\n}\nother x\n"),
       {"9: the group 'document' cannot have the key 'optionl'; did you mean 'optional'?",
        "11: the group 'document' cannot have the key 'other'"}},
      {"root_node g\n" + group("g", "-", "code x text 1\ncode - text 1\nmore - text 1\n", ""),
       {"6: the group 'g' has no tag that could have attributes"}},
      {document("", "statoin - GROUP\n", "", group("station", "Station", "", "")),
       {"8: the group 'statoin' is not defined; did you mean 'station'?"}},
      {document("", "document - GROUP\n"), {"8: the group 'document' contains itself"}},
      {document("", "a - GROUP\n", "",
                group("a", "A", "", "b - CATEGORIZED_GROUP x\n") + group("b", "B", "", "a - GROUP\n")),
       {"24: the group 'a' contains itself"}},
  });
}

TEST(TreeFaults, OfLines) {
  expect_faults({
      {document("", "Bare\n"), {"8: 'Bare' stands alone: a line is NAME FLAG TYPE VALUE"}},
      {document("", "Bare -\n"), {"8: 'Bare' has no type: a line is NAME FLAG TYPE VALUE"}},
      {document("", "Name string snetsta.snet\n"),
       {"8: 'string' is no flag: a line is NAME FLAG TYPE VALUE, and FLAG is -, r (required) or x (left out)"}},
      {document("code R text x\n", ""),
       {"6: 'R' is no flag: a line is NAME FLAG TYPE VALUE, and FLAG is -, r (required) or x (left out)"}},
      {document("", "Place - deg_lta x\n"), {"8: the type 'deg_lta' is not known; did you mean 'deg_lat'?"}},
      {document("", "Place - group x\n"), {"8: the type 'group' is not known; did you mean 'GROUP'?"}},
      {document("", "Place - nothing_known x\n"), {"8: the type 'nothing_known' is not known"}},
      {document("", "N - record_count\nM - force_lookup x\n"),
       {"8: the type 'record_count' is of edition 1 alone", "9: the type 'force_lookup' is of edition 1 alone"}},
      {document("", "9th - text x\n"), {"8: '9th' is no name that an element can have"}},
      {document("a/b - text x\n", ""), {"6: 'a/b' is no name that an attribute can have"}},
      {document("a - GROUP\nb - CATEGORIZED_GROUP x\nc - CATEGORIZED_BY_NUMBER x\nd - STAGE\n", ""),
       {"6: an attribute cannot be a GROUP", "7: an attribute cannot be a CATEGORIZED_GROUP",
        "8: an attribute cannot be a CATEGORIZED_BY_NUMBER", "9: an attribute cannot be a STAGE"}},
      {document("code - text 1\nother - text 2\ncode - text 3\n", ""),
       {"8: the attribute 'code' is given twice, first in line 6"}},
  });
}

TEST(TreeFaults, OfOptionalNames) {
  expect_faults({
      {document("", "Azimuth - deg_az x\n", "optional &Tbl{\nAzimut\n}\n"),
       {"11: no line of the group 'document' has the name 'Azimut'; did you mean 'Azimuth'?"}},
      {document("", "Azimuth r deg_az x\n", "optional &Tbl{\n# a comment\nAzimuth\n}\n"),
       {"12: 'Azimuth' cannot be optional: it is required (r) in line 8"}},
      {document("code r text x\n", "", "optional &Tbl{\ncode\n}\n"),
       {"11: 'code' cannot be optional: it is required (r) in line 6"}},
  });
}

TEST(TreeFaults, OfValues) {
  expect_faults({
      {document("", "A - string\n"), {"8: 'A' has no value: string takes an expression"}},
      {document("", "A - count\n"), {"8: 'A' has no value: count takes an expression"}},
      {document("", "a - CATEGORIZED_GROUP\n", "", group("a", "A", "", "")),
       {"8: 'a' has no value: CATEGORIZED_GROUP takes an expression"}},
      {document("", "A - other_pf:site\n"), {"8: 'A' has no value: which key of the parameter file site?"}},
      {document("code - string nosuch\n", "B r float nosuch + 1\n"),
       {"6: no field nosuch for a string\n    nosuch\n    ^", "9: no field nosuch for a float\n    nosuch + 1\n    ^"}},
      {document("code - text \"a\"\n", "A - text R & D\n"),
       {"6: a bare \" in an attribute (write &quot;)", "9: a bare & (write &amp;)"}},
  });
}

TEST(TreeFaults, OfAttributesThatAreOneByTheirNamespaces) {
  expect_faults({
      {document("xmlns:a - text u\nxmlns:b - text u\na:x - text 1\nb:x - text 1\n", ""),
       {"9: the attribute 'b:x' is given twice, first in line 8"}},
      {document("xmlns:a - text u\nxmlns:a - text v\n", ""),
       {"7: the attribute 'xmlns:a' is given twice, first in line 6"}},
      {document("xmlns:a - text\n", ""), {"6: 'xmlns:a' has no value: a prefix stands for a namespace"}},
      {document("xmlns:xml - text u\n", ""), {"6: 'xmlns:xml': the prefix xml is XML's own"}},
      {document("xmlns:xmlns - text u\n", ""), {"6: 'xmlns:xmlns': the prefix xmlns is XML's own"}},
      {document("xmlns - text http://www.w3.org/2000/xmlns/\n", ""), {"6: 'xmlns': that namespace is XML's own"}},
      {document("", "xmlns:A - text x\n"),
       {"8: 'xmlns:A': no element can have the prefix xmlns",
        "8: the prefix of 'xmlns:A' is not declared: no group around it has an attribute xmlns:xmlns"}},
      {document("xmlns:a - string lat\n", ""),
       {"6: 'xmlns:a' must be a text: a prefix always stands for the same namespace"}},
  });
}

TEST(TreeFaults, AreNotInAttributesOfSeveralNamespaces) {
  EXPECT_THAT(
      read_tree(document("xmlns:a - text u\nxmlns:b - text v\na:x - text 1\nb:x - text 1\nx - text 1\n", "")).faults,
      IsEmpty());
}

// Groups of `fan` lines to the next one, `deep` below each other.
std::string fan_out(int fan, int deep, const char* tag) {
  std::string groups;
  for (int depth = 0; depth < deep; ++depth) {
    std::string lines;
    for (int i = 0; i < fan && depth + 1 < deep; ++i) lines += "g" + std::to_string(depth + 1) + " - GROUP\n";
    groups += group("g" + std::to_string(depth), tag, "", lines);
  }
  return "edition 2\nroot_node g0\n" + groups;
}

TEST(TreeFaults, OfTreesWithoutEndInSight) {
  // 19 lines a group but for the last two, which stand for themselves: 20^4 elements below the group with the fault.
  for (const char* tag : {"A", "-"}) {
    const Reading reading = read_tree(fan_out(20, 14, tag));
    ASSERT_EQ(reading.faults.size(), 1U) << tag;
    EXPECT_THAT(reading.faults.front(),
                testing::HasSubstr("gives the group 'g8' more than 1000000 elements for one record (the limit "
                                   "tree-elements)"));
  }
}

TEST(TreeFaults, OfWhichThereAreManyAreToldWithoutAGuess) {
  std::string lines;
  for (int i = 0; i < 150; ++i) lines += "statoin - GROUP\nx" + std::to_string(i) + " - GROUP\n";
  const Reading reading = read_tree(document("", lines, "", group("station", "Station", "", "")));
  ASSERT_EQ(reading.faults.size(), 300U);
  EXPECT_THAT(reading.faults.front(), testing::HasSubstr("did you mean 'station'?"));
  EXPECT_THAT(reading.faults[298], testing::EndsWith("the group 'statoin' is not defined"));
}

TEST(TreeFaults, OfSizeBeginWithOneElementMoreThanIsAllowed) {
  const std::string tree = document("code - text x\n", "A - text 1\nb - GROUP\n", "", group("b", "B", "", ""));
  {
    const triglub::ScopedLimit enough(triglub::Limit::tree_elements, 4);
    EXPECT_THAT(read_tree(tree).faults, IsEmpty());
  }
  const triglub::ScopedLimit too_little(triglub::Limit::tree_elements, 3);
  EXPECT_THAT(read_tree(tree).faults,
              ElementsAre("parameter file:10: 'b' gives the group 'document' more than 3 elements for one record (the "
                          "limit tree-elements)"));
}

TEST(TreeFaults, OfPrefixes) {
  expect_faults({
      {document("fdsn:type - text x\n", ""),
       {"6: the prefix of 'fdsn:type' is not declared: no group around it has an attribute xmlns:fdsn"}},
      {document("xmlns:fdsn x text u\n", "fdsn:A - text x\nfdsn:B - text x\n"),
       {"9: the prefix of 'fdsn:A' is not declared: no group around it has an attribute xmlns:fdsn"}},
      {document("", "a - GROUP\nb - GROUP\n", "",
                group("a", "A", "xmlns:p - text u\n", "p:X - text x\n") + group("b", "p:B", "", "")),
       {"21: the prefix of 'p:B' is not declared: no group around it has an attribute xmlns:p"}},
  });
}

TEST(TreeFaults, AreNotInPrefixesThatAGroupAroundDeclares) {
  const std::string inner = group("a", "p:A", "p:type - text x\nxml:lang - text en\n", "p:X - text x\n");
  EXPECT_THAT(read_tree(document("xmlns:p - text u\n", "a - GROUP\n", "", inner)).faults, IsEmpty());
  EXPECT_THAT(read_tree(document("", "t - GROUP\n", "",
                                 group("t", "B", "xmlns:p - text u\n", "a - CATEGORIZED_GROUP x\na - GROUP\n") + inner))
                  .faults,
              IsEmpty());
}

TEST(TreeFaults, AreToldAllAtOnceInTheOrderOfTheFile) {
  expect_faults(
      {{document("code - strin x\n", "a - GROUP\nB - text <\n", "", group("a", "A", "", "X - nosuchtype x\n")),
        {"6: the type 'strin' is not known; did you mean 'string'?", "10: a bare < (write &lt;)",
         "18: the type 'nosuchtype' is not known"}}});
}

// The parameter file `site` of a folder of its own.
class SiteFile : public ::testing::Test {
 protected:
  SiteFile() {
    std::filesystem::current_path(folder_.folder());
    setenv("TRIGLUB_PFPATH", folder_.folder().c_str(), 1);
  }
  ~SiteFile() override { std::filesystem::current_path("/"); }

  Reading read(const std::string& site) {
    folder_.write_file("site.pf", site);
    return read_tree(document("made - other_pf:site  Source\n", "Sender - other_pf:site  Sender\n"));
  }

  FlatDatabase folder_;
};

TEST_F(SiteFile, GivesTexts) {
  const auto [tree, faults] = read("Source A &amp; B\nSender C\n");
  ASSERT_THAT(faults, IsEmpty());
  EXPECT_EQ(tree->root().attributes.at(0).value, "A &amp; B");
  EXPECT_EQ(tree->root().elements.at(0).value, "C");
}

TEST_F(SiteFile, HasFaultsThatAreToldWhereItIsAsked) {
  EXPECT_THAT(read("Sourc x\nSender &Tbl{\n}\n").faults,
              ElementsAre("parameter file:6: site.pf has no key 'Source'; did you mean 'Sourc'?",
                          "parameter file:9: site.pf has no key 'Sender'"));
  EXPECT_THAT(read("# texts\nSource \"A\"\nSender A & B\n").faults,
              ElementsAre("parameter file:6: the key 'Source' (site.pf:2): a bare \" in an attribute (write &quot;)",
                          "parameter file:9: the key 'Sender' (site.pf:3): a bare & (write &amp;)"));
}

TEST_F(SiteFile, ThatCannotBeReadIsTold) {
  const Complaints complaints;
  EXPECT_THAT(read("Source &Arr{\n").faults,
              ElementsAre("parameter file:6: the key 'Source': the parameter file site is malformed",
                          "parameter file:9: the key 'Sender': the parameter file site is malformed"));
  EXPECT_THAT(complaints.texts(), ElementsAre("site.pf:1: the block 'Source' is never closed"));
}

}  // namespace
}  // namespace triglub_test
