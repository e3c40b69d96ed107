// A process that converts again and again holds no more memory at the end than near the start.
#include <gtest/gtest.h>
#include <malloc.h>

#include <cstdlib>
#include <memory>
#include <sstream>
#include <string>

#include "conversion.h"
#include "platform/database.h"
#include "platform/elog.h"
#include "platform/parfile.h"

namespace triglub {
namespace {

using ParameterFile = std::unique_ptr<Pf, decltype(&pffree)>;

const std::string kDatabase = TRIGLUB_SOURCE_DIR "/examples/observatory/observatory";

// ENDURANCE_CONVERSIONS in the environment asks for more.
long conversions_wanted() {
  constexpr long kUsual = 1000;
  const char* wanted = std::getenv("ENDURANCE_CONVERSIONS");
  return wanted == nullptr ? kUsual : std::max(std::atol(wanted), kUsual);
}

// Bytes that the process has asked for and not given back.
std::size_t bytes_held() {
  const struct mallinfo2 info = mallinfo2();
  return info.uordblks + info.hblkhd;
}

// As a service does it: everything is opened anew and closed. The length of the document.
std::size_t convert(const std::string& parameters) {
  Dbptr db;
  EXPECT_EQ(dbopen(kDatabase.c_str(), "r", &db), 0);
  Pf* pf = nullptr;
  EXPECT_EQ(pfread((TRIGLUB_SOURCE_DIR "/data/" + parameters).c_str(), &pf), 0);
  const ParameterFile owned(pf, &pffree);
  std::ostringstream out;
  Conversion().write(db, pf, nullptr, out, flags_for(DetailLevel::response));
  dbclose(db);
  return out.str().size();
}

class Endurance : public testing::TestWithParam<std::string> {
 protected:
  static void SetUpTestSuite() {
    setenv("TRIGLUB_PFPATH", TRIGLUB_SOURCE_DIR "/data", 1);
    setenv("SOURCE_DATE_EPOCH", "1700000000", 1);
    elog_set_sink([](ElogLevel, const char*, void*) {}, nullptr);
  }
  static void TearDownTestSuite() { elog_set_sink(nullptr, nullptr); }
};

TEST_P(Endurance, TheMemoryOfAProcessThatConvertsOnAndOnStaysFlat) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "a sanitizer has a heap of its own, which does not tell how much is held; it looks for leaks itself";
#endif
  constexpr long kFirst = 30;                  // until whatever is made once has been made
  constexpr std::size_t kBytesOfANumber = 16;  // a closed session leaves the place of its number behind
  constexpr std::size_t kSpare = 32'768;       // what the allocator keeps for the next one differs a little
  const std::size_t length = convert(GetParam());
  ASSERT_GT(length, 10'000U);
  for (long i = 1; i < kFirst; ++i) convert(GetParam());
  const std::size_t before = bytes_held();
  const long count = conversions_wanted();
  for (long i = kFirst; i < count; ++i) ASSERT_EQ(convert(GetParam()), length);
  const std::size_t after = bytes_held();
  RecordProperty("conversions", std::to_string(count));
  RecordProperty("bytes", std::to_string(after));
  EXPECT_LE(after, before + kSpare + static_cast<std::size_t>(count) * kBytesOfANumber) << before << " bytes before";
}

INSTANTIATE_TEST_SUITE_P(Editions, Endurance, testing::Values("stationxml-edition1.pf", "stationxml.pf"),
                         [](const auto& info) { return info.index == 0 ? "Edition1" : "Edition2"; });

}  // namespace
}  // namespace triglub
