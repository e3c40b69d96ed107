#include "smartindex.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>
#include <stdexcept>

#include "support/random_seed.h"

namespace {

constexpr unsigned long kHighest = std::numeric_limits<unsigned long>::max();

// An index from "0110".
SmartIndex index_of(const std::string& digits) {
  std::vector<bool> flags;
  for (const char digit : digits) flags.push_back(digit == '1');
  return SmartIndex(flags);
}

Dbptr at_record(std::int64_t record) {
  Dbptr db;
  db.record = record;
  return db;
}

template <typename Operation>
std::string range_error_of(Operation operation) {
  try {
    operation();
  } catch (const std::range_error& error) {
    return error.what();
  }
  return "nothing thrown";
}

TEST(SmartIndex, IsEmptyWithoutRecords) {
  const SmartIndex index(0, false);
  EXPECT_EQ(index.first(), 0);
  EXPECT_EQ(index.last(), 0);
  EXPECT_EQ(index.size(), 0);
  EXPECT_EQ(index.count(), 0);
  EXPECT_FALSE(index.includes(at_record(0)));
  EXPECT_EQ(index.as_string(), "([],0,0)");
}

TEST(SmartIndex, WrapsItsUpperBorderWhenMadeFullOfNothing) {
  SmartIndex index(0, true);
  EXPECT_EQ(index.first(), 0);
  EXPECT_EQ(index.last(), kHighest);
  EXPECT_EQ(index.size(), 0);
  EXPECT_EQ(index.count(), 0);
  EXPECT_FALSE(index.includes(at_record(0)));
  EXPECT_EQ(index.as_string(), "([],0,18446744073709551615)");
  EXPECT_EQ(index.next(0), 0);
  EXPECT_EQ(index.next(5), 0);
  EXPECT_EQ(index.prev(5), 0);
  EXPECT_EQ(index.prev(kHighest), 0);
  index.set(0, true);
  EXPECT_EQ(index.count(), 0);
  index.limit_to(SmartIndex(0, true));
  EXPECT_EQ(index.as_string(), "([],0,0)");
  SmartIndex other(3, true);
  other.remove(SmartIndex(0, true));
  EXPECT_EQ(other.as_string(), "([111],0,2)");
}

TEST(SmartIndex, HoldsEveryRecordOrNone) {
  EXPECT_EQ(SmartIndex(5, true).as_string(), "([11111],0,4)");
  EXPECT_EQ(SmartIndex(5, true).count(), 5);
  EXPECT_EQ(SmartIndex(5, false).as_string(), "([00000],5,5)");
  EXPECT_EQ(SmartIndex(5, false).count(), 0);
}

TEST(SmartIndex, FindsItsBordersInTheFlags) {
  const std::pair<const char*, const char*> cases[] = {
      {"", "([],0,0)"},         {"0", "([0],1,1)"},     {"1", "([1],0,0)"},     {"000", "([000],3,3)"},
      {"0110", "([0110],1,2)"}, {"100", "([100],0,0)"}, {"001", "([001],2,2)"}, {"101", "([101],0,2)"},
  };
  for (const auto& [digits, text] : cases) EXPECT_EQ(index_of(digits).as_string(), text);
}

TEST(SmartIndex, IncludesSelectedRecordsOnly) {
  const SmartIndex index = index_of("0110");
  const std::pair<std::int64_t, bool> cases[] = {
      {0, false},
      {1, true},
      {2, true},
      {3, false},
      {4, false},
      {5, false},
      {-1, false},
      {dbALL, false},
      {dbNULL, false},
      {dbINVALID, false},
      {std::numeric_limits<std::int64_t>::min(), false},
      {std::numeric_limits<std::int64_t>::max(), false},
  };
  for (const auto& [record, included] : cases) EXPECT_EQ(index.includes(at_record(record)), included) << record;
}

TEST(SmartIndex, StepsBetweenItsBordersWithoutGivingThem) {
  const SmartIndex full(5, true);
  EXPECT_EQ(full.next(0), 1);
  EXPECT_EQ(full.next(2), 3);
  EXPECT_EQ(full.next(3), 5);
  EXPECT_EQ(full.next(4), 5);
  EXPECT_EQ(full.next(5), 5);
  EXPECT_EQ(full.next(6), 5);
  EXPECT_EQ(full.prev(4), 3);
  EXPECT_EQ(full.prev(2), 1);
  EXPECT_EQ(full.prev(1), 5);
  EXPECT_EQ(full.prev(0), 5);
  EXPECT_EQ(full.prev(5), 4);
  EXPECT_EQ(full.prev(100), 4);
}

TEST(SmartIndex, StepsIntoItsRangeByTheNearBorder) {
  const SmartIndex index = index_of("00101010");
  EXPECT_EQ(index.next(0), 2);
  EXPECT_EQ(index.next(1), 2);
  EXPECT_EQ(index.next(2), 4);
  EXPECT_EQ(index.next(3), 4);
  EXPECT_EQ(index.next(4), 8);
  EXPECT_EQ(index.prev(7), 6);
  EXPECT_EQ(index.prev(6), 4);
  EXPECT_EQ(index.prev(4), 8);
  EXPECT_EQ(index.prev(3), 8);
  EXPECT_EQ(index.prev(2), 8);
}

TEST(SmartIndex, HasNoStepsWithoutSelection) {
  const SmartIndex index(4, false);
  for (unsigned long i = 0; i < 6; ++i) {
    EXPECT_EQ(index.next(i), 4) << i;  // below the borders next gives first(), which is size()
    EXPECT_EQ(index.prev(i), 4) << i;
  }
}

TEST(SmartIndex, MovesItsBordersWhenAFlagIsSet) {
  SmartIndex index(6, false);
  index.set(3, true);
  EXPECT_EQ(index.as_string(), "([000100],3,3)");
  index.set(1, true);
  EXPECT_EQ(index.as_string(), "([010100],1,3)");
  index.set(5, true);
  EXPECT_EQ(index.as_string(), "([010101],1,5)");
  index.set(3, true);
  EXPECT_EQ(index.as_string(), "([010101],1,5)");
}

TEST(SmartIndex, MovesItsBordersWhenAFlagIsCleared) {
  SmartIndex index(5, true);
  index.set(2, false);
  EXPECT_EQ(index.as_string(), "([11011],0,4)");
  index.set(0, false);
  EXPECT_EQ(index.as_string(), "([01011],1,4)");
  index.set(4, false);
  EXPECT_EQ(index.as_string(), "([01010],1,3)");
  index.set(0, false);
  EXPECT_EQ(index.as_string(), "([01010],1,3)");
}

TEST(SmartIndex, LosesALowerBorderClearedWithOneOtherLeft) {
  SmartIndex index = index_of("0010000100");
  index.set(2, false);
  EXPECT_EQ(index.as_string(), "([0000000100],10,7)");
  EXPECT_EQ(index.count(), 1);
  EXPECT_TRUE(index.includes(at_record(7)));
  index.reset_borders();
  EXPECT_EQ(index.as_string(), "([0000000100],7,7)");
}

TEST(SmartIndex, LosesAnUpperBorderClearedWithOneOtherLeft) {
  SmartIndex index = index_of("0010000100");
  index.set(7, false);
  EXPECT_EQ(index.as_string(), "([0010000000],2,10)");
  index.set(4, true);  // an index without upper border takes the new one
  EXPECT_EQ(index.as_string(), "([0010100000],2,4)");
}

TEST(SmartIndex, HasNoBordersOnceTheOnlyFlagIsCleared) {
  SmartIndex index = index_of("0010");
  index.set(2, false);
  EXPECT_EQ(index.as_string(), "([0000],4,4)");
  index.set(1, true);
  EXPECT_EQ(index.as_string(), "([0100],1,1)");
}

TEST(SmartIndex, RefusesToSetBeyondTheEnd) {
  SmartIndex index(4, false);
  EXPECT_EQ(range_error_of([&] { index.set(5, true); }), "SmartIndex::set value out of range");
  EXPECT_EQ(range_error_of([&] { index.set(kHighest, false); }), "SmartIndex::set value out of range");
  EXPECT_EQ(index.as_string(), "([0000],4,4)");
}

TEST(SmartIndex, MovesItsBordersAlsoForTheEndWhichHasNoFlag) {
  const struct {
    const char* digits;
    bool value;
    const char* text;
  } cases[] = {
      {"", true, "([],0,0)"},           {"", false, "([],0,0)"},            // the end is the border already
      {"0000", true, "([0000],4,4)"},   {"0000", false, "([0000],4,4)"},    //
      {"11100", true, "([11100],0,5)"}, {"11100", false, "([11100],0,2)"},  //
      {"0010", true, "([0010],2,4)"},   {"0010", false, "([0010],2,2)"},    //
  };
  for (const auto& [digits, value, text] : cases) {
    SmartIndex index = index_of(digits);
    index.set(index.size(), value);
    EXPECT_EQ(index.as_string(), text) << digits;
  }
}

TEST(SmartIndex, TakesItsUpperBorderBackFromTheEndButNeverTheLowerOne) {
  SmartIndex index = index_of("11100");
  index.set(5, true);
  EXPECT_FALSE(index.includes(at_record(5)));
  EXPECT_FALSE(index.is_one_run());
  EXPECT_EQ(index.count(), 3);
  EXPECT_EQ(index.next(1), 2);
  EXPECT_EQ(index.next(2), 5);
  EXPECT_EQ(index.prev(5), 2);
  index.set(5, false);
  EXPECT_EQ(index.as_string(), "([11100],0,2)");
  SmartIndex one = index_of("0100");
  one.set(4, true);
  one.set(4, false);
  EXPECT_EQ(one.as_string(), "([0100],1,4)");
  one.set(0, true);  // an index without upper border takes the new one
  EXPECT_EQ(one.as_string(), "([1100],0,0)");
}

struct Pair {
  const char* left;
  const char* right;
  const char* result;
};

TEST(SmartIndex, LimitsToWhatTheOtherSelectsFromTheLargerLowerBorderOn) {
  const Pair cases[] = {
      {"1111", "0110", "([1110],0,2)"},        // 0 lies below the other's lower border and stays
      {"0110", "1111", "([0110],1,2)"},        //
      {"010001", "000101", "([010001],1,5)"},  // 1 stays
      {"0110", "0000", "([0110],1,2)"},        // all lies below the border that an empty index has
      {"0000", "0110", "([0000],4,4)"},        //
      {"0111", "0101", "([0101],1,3)"},        //
      {"1100", "0011", "([1100],0,1)"},        // all below
      {"0011", "1100", "([0000],4,4)"},        //
      {"", "", "([],0,0)"},
  };
  for (const Pair& item : cases) {
    SmartIndex index = index_of(item.left);
    const SmartIndex other = index_of(item.right);
    index.limit_to(other);
    EXPECT_EQ(index.as_string(), item.result) << item.left << " limited to " << item.right;
    EXPECT_EQ(other.as_string(), index_of(item.right).as_string());
  }
}

TEST(SmartIndex, RefusesToBeLimitedToAnotherSize) {
  for (const unsigned long size : {0, 3, 5}) {
    SmartIndex index = index_of("0110");
    SmartIndex other(size, true);
    EXPECT_EQ(range_error_of([&] { index.limit_to(other); }), "AandB: vectors are not the same size!");
    EXPECT_EQ(index.as_string(), "([0110],1,2)");
    EXPECT_EQ(other.as_string(), SmartIndex(size, true).as_string());
  }
}

TEST(SmartIndex, RemovesWhatTheOtherSelects) {
  const Pair cases[] = {
      {"1111", "0110", "([1001],0,3)"},
      {"0110", "1111", "([0000],4,4)"},
      {"0110", "0000", "([0110],1,2)"},
      {"0000", "1111", "([0000],4,4)"},
      {"1010", "0101", "([1010],0,2)"},
      {"1111", "1000", "([0111],1,3)"},
      {"1111", "0001", "([1110],0,2)"},
      {"1100", "0011", "([1100],0,1)"},
      {"", "", "([],0,0)"},
      // The sizes need not be the same.
      {"1111", "11", "([0011],2,3)"},
      {"1111", "", "([1111],0,3)"},
      {"1111", "00", "([1111],0,3)"},
      {"11", "0111", "([10],0,0)"},
      {"11", "0000", "([11],0,1)"},
      {"", "11", "([],0,0)"},
  };
  for (const Pair& item : cases) {
    SmartIndex index = index_of(item.left);
    const SmartIndex other = index_of(item.right);
    index.remove(other);
    EXPECT_EQ(index.as_string(), item.result) << item.left << " without " << item.right;
    EXPECT_EQ(other.as_string(), index_of(item.right).as_string());
  }
}

// 1, 2 and 5 selected, but the borders 1 and 2: set() has lost the upper one.
SmartIndex index_with_a_low_border() {
  SmartIndex index = index_of("00000101");
  index.set(7, false);
  index.set(1, true);
  index.set(2, true);
  return index;
}

TEST(SmartIndex, WalksToTheBorderItHasNotToTheOneItShouldHave) {
  ASSERT_EQ(index_with_a_low_border().as_string(), "([01100100],1,2)");
  const Pair cases[] = {
      // other, limited to it, without it
      {"01100000", "([01100100],1,5)", "([00000100],5,5)"},  // the walk stops at 2
      {"01000100", "([01000100],1,5)", "([00100100],2,5)"},
      {"00010000", "([01100000],1,2)", "([01100100],1,5)"},  // it begins behind 2 and so never stops
      {"00010100", "([01100100],1,5)", "([01100000],1,2)"},
  };
  for (const Pair& item : cases) {
    SmartIndex limited = index_with_a_low_border();
    limited.limit_to(index_of(item.left));
    EXPECT_EQ(limited.as_string(), item.right) << item.left;
    SmartIndex rest = index_with_a_low_border();
    rest.remove(index_of(item.left));
    EXPECT_EQ(rest.as_string(), item.result) << item.left;
  }
}

TEST(SmartIndex, HoldsARangeCutAtItsSize) {
  EXPECT_EQ(SmartIndex::of_range(5, 1, 3).as_string(), "([01100],1,2)");
  EXPECT_EQ(SmartIndex::of_range(5, 0, 5).as_string(), "([11111],0,4)");
  EXPECT_EQ(SmartIndex::of_range(5, 3, 9).as_string(), "([00011],3,4)");
  EXPECT_EQ(SmartIndex::of_range(5, 3, 9).count(), 2);
  EXPECT_FALSE(SmartIndex::of_range(5, 3, 9).includes(at_record(5)));
  EXPECT_EQ(SmartIndex::of_range(5, 3, 3).as_string(), "([00000],5,5)");
  EXPECT_EQ(SmartIndex::of_range(5, 4, 2).as_string(), "([00000],5,5)");
  EXPECT_EQ(SmartIndex::of_range(5, 7, 9).as_string(), "([00000],5,5)");
}

TEST(SmartIndex, GivesItsRunsAsLongAsTheyCanBe) {
  using Runs = std::vector<std::pair<unsigned long, unsigned long>>;
  EXPECT_EQ(index_of("0110100").runs(), (Runs{{1, 3}, {4, 5}}));
  EXPECT_EQ(index_of("000").runs(), Runs());
  SmartIndex index = index_of("0110100");
  index.set(3, true);
  EXPECT_EQ(index.runs(), (Runs{{1, 5}}));
  index.set(2, false);
  EXPECT_EQ(index.runs(), (Runs{{1, 2}, {3, 5}}));
  index.limit_to(index_of("1111111"));
  EXPECT_EQ(index.runs(), (Runs{{1, 2}, {3, 5}}));
}

TEST(SmartIndex, TakesItselfAsTheOther) {
  SmartIndex index = index_of("0110");
  index.limit_to(index);
  EXPECT_EQ(index.as_string(), "([0110],1,2)");
  index.remove(index);
  EXPECT_EQ(index.as_string(), "([0000],4,4)");
}

TEST(SmartIndex, FindsItsLowerBorderAloneAgain) {
  SmartIndex index = index_of("0010000100");
  index.set(2, false);
  index.reset_first();
  EXPECT_EQ(index.as_string(), "([0000000100],7,7)");
  SmartIndex empty(3, false);
  empty.reset_first();
  EXPECT_EQ(empty.first(), 3);
}

TEST(SmartIndex, IsCopiedWithItsBordersAndIndependentOfTheCopy) {
  SmartIndex index = index_of("0010000100");
  index.set(2, false);
  SmartIndex copy = index;
  EXPECT_EQ(copy.as_string(), index.as_string());
  copy.set(1, true);
  EXPECT_EQ(index.count(), 1);
  SmartIndex assigned(2, true);
  assigned = index;
  EXPECT_EQ(assigned.as_string(), "([0000000100],10,7)");
}

TEST(SmartIndex, IsMovedWithItsBorders) {
  SmartIndex index = index_of("0110");
  SmartIndex moved = std::move(index);
  EXPECT_EQ(moved.as_string(), "([0110],1,2)");
  // NOLINTBEGIN(bugprone-use-after-move,clang-analyzer-cplusplus.Move): what a move leaves behind is promised
  EXPECT_EQ(index.as_string(), "([],1,2)");
  EXPECT_FALSE(index.includes(at_record(1)));
  index.limit_to(SmartIndex(0, false));
  // NOLINTEND(bugprone-use-after-move,clang-analyzer-cplusplus.Move)
  EXPECT_EQ(index.as_string(), "([],0,0)");
  index = std::move(moved);
  EXPECT_EQ(index.as_string(), "([0110],1,2)");
  EXPECT_EQ(moved.as_string(), "([],1,2)");  // NOLINT(bugprone-use-after-move): as above
}

TEST(SmartIndex, SurvivesBeingMovedToItself) {
  SmartIndex index = index_of("0110");
  SmartIndex& same = index;
  index = std::move(same);
  EXPECT_EQ(index.as_string(), "([0110],1,2)");
}

TEST(SmartIndex, HasAFormerSelfTestThatDoesNothing) { test_SmartIndex(); }

// The operations as they are defined, one position at a time, without a thought for speed.
struct PlainIndex {
  std::vector<bool> flags;
  unsigned long first, last;

