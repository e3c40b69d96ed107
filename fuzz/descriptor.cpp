// Descriptors: every text of not too many places is one. What was read says the same when it is written as a descriptor
// again.
#include "engine/source/flat/descriptor.h"

#include "support/expect.h"

using triglub_fuzz::expect;

namespace {

std::string written(const triglub::Descriptor& descriptor) {
  std::string text = "schema " + descriptor.schema + "\n";
  if (descriptor.places.empty()) return text;
  text += "dbpath ";
  for (const std::string& place : descriptor.places) text += place + ":";
  text.pop_back();
  return text + "\n";
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const auto read = triglub::parse_descriptor(text);
  if (!read) return 0;
  const triglub::Descriptor& descriptor = *read;
  expect(text.find(descriptor.schema) != std::string_view::npos, "the schema stands in the text", descriptor.schema);
  for (const std::string& place : descriptor.places) {
    expect(text.find(place) != std::string_view::npos, "a place stands in the text", place);
    expect(!place.empty() && place.find_first_of(":\n") == std::string::npos, "a place is one", place);
  }
  const auto again = triglub::parse_descriptor(written(descriptor));
  expect(again && again->schema == descriptor.schema, "the schema reads back", descriptor.schema);
  expect(again->places == descriptor.places, "the places read back", written(descriptor));
  return 0;
}
