// Conversions by edition 1: the document and the end of a conversion are those of the plain form, which takes generated
// tables and trees; of tables and trees that were changed at random bytes the document of the shipped tree is
// well-formed; conversions side by side write the same.
#include <algorithm>
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

// Edition 1 writes codes and units as the tables have them; its shipped tree makes markup of the other texts harmless.
bool are_raw_texts_harmless(const triglub_reference::Tables& tables) {
  constexpr std::array<std::string_view, 3> kMadeHarmless = {"netname", "staname", "insname"};
  const auto is_harmful = [](char c) {
    return static_cast<unsigned char>(c) < ' ' || c == '<' || c == '&' || c == '"';
  };
  for (const auto& [table, rows] : tables.rows) {
    for (const auto& row : rows) {
      for (const auto& [field, text] : row) {
        if (std::find(kMadeHarmless.begin(), kMadeHarmless.end(), field) != kMadeHarmless.end()) continue;
        if (std::any_of(text.begin(), text.end(), is_harmful) || text.find("\xEF\xBF") != std::string::npos)
          return false;
      }
    }
  }
  return true;
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
  static const std::string tree = triglub_fuzz::shipped_parameters("stationxml-edition1");
  static const std::string site = triglub_fuzz::shipped_parameters("site");
  Bytes bytes(data, size);
  const MakeRequest make = bytes.one_of(kMakers);
  const bool is_shipped = bytes.one_in(3);
  const Bytes cells(bytes.take(bytes.one_in(2) ? bytes.byte() : 0));
  const Bytes texts(bytes.take(bytes.one_in(3) ? bytes.byte() : 0));
  Random random(bytes.rest());
  Request request = make(random);
  triglub_fuzz::edit(cells, &request.tables);
  Case given = case_of(request);
  if (is_shipped) given.tree = tree;
  if (is_shipped) given.files["site.pf"] = site;
  triglub_fuzz::edit(texts, &given);

  const Outcome actual = triglub_fuzz::convert(given);
  if (!is_shipped && cells.at_end() && texts.at_end()) compare_with_plain_form(request, actual);
  if (is_shipped && texts.at_end() && actual.is_written() && are_raw_texts_harmless(request.tables)) {
    triglub_fuzz::expect_well_formed(actual.document);
  }
  if (!actual.document.empty() && triglub_fuzz::is_for_threads(data, size)) compare_side_by_side(given, actual);
  return 0;
}
