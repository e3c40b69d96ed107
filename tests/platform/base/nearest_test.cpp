// The name that was likely meant.
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "platform/text.h"

namespace triglub {
namespace {

const std::vector<std::string>& names() {
  static const std::vector<std::string> all = {"sta", "lat", "lon", "elev", "staname", "site.lat", "ondate", "offdate"};
  return all;
}

TEST(Nearest, IsTheNameWithTheFewestSlips) {
  const struct {
    const char* word;
    std::optional<std::string> name;
  } cases[] = {
      {"lat", "lat"},
      {"LAT", "lat"},
      {"lta", "lat"},    // two neighbours in the wrong order are one slip
      {"latt", "lat"},   // one too many
      {"elv", "elev"},   // one missing
      {"elef", "elev"},  // one wrong
      {"site.lta", "site.lat"},
      {"stanmae", "staname"},
      {"stanma", "staname"},   // two slips in six letters
      {"stnm", std::nullopt},  // three in four
      {"onlate", "ondate"},
      {"elvation", std::nullopt},
      {"unknown", std::nullopt},
      {"l", std::nullopt},
      {"x", std::nullopt},
      {"", std::nullopt},
  };
  for (const auto& [word, name] : cases) EXPECT_EQ(nearest(word, names()), name) << word;
}

TEST(Nearest, IsTheFirstOfEquals) {
  EXPECT_EQ(nearest("bat", {"cat", "rat"}), "cat");
  EXPECT_EQ(nearest("bat", {"cats", "rat", "sat"}), "rat");
}

TEST(Nearest, HasRatherALetterOutOfPlaceThanAWrongOne) {
  EXPECT_EQ(nearest("lta", {"sta", "lat"}), "lat");
  EXPECT_EQ(nearest("cat", {"car", "cats", "at"}), "cats");
}

TEST(Nearest, OfNoCandidatesIsNothing) { EXPECT_EQ(nearest("lat", {}), std::nullopt); }

TEST(Nearest, TellsTheEmptyCandidateFromNone) {
  EXPECT_EQ(nearest("a", {""}), std::nullopt);
  EXPECT_EQ(nearest("ab", {""}), std::nullopt);
}

TEST(Nearest, OfALongWordCostsNothing) { EXPECT_EQ(nearest(std::string(1 << 20, 'a'), names()), std::nullopt); }

}  // namespace
}  // namespace triglub
