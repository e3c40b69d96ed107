// Conversions by edition 1: the document and the end of a conversion are those of the plain form, which takes generated
// tables and trees; of tables and trees that were changed at random bytes the document of the shipped tree is
// well-formed; conversions side by side write the same.
#include <array>
#include <string>
#include <thread>

#include "reference/library_run.h"
#include "reference/random_case.h"
#include "reference/reference_writer.h"
#include "support/conversion_case.h"
#include "support/expect.h"

namespace {

using triglub_fuzz::Bytes;
using triglub_fuzz::Case;
using triglub_fuzz::expect;
using triglub_fuzz::Outcome;
using triglub_reference::Random;
using triglub_reference::Request;

using MakeRequest = Request (*)(Random&);
constexpr std::array<MakeRequest, 4> kMakers = {
    triglub_reference::random_request, triglub_reference::random_response_request,
    triglub_reference::random_ledger_request, triglub_reference::random_deep_request};

Case case_of(const Request& request) {
  return {triglub_fuzz::files_of(request.tables, request.site), triglub_reference::tree_text(request.tree),
          request.subset, request.flags};
}

bool is_same_end(const std::string& plain, const std::string& actual) {
  return plain == actual || (plain == triglub_reference::kAnyFatal && actual.starts_with("fatal: "));
}

void compare_with_plain_form(const Request& request, const Outcome& actual) {
  triglub_reference::ProcessState state;
  const auto plain = triglub_reference::reference_conversion(request, state);
  expect(is_same_end(plain.end, actual.end), "it ends as the plain form", plain.end + "\n" + actual.end);
  triglub_fuzz::expect_same(plain.document, actual.document, "the document of the plain form");
}

void compare_side_by_side(const Case& given, const Outcome& alone) {
  const triglub_fuzz::OpenDatabase open(given);
  std::array<Outcome, 3> outcomes;
  std::array<std::thread, 3> threads;
  for (std::size_t i = 0; i < threads.size(); ++i) {
    threads[i] = std::thread([&, i] { outcomes[i] = triglub_fuzz::convert(open.db(), given); });
  }
  for (std::thread& thread : threads) thread.join();
  for (const Outcome& outcome : outcomes) {
    triglub_fuzz::expect_same(alone.document, outcome.document, "the document beside others");
    triglub_fuzz::expect_same(alone.end, outcome.end, "the end beside others");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const std::string shipped = triglub_fuzz::shipped_tree("stationxml-edition1");
  Bytes bytes(data, size);
  const MakeRequest make = bytes.one_of(kMakers);
  const bool is_shipped = bytes.one_in(3);
  const Bytes edits(bytes.take(bytes.one_in(2) ? bytes.byte() : 0));
  Random random(bytes.rest());
  const Request request = make(random);
  Case given = case_of(request);
  if (is_shipped) given.tree = shipped;
  triglub_fuzz::edit(edits, &given);

  const Outcome actual = triglub_fuzz::convert(given);
  if (!is_shipped && edits.at_end()) compare_with_plain_form(request, actual);
  if (is_shipped && given.tree == shipped && actual.is_written()) triglub_fuzz::expect_well_formed(actual.document);
  if (!actual.document.empty() && triglub_fuzz::is_for_threads(data, size)) compare_side_by_side(given, actual);
  return 0;
}
