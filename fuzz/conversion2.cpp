// Conversions by edition 2: documents are well-formed and those of the plain form, which takes generated tables and
// trees; of tables and trees that were changed at random bytes they are well-formed; written in pieces by several
// threads they are the same.
#include <array>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "epoch_document.h"
#include "platform/text.h"
#include "platform/threads.h"
#include "reference/edition2/random_case.h"
#include "reference/edition2/writer.h"
#include "support/conversion_case.h"
#include "support/expect.h"
#include "support/own_table.h"

namespace {

namespace reference = triglub_reference::edition2;

using triglub_fuzz::Bytes;
using triglub_fuzz::Case;
using triglub_fuzz::expect;
using triglub_fuzz::Outcome;
using triglub_reference::Random;

using MakeRequest = reference::Request (*)(Random&);
constexpr std::array<MakeRequest, 4> kMakers = {reference::random_tree_request, reference::random_document_request,
                                                reference::random_ledger_request, reference::random_chains_request};

triglub::DetailLevel level_of(reference::Level level) {
  switch (level) {
    case reference::Level::network:
      return triglub::DetailLevel::network;
    case reference::Level::station:
      return triglub::DetailLevel::station;
    case reference::Level::channel:
      return triglub::DetailLevel::channel;
    default:
      return triglub::DetailLevel::response;
  }
}

Case case_of(const reference::Request& request) {
  Case made = {triglub_fuzz::files_of(request.tables, request.site),
               reference::tree_text(request.tree),
               {},
               triglub::flags_for(level_of(request.level))};
  for (const auto& [field, pattern] : request.conditions) made.conditions[field] = "/" + pattern + "/";
  return made;
}

// The plain form knows no other encoding.
void read_as_utf8(triglub_reference::Tables* tables) {
  for (auto& [table, rows] : tables->rows) {
    for (auto& row : rows) {
      for (auto& [field, text] : row) {
        if (!triglub::is_utf8(text)) text = triglub::latin1_to_utf8(text);
      }
    }
  }
}

void compare_with_plain_form(reference::Request request, const Outcome& actual) {
  read_as_utf8(&request.tables);
  const reference::Outcome plain = reference::plain_conversion(request);
  expect(plain.failure.empty() == (actual.end == "returned"), "it ends as the plain form",
         plain.failure + "\n" + actual.end);
  triglub_fuzz::expect_same(plain.document, actual.document, "the document of the plain form");
}

// The pieces by as many threads as there are, each the next in turn.
std::vector<std::string> pieces_of(const triglub::EpochDocument& document, std::size_t count, std::size_t threads) {
  std::vector<std::string> pieces(count);
  std::vector<std::thread> workers;
  for (std::size_t first = 0; first < threads; ++first) {
    workers.emplace_back([&, first] {
      triglub::EpochDocument::PieceWriter writer(document);
      for (std::size_t piece = first; piece < count; piece += threads) {
        triglub::Findings findings;
        std::ostringstream out;
        expect(writer.write(piece, out, &findings) == !out.str().empty(), "a piece that holds something is written");
        pieces[piece] = out.str();
      }
    });
  }
  for (std::thread& worker : workers) worker.join();
  return pieces;
}

void compare_in_pieces(const Case& given, const Outcome& whole, unsigned int threads) {
  triglub::set_threads(threads);
  const triglub_fuzz::OpenDatabase open(given);
  const triglub_fuzz::Call call(open.db(), given);
  triglub::EpochDocument document(call.db(), call.pf(), call.conditions(),
                                  static_cast<triglub::DetailLevel>(given.flags));
  triglub::EpochDocument::Parts parts;
  if (document.split(&parts)) {
    std::string pieces;
    for (const std::string& piece : pieces_of(document, parts.pieces, threads)) pieces += piece;
    const bool is_none = parts.are_required && pieces.empty();
    triglub_fuzz::expect_same(whole.document, is_none ? "" : parts.head + pieces + parts.tail,
                              "the document in pieces");
  }
  triglub::set_threads(1);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const std::string tree = triglub_fuzz::shipped_parameters("stationxml");
  static const std::string site = triglub_fuzz::shipped_parameters("site");
  Bytes bytes(data, size);
  const MakeRequest make = bytes.one_of(kMakers);
  const bool is_shipped = bytes.one_in(3);
  const Bytes cells(bytes.take(bytes.one_in(2) ? bytes.byte() : 0));
  const Bytes texts(bytes.take(bytes.one_in(3) ? bytes.byte() : 0));
  Bytes own_table(bytes.take(bytes.one_in(8) ? bytes.byte() : 0));
  const bool has_own_table = !own_table.at_end();
  Random random(bytes.rest());
  reference::Request request = make(random);
  triglub_fuzz::edit(cells, &request.tables);
  Case given = case_of(request);
  if (is_shipped) given.tree = tree;
  if (is_shipped) given.files["site.pf"] = site;
  if (has_own_table) triglub_fuzz::add_own_table(&own_table, &given);
  triglub_fuzz::edit(texts, &given);

  const Outcome actual = triglub_fuzz::convert(given);
  // What makes a table useless the plain form does not know.
  const bool is_known = cells.at_end() || actual.end == "returned";
  if (!is_shipped && !has_own_table && texts.at_end() && is_known) compare_with_plain_form(request, actual);
  const bool is_edition2 = given.tree.starts_with("edition 2\n") || is_shipped;
  if (!is_edition2 || !actual.is_written()) return 0;
  triglub_fuzz::expect_well_formed(actual.document);
  if (!triglub_fuzz::is_for_threads(data, size)) return 0;
  for (const unsigned int threads : {2U, 3U}) compare_in_pieces(given, actual, threads);
  return 0;
}