  bool flag(unsigned long p) const { return p < flags.size() && flags[p]; }
  unsigned long size() const { return flags.size(); }

  unsigned long next(unsigned long i) const {
    if (i >= last) return size();
    if (i < first) return first;
    for (unsigned long p = i + 1;; ++p) {
      if (p == last) return size();
      if (flag(p)) return p;
    }
  }
  unsigned long prev(unsigned long i) const {
    if (i <= first) return size();
    if (i > last) return last;
    for (unsigned long p = i - 1;; --p) {
      if (p == first) return size();
      if (flag(p)) return p;
    }
  }
  void set(unsigned long i, bool value) {
    if (i < size()) flags[i] = value;
    if (value) {
      if (i < first) first = i;
      if (i > last || last == size()) last = i;
    } else {
      if (first == i) first = next(i);
      if (last == i) last = prev(i);
    }
  }
  void limit_to(const PlainIndex& other) {
    for (unsigned long p = std::max(first, other.first); p != size(); ++p) {
      if (flags[p]) flags[p] = other.flag(p);
      if (p == last) break;
    }
    reset_borders();
  }
  void remove(const PlainIndex& other) {
    const unsigned long end = std::min(last, other.last);
    for (unsigned long p = std::max(first, other.first); p < size(); ++p) {
      if (other.flag(p)) flags[p] = false;
      if (p == end) break;
    }
    reset_borders();
  }
  void reset_first() {
    first = 0;
    while (first != size() && !flags[first]) ++first;
  }
  void reset_borders() {
    reset_first();
    last = first;
    for (unsigned long p = first; p < size(); ++p) {
      if (flags[p]) last = p;
    }
  }
  std::string as_string() const {
    std::string text = "([";
    for (const bool flag : flags) text += flag ? '1' : '0';
    return text + "]," + std::to_string(first) + "," + std::to_string(last) + ")";
  }
  std::vector<std::pair<unsigned long, unsigned long>> runs() const {
    std::vector<std::pair<unsigned long, unsigned long>> runs;
    for (unsigned long p = 0; p < size(); ++p) {
      if (!flags[p]) continue;
      if (p == 0 || !flags[p - 1]) runs.emplace_back(p, p);
      runs.back().second = p + 1;
    }
    return runs;
  }
};

PlainIndex plain_range(unsigned long size, unsigned long begin, unsigned long end) {
  PlainIndex index{std::vector<bool>(size, false), 0, 0};
  for (unsigned long p = begin; p < end && p < size; ++p) index.flags[p] = true;
  index.reset_borders();
  return index;
}

// The index and the plain one, to which the same is done.
struct Both {
  SmartIndex index;
  PlainIndex plain;
};

Both filled(unsigned long size, bool value) {
  return {SmartIndex(size, value), {std::vector<bool>(size, value), value ? 0 : size, value ? size - 1 : size}};
}

Both of_range(unsigned long size, unsigned long begin, unsigned long end) {
  return {SmartIndex::of_range(size, begin, end), plain_range(size, begin, end)};
}

class Random {
 public:
  explicit Random(std::uint64_t seed) : engine_(seed) {}
  unsigned long below(unsigned long n) { return engine_() % n; }

