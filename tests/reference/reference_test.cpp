// The library against the reference writer on random cases: the document byte for byte, the complaints in order, and
// how the conversion ends.
//
// Each sequence of conversions runs in a process of its own. The reference keeps what such a process keeps, so the
// longer sequences test what one conversion leaves to the next: units, responses, the rate flag, the depth.
//
// REFERENCE_SEED in the environment repeats one sequence that failed (its seed is printed, the case with it), as
// --gtest_random_seed repeats a whole test; REFERENCE_CASES sets the number of sequences of each test.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

#include "reference/case.h"
#include "reference/library_run.h"
#include "reference/random_case.h"
#include "reference/reference_writer.h"
#include "support/random_seed.h"

namespace triglub_reference {

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
  return "--- reference\n" + expected.substr(from, 600) + "\n--- library\n" + actual.substr(from, 600) + "\n";
}

std::string joined(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\n";
  return text;
}

bool same_end(const std::string& expected, const std::string& actual) {
  return expected == actual || (expected == kAnyFatal && actual.starts_with("fatal: "));
}

// True when the library did as the reference for each of the requests.
bool agree(const std::vector<Request>& requests) {
  const std::vector<Outcome> actual = library_conversions(requests);
  ProcessState state;
  for (std::size_t i = 0; i < requests.size(); ++i) {
    const Outcome expected = reference_conversion(requests[i], state);
    SCOPED_TRACE("conversion " + std::to_string(i + 1));
    if (i >= actual.size()) {
      ADD_FAILURE() << "the library's process ended before its time\n" << describe(requests[i]);
      return false;
    }
    EXPECT_TRUE(same_end(expected.end, actual[i].end))
        << "reference: " << expected.end << "\nlibrary: " << actual[i].end;
    EXPECT_TRUE(expected.document == actual[i].document) << difference(expected.document, actual[i].document);
    EXPECT_TRUE(expected.log == actual[i].log) << difference(joined(expected.log), joined(actual[i].log));
    if (::testing::Test::HasFailure()) {
      ADD_FAILURE() << describe(requests[i]);
      return false;
    }
    if (expected.end.starts_with("fatal: ")) break;
  }
  return true;
}

using MakeRequest = Request (*)(Random&);

// Sequences of `fewest` to `most` conversions, until one of them does not agree.
void compare_sequences(std::uint64_t count, int fewest, int most, MakeRequest make) {
  const bool is_repeated = std::getenv("REFERENCE_SEED") != nullptr;
  const std::uint64_t first = is_repeated ? setting("REFERENCE_SEED", 0) : triglub_test::random_seed();
  count = setting("REFERENCE_CASES", is_repeated ? 1 : count);
  for (std::uint64_t i = 0; i < count; ++i) {
    SCOPED_TRACE("REFERENCE_SEED=" + std::to_string(first + i));
    Random random(first + i);
    std::vector<Request> requests;
    for (int n = random.between(fewest, most); n > 0; --n) requests.push_back(make(random));
    if (!agree(requests)) return;
  }
}

TEST(Reference, AgreesOnEveryRecordOfTheMasterView) { compare_sequences(400, 1, 1, random_ledger_request); }

TEST(Reference, AgreesOnTreesOfAnyShape) { compare_sequences(600, 1, 1, random_request); }

TEST(Reference, AgreesOnDocumentsWithResponses) { compare_sequences(400, 1, 1, random_response_request); }

// Searches over long distances go other ways than those to a record near by.
TEST(Reference, AgreesOnViewsOfHundredsOfRecords) { compare_sequences(50, 1, 1, random_large_request); }

TEST(Reference, AgreesOnTreesAroundTheDepthLimit) { compare_sequences(200, 1, 1, random_deep_request); }

TEST(Reference, AgreesOnWhatConversionsLeaveToOneAnother) { compare_sequences(150, 2, 6, random_request); }

}  // namespace

}  // namespace triglub_reference
