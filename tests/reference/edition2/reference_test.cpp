// The library against the plain form of the second edition on random cases: the document byte for byte, and whether
// there is one.
//
// REFERENCE_SEED in the environment repeats one case that failed (its seed is printed, the case with it), as
// --gtest_random_seed repeats a whole test; REFERENCE_CASES sets the number of cases of each test.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>

#include "reference/edition2/library_run.h"
#include "reference/edition2/random_case.h"
#include "reference/edition2/writer.h"
#include "support/random_seed.h"

namespace triglub_reference::edition2 {

namespace {

std::uint64_t setting(const char* variable, std::uint64_t otherwise) {
  const char* text = std::getenv(variable);
  return text == nullptr ? otherwise : std::strtoull(text, nullptr, 10);
}

// The texts from a little before the place where they part.
std::string difference(const std::string& expected, const std::string& actual) {
  const auto [at, ignored] = std::mismatch(expected.begin(), expected.end(), actual.begin(), actual.end());
  const auto place = static_cast<std::size_t>(at - expected.begin());
  const std::size_t from = place < 300 ? 0 : place - 300;
  return "--- plain form\n" + expected.substr(from, 600) + "\n--- library\n" + actual.substr(from, 600) + "\n";
}

bool agrees(const Request& request) {
  const Outcome expected = plain_conversion(request);
  const Outcome actual = library_conversion(request);
  EXPECT_EQ(expected.failure.empty(), actual.failure.empty())
      << "plain form: " << expected.failure << "\nlibrary: " << actual.failure;
  EXPECT_TRUE(expected.document == actual.document) << difference(expected.document, actual.document);
  if (::testing::Test::HasFailure()) ADD_FAILURE() << describe(request);
  return !::testing::Test::HasFailure();
}

using MakeRequest = Request (*)(Random&);

// Until one does not agree.
void compare(std::uint64_t count, MakeRequest make) {
  const bool is_repeated = std::getenv("REFERENCE_SEED") != nullptr;
  const std::uint64_t first = is_repeated ? setting("REFERENCE_SEED", 0) : triglub_test::random_seed();
  count = setting("REFERENCE_CASES", is_repeated ? 1 : count);
  for (std::uint64_t i = 0; i < count; ++i) {
    SCOPED_TRACE("REFERENCE_SEED=" + std::to_string(first + i));
    Random random(first + i);
    if (!agrees(make(random))) return;
  }
}

TEST(Edition2Reference, AgreesOnEveryRecord) { compare(400, random_ledger_request); }

TEST(Edition2Reference, AgreesOnDocuments) { compare(400, random_document_request); }

TEST(Edition2Reference, AgreesOnChainsOfStages) { compare(600, random_chains_request); }

TEST(Edition2Reference, AgreesOnTreesOfAnyShape) { compare(600, random_tree_request); }

TEST(Edition2Reference, AgreesOnManyStations) { compare(30, many_stations_request); }

}  // namespace

}  // namespace triglub_reference::edition2
