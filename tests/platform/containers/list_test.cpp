#include <gtest/gtest.h>

#include <array>
#include <vector>

#include "platform/containers.h"

namespace {

// Texts to point to, and what was freed of them.
std::array<char, 4> values = {'a', 'b', 'c', 'd'};
std::vector<void*> freed;
void note_freed(void* value) { freed.push_back(value); }

class List : public testing::Test {
 protected:
  void SetUp() override { freed.clear(); }
  void TearDown() override { freetbl(list_, nullptr); }

  Tbl* list_ = newtbl(0);
};

TEST_F(List, StartsEmpty) {
  for (const int hint : {-1, 0, 1, 1000}) {
    Tbl* list = newtbl(hint);
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(maxtbl(list), 0);
    EXPECT_EQ(gettbl(list, 0), nullptr);
    freetbl(list, nullptr);
  }
}

TEST_F(List, KeepsWhatIsPushedInOrder) {
  EXPECT_EQ(pushtbl(list_, &values[0]), 0);
  EXPECT_EQ(pushtbl(list_, &values[1]), 1);
  EXPECT_EQ(pushtbl(list_, nullptr), 2);
  EXPECT_EQ(maxtbl(list_), 3);
  EXPECT_EQ(gettbl(list_, 0), &values[0]);
  EXPECT_EQ(gettbl(list_, 1), &values[1]);
  EXPECT_EQ(gettbl(list_, 2), nullptr);
}

TEST_F(List, HasNothingOutsideItsBounds) {
  pushtbl(list_, &values[0]);
  EXPECT_EQ(gettbl(list_, -1), nullptr);
  EXPECT_EQ(gettbl(list_, 1), nullptr);
  EXPECT_EQ(gettbl(list_, 1L << 60), nullptr);
}

TEST_F(List, PopsFromItsEnd) {
  pushtbl(list_, &values[0]);
  pushtbl(list_, &values[1]);
  EXPECT_EQ(poptbl(list_), &values[1]);
  EXPECT_EQ(poptbl(list_), &values[0]);
  EXPECT_EQ(poptbl(list_), nullptr);
  EXPECT_EQ(maxtbl(list_), 0);
}

TEST_F(List, GrowsToTheIndexThatIsSet) {
  EXPECT_EQ(settbl(list_, 2, &values[2]), 0);
  EXPECT_EQ(maxtbl(list_), 3);
  EXPECT_EQ(gettbl(list_, 0), nullptr);
  EXPECT_EQ(gettbl(list_, 2), &values[2]);
  EXPECT_EQ(settbl(list_, 2, &values[3]), 0);
  EXPECT_EQ(settbl(list_, 0, &values[0]), 0);
  EXPECT_EQ(maxtbl(list_), 3);
  EXPECT_EQ(gettbl(list_, 0), &values[0]);
  EXPECT_EQ(gettbl(list_, 2), &values[3]);
  EXPECT_EQ(settbl(list_, -1, &values[0]), -1);
  EXPECT_EQ(maxtbl(list_), 3);
}

TEST_F(List, FreesEachValueOnceWhenItIsCleared) {
  pushtbl(list_, &values[0]);
  pushtbl(list_, nullptr);
  pushtbl(list_, &values[1]);
  clrtbl(list_, note_freed);
  EXPECT_EQ(maxtbl(list_), 0);
  EXPECT_EQ(freed, (std::vector<void*>{&values[0], &values[1]}));
  pushtbl(list_, &values[2]);
  clrtbl(list_, nullptr);
  EXPECT_EQ(maxtbl(list_), 0);
  EXPECT_EQ(freed.size(), 2u);
}

TEST_F(List, FreesEachValueOnceWhenItIsReleased) {
  Tbl* list = newtbl(2);
  pushtbl(list, &values[0]);
  pushtbl(list, &values[1]);
  freetbl(list, note_freed);
  EXPECT_EQ(freed, (std::vector<void*>{&values[0], &values[1]}));
}

TEST_F(List, ThatIsNullIsEmpty) {
  EXPECT_EQ(maxtbl(nullptr), 0);
  EXPECT_EQ(gettbl(nullptr, 0), nullptr);
  EXPECT_EQ(poptbl(nullptr), nullptr);
  EXPECT_EQ(pushtbl(nullptr, &values[0]), -1);
  EXPECT_EQ(settbl(nullptr, 0, &values[0]), -1);
  clrtbl(nullptr, note_freed);
  freetbl(nullptr, note_freed);
  EXPECT_TRUE(freed.empty());
}

}  // namespace
