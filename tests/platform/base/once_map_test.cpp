// Values that are made once, whoever asks and however many ask at a time.
#include "base/once_map.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace triglub_test {
namespace {

using triglub::OnceMap;

void run_threads(int count, const std::function<void(int)>& work) {
  std::vector<std::thread> threads;
  threads.reserve(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) threads.emplace_back(work, i);
  for (std::thread& thread : threads) thread.join();
}

TEST(OnceMap, MakesTheValueOfEachKeyOnce) {
  const OnceMap<std::string, int> map;
  int made = 0;
  const auto make = [&] { return ++made; };
  EXPECT_EQ(map.get("a", make), 1);
  EXPECT_EQ(map.get("b", make), 2);
  EXPECT_EQ(map.get("a", make), 1);
  EXPECT_EQ(made, 2);
}

TEST(OnceMap, KeepsValuesWhereTheyAre) {
  const OnceMap<int, std::string> map;
  const std::string* first = &map.get(500, [] { return std::string("first"); });
  for (int key = 0; key < 1000; ++key) map.get(key, [&] { return std::to_string(key); });
  EXPECT_EQ(&map.get(500, [] { return std::string("another"); }), first);
  EXPECT_EQ(*first, "first");
}

TEST(OnceMap, GivesThreadsTheSameValue) {
  constexpr int kThreads = 8;
  constexpr int kKeys = 200;
  const OnceMap<int, int> map;
  std::atomic<int> made{0};
  std::vector<std::vector<const int*>> seen(kThreads);
  run_threads(kThreads, [&](int thread) {
    for (int i = 0; i < kKeys; ++i) {
      const int key = thread % 2 == 0 ? i : kKeys - 1 - i;
      seen[static_cast<std::size_t>(thread)].push_back(&map.get(key, [&] { return ++made, key * 7; }));
    }
  });
  EXPECT_EQ(made, kKeys);
  for (int thread = 0; thread < kThreads; ++thread) {
    for (int i = 0; i < kKeys; ++i) {
      const int key = thread % 2 == 0 ? i : kKeys - 1 - i;
      const int* value = seen[static_cast<std::size_t>(thread)][static_cast<std::size_t>(i)];
      ASSERT_EQ(value, &map.get(key, [] { return -1; }));
      ASSERT_EQ(*value, key * 7);
    }
  }
}

TEST(OnceMap, MakesOneValueOfAnother) {
  const OnceMap<int, int> map;
  const std::function<int(int)> sum = [&](int n) {
    return n == 0 ? 0 : n + map.get(n - 1, [&] { return sum(n - 1); });
  };
  EXPECT_EQ(map.get(100, [&] { return sum(100); }), 5050);
}

TEST(OnceMap, TriesAgainAfterAFailure) {
  const OnceMap<int, int> map;
  EXPECT_THROW(map.get(1, []() -> int { throw std::runtime_error("not yet"); }), std::runtime_error);
  EXPECT_EQ(map.get(1, [] { return 3; }), 3);
}

}  // namespace
}  // namespace triglub_test
