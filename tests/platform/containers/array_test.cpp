#include <gtest/gtest.h>

#include <array>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "platform/containers.h"
#include "support/random_seed.h"

namespace {

std::array<char, 4> values = {'a', 'b', 'c', 'd'};
std::vector<void*> freed;
void note_freed(void* value) { freed.push_back(value); }

std::vector<std::string> keys_of(rbtree* array) {
  Tbl* list = keysarr(array);
  std::vector<std::string> keys;
  for (long i = 0; i < maxtbl(list); ++i) keys.emplace_back(static_cast<char*>(gettbl(list, i)));
  freetbl(list, nullptr);
  return keys;
}

class Array : public testing::Test {
 protected:
  void SetUp() override { freed.clear(); }
  void TearDown() override { freearr(array_, nullptr); }

  rbtree* array_ = newarr(nullptr);
};

TEST_F(Array, GivesBackWhatWasSet) {
  EXPECT_EQ(setarr(array_, "sta", &values[0]), nullptr);
  EXPECT_EQ(setarr(array_, "chan", &values[1]), nullptr);
  EXPECT_EQ(getarr(array_, "sta"), &values[0]);
  EXPECT_EQ(getarr(array_, "chan"), &values[1]);
  EXPECT_EQ(getarr(array_, "st"), nullptr);
  EXPECT_EQ(getarr(array_, "stat"), nullptr);
  EXPECT_EQ(getarr(array_, "STA"), nullptr);
  EXPECT_EQ(cntarr(array_), 2);
}

TEST_F(Array, GivesTheValueThatIsReplaced) {
  setarr(array_, "sta", &values[0]);
  EXPECT_EQ(setarr(array_, "sta", &values[1]), &values[0]);
  EXPECT_EQ(setarr(array_, "sta", nullptr), &values[1]);
  EXPECT_EQ(setarr(array_, "sta", &values[2]), nullptr);
  EXPECT_EQ(getarr(array_, "sta"), &values[2]);
  EXPECT_EQ(cntarr(array_), 1);
}

TEST_F(Array, CopiesItsKeys) {
  std::string key = "sta";
  setarr(array_, key.c_str(), &values[0]);
  key = "xxx";
  EXPECT_EQ(getarr(array_, "sta"), &values[0]);
}

TEST_F(Array, ListsItsKeysInByteOrder) {
  for (const char* key : {"sta", "chan", "", "Sta", "\xC3\xA9", "sta2", "_"}) setarr(array_, key, &values[0]);
  EXPECT_EQ(keys_of(array_), (std::vector<std::string>{"", "Sta", "_", "chan", "sta", "sta2", "\xC3\xA9"}));
}

TEST_F(Array, ThatIsEmptyHasAnEmptyListOfKeys) {
  Tbl* keys = keysarr(array_);
  ASSERT_NE(keys, nullptr);
  EXPECT_EQ(maxtbl(keys), 0);
  freetbl(keys, nullptr);
}

TEST_F(Array, RemovesAKeyAndGivesItsValue) {
  setarr(array_, "sta", &values[0]);
  setarr(array_, "chan", &values[1]);
  EXPECT_EQ(delarr(array_, "sta"), &values[0]);
  EXPECT_EQ(delarr(array_, "sta"), nullptr);
  EXPECT_EQ(getarr(array_, "sta"), nullptr);
  EXPECT_EQ(keys_of(array_), std::vector<std::string>{"chan"});
}

TEST_F(Array, FreesEachValueOnce) {
  rbtree* array = newarr(nullptr);
  setarr(array, "b", &values[1]);
  setarr(array, "a", &values[0]);
  setarr(array, "null", nullptr);
  freearr(array, note_freed);
  EXPECT_EQ(freed, (std::vector<void*>{&values[0], &values[1]}));
}

TEST_F(Array, ThatIsNullIsEmpty) {
  EXPECT_EQ(cntarr(nullptr), 0);
  EXPECT_EQ(getarr(nullptr, "sta"), nullptr);
  EXPECT_EQ(delarr(nullptr, "sta"), nullptr);
  EXPECT_EQ(setarr(nullptr, "sta", &values[0]), nullptr);
  EXPECT_EQ(keysarr(nullptr), nullptr);
  freearr(nullptr, note_freed);
  EXPECT_TRUE(freed.empty());
}

TEST_F(Array, HasNoEntryForANullKey) {
  EXPECT_EQ(setarr(array_, nullptr, &values[0]), nullptr);
  EXPECT_EQ(getarr(array_, nullptr), nullptr);
  EXPECT_EQ(delarr(array_, nullptr), nullptr);
  EXPECT_EQ(cntarr(array_), 0);
}

TEST_F(Array, AgreesWithAPlainMapUnderRandomOperations) {
  std::mt19937 random(triglub_test::random_seed());
  std::map<std::string, void*> plain;
  for (int i = 0; i < 20000; ++i) {
    const std::string key = std::to_string(random() % 200);
    void* value = &values[random() % values.size()];
    const auto there = plain.find(key);
    void* before = there == plain.end() ? nullptr : there->second;
    switch (random() % 3) {
      case 0:
        ASSERT_EQ(setarr(array_, key.c_str(), value), before);
        plain[key] = value;
        break;
      case 1:
        ASSERT_EQ(delarr(array_, key.c_str()), before);
        plain.erase(key);
        break;
      default:
        ASSERT_EQ(getarr(array_, key.c_str()), before);
    }
    ASSERT_EQ(cntarr(array_), static_cast<long>(plain.size()));
  }
  std::vector<std::string> keys;
  for (const auto& [key, value] : plain) keys.push_back(key);
  EXPECT_EQ(keys_of(array_), keys);
}

}  // namespace
