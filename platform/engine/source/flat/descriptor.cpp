// A later "schema" line takes the place of an earlier one; "dbpath" lines add up.
#include "engine/source/flat/descriptor.h"

#include "base/characters.h"
#include "base/words.h"
#include "platform/text.h"

namespace triglub {

namespace {

void append_places(std::string_view list, std::vector<std::string>* places) {
  while (!list.empty() && places->size() <= kMaxDescriptorPlaces) {
    const std::string_view place = trimmed(take_part(&list, ':'));
    if (!place.empty()) places->emplace_back(place);
  }
}

}  // namespace

std::optional<Descriptor> parse_descriptor(std::string_view text) {
  Descriptor descriptor;
  while (!text.empty()) {
    std::string_view line = take_part(&text, '\n');
    const std::string_view key = take_word(&line, kBlanks);
    const std::string_view value = trimmed(line);
    if (value.empty()) continue;
    if (key == "schema") descriptor.schema = value;
    if (key == "dbpath") append_places(value, &descriptor.places);
  }
  if (descriptor.places.size() > kMaxDescriptorPlaces) return std::nullopt;
  return descriptor;
}

}  // namespace triglub