 private:
  std::mt19937 engine_;
};

void set_flag_at(Both& one, unsigned long i, Random& random) {
  const bool value = random.below(3) != 0;
  one.index.set(i, value);
  one.plain.set(i, value);
}

void set_flag(Both& one, const Both&, Random& random) { set_flag_at(one, random.below(one.plain.size() + 1), random); }

void limit_to_other(Both& one, const Both& other, Random&) {
  one.index.limit_to(other.index);
  one.plain.limit_to(other.plain);
}

void remove_other(Both& one, const Both& other, Random&) {
  one.index.remove(other.index);
  one.plain.remove(other.plain);
}

void reset_borders(Both& one, const Both&, Random&) {
  one.index.reset_borders();
  one.plain.reset_borders();
}

void reset_first(Both& one, const Both&, Random&) {
  one.index.reset_first();
  one.plain.reset_first();
}

void copy_other(Both& one, const Both& other, Random&) { one = other; }

void move_away_and_back(Both& one, const Both&, Random&) {
  SmartIndex moved = std::move(one.index);
  one.index = std::move(moved);
}

void take_flags_of_other(Both& one, const Both& other, Random&) {
  one.index = SmartIndex(other.plain.flags);
  one.plain = other.plain;
  one.plain.reset_borders();
}

void take_range(Both& one, const Both&, Random& random) {
  const unsigned long size = one.plain.size();
  const unsigned long begin = random.below(size + 2);
  one = of_range(size, begin, random.below(size + 3));
}

// Which is removed as far as it goes, and limits nothing.
void meet_another_size(Both& one, const Both&, Random& random) {
  const unsigned long size = random.below(2 * one.plain.size() + 2);
  const Both stranger = of_range(size, random.below(size + 1), size);
  remove_other(one, stranger, random);
  if (size != one.plain.size()) {
    EXPECT_THROW(one.index.limit_to(stranger.index), std::range_error);
  }
}

void set_beyond_the_end(Both& one, const Both&, Random& random) {
  const unsigned long i = one.plain.size() + 1 + random.below(3);
  EXPECT_THROW(one.index.set(i, random.below(2) == 0), std::range_error);
}

using Change = void (*)(Both& one, const Both& other, Random& random);

// Most often that of a flag.
Change random_change(Random& random) {
  static const Change others[] = {limit_to_other,     remove_other,        reset_borders, reset_first,
                                  copy_other,         take_flags_of_other, take_range,    meet_another_size,
                                  set_beyond_the_end, move_away_and_back};
  const unsigned long chosen = random.below(16);
  return chosen < std::size(others) ? others[chosen] : set_flag;
}

void expect_equal_around(const Both& one, unsigned long i) {
  ASSERT_EQ(one.index.next(i), one.plain.next(i)) << i;
  ASSERT_EQ(one.index.prev(i), one.plain.prev(i)) << i;
  ASSERT_EQ(one.index.includes(at_record(static_cast<std::int64_t>(i))), one.plain.flag(i)) << i;
}

void expect_equal(const Both& one) {
  const std::vector<bool>& flags = one.plain.flags;
  ASSERT_EQ(one.index.as_string(), one.plain.as_string());
  ASSERT_EQ(one.index.first(), one.plain.first);
  ASSERT_EQ(one.index.last(), one.plain.last);
  ASSERT_EQ(one.index.size(), one.plain.size());
  ASSERT_EQ(one.index.runs(), one.plain.runs());
  ASSERT_EQ(one.index.count(), static_cast<unsigned long>(std::count(flags.begin(), flags.end(), true)));
}

TEST(SmartIndex, AgreesWithAPlainIndexOverRandomOperations) {
  Random random(triglub_test::random_seed());
  for (int round = 0; round < 600; ++round) {
    const unsigned long size = 1 + random.below(round % 10 == 0 ? 200 : 9);
    std::vector<Both> sets;
    for (int i = 0; i < 3; ++i) sets.push_back(filled(size, random.below(2) == 0));
    for (int step = 0; step < 60; ++step) {
      Both& one = sets[random.below(3)];
      const Both& other = sets[random.below(3)];
      random_change(random)(one, other, random);
      ASSERT_NO_FATAL_FAILURE(expect_equal(one));
      ASSERT_FALSE(one.index.includes(at_record(-1 - static_cast<std::int64_t>(random.below(600)))));
      for (unsigned long i = 0; i < size + 2; ++i) ASSERT_NO_FATAL_FAILURE(expect_equal_around(one, i));
    }
  }
}

void set_flags_one_by_one(Both& one, Random& random) {
  const unsigned long size = one.plain.size();
  for (int step = 0; step < 300; ++step) {
    const unsigned long set = random.below(size + 1);
    set_flag_at(one, set, random);
    ASSERT_NO_FATAL_FAILURE(expect_equal(one));
    for (const unsigned long i : {set, random.below(size + 2)}) {
      ASSERT_NO_FATAL_FAILURE(expect_equal_around(one, i));
    }
  }
}

// What a move leaves behind is an empty set, both ways.
void move_away_and_back_empty(SmartIndex& index) {
  SmartIndex moved = std::move(index);
  // NOLINTBEGIN(bugprone-use-after-move,clang-analyzer-cplusplus.Move): what a move leaves behind is promised
  EXPECT_EQ(index.runs().size(), 0u);
  index = std::move(moved);
  EXPECT_EQ(moved.runs().size(), 0u);
  // NOLINTEND(bugprone-use-after-move,clang-analyzer-cplusplus.Move)
}

// So many flags one by one that what holds them changes its form, and then what is done to whole sets.
TEST(SmartIndex, AgreesWithAPlainIndexOverManyFlagsSetOneByOne) {
  Random random(triglub_test::random_seed());
  for (int round = 0; round < 100; ++round) {
    const unsigned long size = 50 + random.below(400);
    Both one = filled(size, false);
    ASSERT_NO_FATAL_FAILURE(set_flags_one_by_one(one, random));
    Both other = of_range(size, random.below(size), size);
    Both copy = one;
    const Change change = random.below(2) == 0 ? limit_to_other : remove_other;
    change(other, one, random);
    ASSERT_NO_FATAL_FAILURE(expect_equal(other));
    change(one, other, random);
    ASSERT_NO_FATAL_FAILURE(expect_equal(copy));
    move_away_and_back_empty(one.index);
    ASSERT_NO_FATAL_FAILURE(expect_equal(one));
  }
}

TEST(SmartIndex, IsOneRunAlsoAfterManyFlagsSetOneByOne) {
  SmartIndex index(1000, false);
  for (unsigned long i = 100; i < 900; i += 2) index.set(i, true);
  EXPECT_FALSE(index.is_one_run());
  for (unsigned long i = 101; i < 900; i += 2) index.set(i, true);
  EXPECT_TRUE(index.is_one_run());
  EXPECT_EQ(index.runs(), (std::vector<std::pair<unsigned long, unsigned long>>{{100, 900}}));
  for (unsigned long i = 0; i < 1000; ++i) index.set(i, false);
  EXPECT_FALSE(index.is_one_run());
  EXPECT_EQ(index.count(), 0);
}

TEST(SmartIndex, SetsManyFlagsOneByOneInAnyOrder) {
  constexpr unsigned long runs = 50000;
  SmartIndex ascending(2 * runs, false);
  SmartIndex descending(2 * runs, false);
  SmartIndex holes(2 * runs, true);
  for (unsigned long i = 0; i < runs; ++i) {
    ascending.set(2 * i, true);
    descending.set(2 * (runs - 1 - i), true);
    holes.set(2 * i + 1, false);
  }
  for (const SmartIndex* index : {&ascending, &descending, &holes}) EXPECT_EQ(index->runs().size(), runs);
}

TEST(SmartIndex, IsLimitedFromItsOwnLowerBorderOnWhereSetHasLostIt) {
  std::vector<bool> flags(10, false);
  flags[3] = flags[4] = true;
  SmartIndex index(flags);
  index.set(3, false);
  ASSERT_EQ(index.first(), 10u);
  index.limit_to(SmartIndex::of_range(10, 0, 1));
  EXPECT_EQ(index.as_string(), "([0000100000],4,4)");
}

}  // namespace
