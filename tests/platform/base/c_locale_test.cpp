// Numbers of the C locale in a program that has chosen another one.
#include "base/c_locale.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <thread>
#include <vector>

namespace triglub {
namespace {

TEST(CLocale, IsOneForAllThreads) {
  const locale_t one = c_locale();
  ASSERT_NE(one, static_cast<locale_t>(nullptr));
  std::vector<locale_t> seen(8);
  std::vector<std::thread> threads;
  threads.reserve(seen.size());
  for (locale_t& place : seen) threads.emplace_back([&place] { place = c_locale(); });
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(seen, std::vector<locale_t>(seen.size(), one));
}

TEST(CStrtod, ReadsTheNumberAtTheStartAndTellsItsEnd) {
  const char* text = "1.5x";
  char* end = nullptr;
  EXPECT_EQ(c_strtod(text, &end), 1.5);
  EXPECT_EQ(end, text + 3);
  text = "1,5";
  EXPECT_EQ(c_strtod(text, &end), 1.0);
  EXPECT_EQ(end, text + 1);
}

TEST(CStrtod, TellsWhatIsOutOfRange) {
  for (const char* text : {"1e999", "-1e999", "1e-999"}) {
    errno = 0;
    c_strtod(text, nullptr);
    EXPECT_EQ(errno, ERANGE) << text;
  }
}

TEST(CStrtod, ReadsAPointInALocaleWithAComma) {
  const locale_t german = newlocale(LC_ALL_MASK, "de_DE.UTF-8", nullptr);
  if (german == static_cast<locale_t>(nullptr)) GTEST_SKIP() << "no locale with a decimal comma here";
  const locale_t before = uselocale(german);
  const double number = c_strtod("1.5", nullptr);
  uselocale(before);
  freelocale(german);
  EXPECT_EQ(number, 1.5);
}

}  // namespace
}  // namespace triglub
