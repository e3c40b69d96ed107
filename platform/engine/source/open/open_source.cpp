// Chooses the source by the word before the colon.
#include "engine/source/open/open_source.h"

#include <string_view>

#include "engine/source/flat/flat_source.h"
#include "engine/source/memory/published.h"
#include "platform/elog.h"

namespace triglub {

namespace {

constexpr std::string_view kFlat = "flat:";
constexpr std::string_view kMemory = "memory:";

std::shared_ptr<const Source> open_published(const std::string& name) {
  auto source = find_published(name);
  if (source == nullptr) elog_complain(0, "memory:%s: there is no such database in this process", name.c_str());
  return source;
}

}  // namespace

std::shared_ptr<const Source> open_source(const std::string& name) {
  if (name.starts_with(kMemory)) return open_published(name.substr(kMemory.size()));
  if (name.starts_with(kFlat)) return FlatSource::open(name.substr(kFlat.size()));
  return FlatSource::open(name);
}

}  // namespace triglub
