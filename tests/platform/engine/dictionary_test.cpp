#include "engine/table/dictionary.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <string>

#include "support/random_seed.h"

namespace triglub {
namespace {

TEST(Dictionary, GivesEqualTextsOneCode) {
  Dictionary dictionary;
  EXPECT_EQ(dictionary.intern("-"), 0u);
  EXPECT_EQ(dictionary.intern("AAK"), 1u);
  EXPECT_EQ(dictionary.intern("-"), 0u);
  EXPECT_EQ(dictionary.intern("AAK "), 2u);
  EXPECT_EQ(dictionary.size(), 3u);
  EXPECT_EQ(dictionary[1], "AAK");
}

TEST(Dictionary, HoldsTheEmptyTextAndBytesOfEveryValue) {
  Dictionary dictionary;
  const std::string zeros(3, '\0');
  EXPECT_EQ(dictionary.intern(""), 0u);
  EXPECT_EQ(dictionary.intern(zeros), 1u);
  EXPECT_EQ(dictionary.intern(std::string(2, '\0')), 2u);
  EXPECT_EQ(dictionary[1], zeros);
  EXPECT_EQ(dictionary.find(""), 0u);
}

TEST(Dictionary, FindsOnlyWhatIsThere) {
  Dictionary dictionary;
  EXPECT_EQ(dictionary.find("AAK"), std::nullopt);
  dictionary.intern("AAK");
  EXPECT_EQ(dictionary.find("AAK"), 0u);
  EXPECT_EQ(dictionary.find("AA"), std::nullopt);
}

TEST(Dictionary, KeepsTextsLongerThanABlock) {
  Dictionary dictionary;
  const std::string long_text(10000, 'x');
  dictionary.intern("before");
  dictionary.intern(long_text);
  dictionary.intern("after");
  EXPECT_EQ(dictionary[0], "before");
  EXPECT_EQ(dictionary[1], long_text);
  EXPECT_EQ(dictionary[2], "after");
}

TEST(Dictionary, RanksByBytesAsUnsigned) {
  Dictionary dictionary;
  for (const char* text : {"b", "\xC3\xA9", "a", "", "ab", "B"}) dictionary.intern(text);
  EXPECT_EQ(dictionary.ranks(), (std::vector<std::uint32_t>{4, 5, 2, 0, 3, 1}));
  dictionary.intern("Z");  // ranks asked for again count it in
  EXPECT_EQ(dictionary.ranks(), (std::vector<std::uint32_t>{5, 6, 3, 0, 4, 1, 2}));
}

TEST(Dictionary, AgreesWithAMapOnRandomTexts) {
  std::mt19937_64 random(triglub_test::random_seed());
  Dictionary dictionary;
  std::map<std::string, std::uint32_t> codes;
  std::vector<std::string_view> kept;
  for (int i = 0; i < 100000; ++i) {
    std::string text;
    for (auto length = random() % 6; length > 0; --length) text += static_cast<char>(random() % 7 * 41);
    if (random() % 50 == 0) text.append(random() % 3000, 'y');
    const auto known = codes.find(text);
    ASSERT_EQ(dictionary.find(text), known == codes.end() ? std::nullopt : std::optional(known->second));
    const auto expected = codes.try_emplace(text, static_cast<std::uint32_t>(codes.size())).first->second;
    ASSERT_EQ(dictionary.intern(text), expected);
    ASSERT_EQ(dictionary.size(), codes.size());
    if (expected == kept.size()) kept.push_back(dictionary[expected]);
  }
  std::uint32_t rank = 0;
  const std::vector<std::uint32_t> ranks = dictionary.ranks();
  for (const auto& [text, code] : codes) {
    ASSERT_EQ(dictionary[code], text);
    ASSERT_EQ(kept[code].data(), dictionary[code].data()) << "texts stay where they are";
    ASSERT_EQ(ranks[code], rank++);
  }
}

}  // namespace
}  // namespace triglub
