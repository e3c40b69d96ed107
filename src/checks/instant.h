// Dates of documents, and spans between them.
#ifndef TRIGLUB_CHECKS_INSTANT_H
#define TRIGLUB_CHECKS_INSTANT_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace triglub::checks {

struct Instant {
  std::int64_t microseconds = 0;  // since 1970-01-01T00:00:00Z; what is finer is cut off
  int year = 0;                   // as it is written
  bool has_zone = false;          // without one, UTC is assumed
};

// A date of a document, such as 2001-05-30T00:00:00.25Z; none for any other text.
std::optional<Instant> parse_instant(std::string_view text);

// From begin to end, the latter not included; none: without limit.
struct Span {
  std::optional<std::int64_t> begin;
  std::optional<std::int64_t> end;
};

bool overlap(const Span& a, const Span& b);
bool begins_before(const Span& inner, const Span& outer);
bool ends_after(const Span& inner, const Span& outer);

}  // namespace triglub::checks

#endif
