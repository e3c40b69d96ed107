#include "tool/tree_drawing.h"

#include <gtest/gtest.h>

namespace {

using triglub::tool::draw_tree;
using triglub::tool::TreeNode;

TreeNode leaf(const std::string& name, const std::string& value, const std::string& note = "") {
  return {name, "", "string", value, note, {}};
}

TEST(TreeDrawing, JoinsNamesByBranches) {
  const TreeNode root{"A", "", "",
                      "",  "", {{"B", "", "", "", "", {{"C", "", "", "", "", {}}}}, {"D", "", "", "", "", {}}}};
  EXPECT_EQ(draw_tree(root), "A\n├ B\n│ └ C\n└ D\n");
}

TEST(TreeDrawing, HasColumnsThatSomeNodeFills) {
  EXPECT_EQ(draw_tree({"A", "", "", "", "", {leaf("Bé", "x"), {"C", "", "", "", "note", {}}}}),
            "A\n├ Bé  string  x\n└ C           note\n");
  EXPECT_EQ(draw_tree({"A", "", "", "", "", {{"B", "required", "text", "x", "note", {}}}}),
            "A\n└ B  required  text  x  note\n");
}

TEST(TreeDrawing, BreaksLongValuesAtBlanks) {
  const std::string half(50, 'x');
  EXPECT_EQ(draw_tree({"A", "", "", "", "", {leaf("B", half + " " + half), leaf("C", "")}}),
            "A\n├ B  string  " + half + "\n│            " + half + "\n└ C  string\n");
}

TEST(TreeDrawing, KeepsOperatorsWithWhatIsBehindThem) {
  const std::string half(50, 'x');
  for (const std::string sign : {"?", ":", "&&", "-", "=~"}) {
    EXPECT_EQ(draw_tree(leaf("B", half + " " + half.substr(0, 34) + " " + sign + " yy")),
              "B  string  " + half + " " + half.substr(0, 34) + "\n           " + sign + " yy\n")
        << sign;
  }
}

TEST(TreeDrawing, FillsLinesToTheLastColumn) {
  const std::string value = std::string(40, 'x') + " " + std::string(48, 'y');
  const std::string line = draw_tree(leaf("B", value));
  EXPECT_EQ(line, "B  string  " + value + "\n");
  EXPECT_EQ(line.size(), 101u);
  EXPECT_EQ(draw_tree(leaf("B", value + "y")).find('y'), 63u);
}

TEST(TreeDrawing, GivesLongWordsALineOfTheirOwn) {
  const std::string word(150, 'x');
  EXPECT_EQ(draw_tree(leaf("B", "a " + word + " b")), "B  string  a\n           " + word + "\n           b\n");
}

TEST(TreeDrawing, PutsNotesOnTheNextLineWhereTheyDoNotFit) {
  const std::string value(80, 'x');
  EXPECT_EQ(draw_tree(leaf("B", value, "(a note)")), "B  string  " + value + "\n           (a note)\n");
}

TEST(TreeDrawing, ShowsControlCharacters) { EXPECT_EQ(draw_tree(leaf("B", "a\x1b[1m")), "B  string  a\\x1b[1m\n"); }

}  // namespace
