// The table is short and asked once a line: it is searched from its begin.
#include "tree/line_type.h"

#include <algorithm>
#include <array>

namespace triglub {

namespace {

struct Keyword {
  std::string_view word;
  LineType type;
};

constexpr std::array kKeywords = {
    Keyword{"text", LineType::literal},
    Keyword{kSiteKeyword, LineType::literal},
    Keyword{"string", LineType::string},
    Keyword{"lookup", LineType::string},
    Keyword{"unit", LineType::unit},
    Keyword{"float", LineType::real},
    Keyword{"integer", LineType::integer},
    Keyword{"epoch", LineType::epoch},
    Keyword{"julian", LineType::julian},
    Keyword{"deg_lat", LineType::latitude},
    Keyword{"deg_lon", LineType::longitude},
    Keyword{"deg_az", LineType::azimuth},
    Keyword{"dip", LineType::dip},
    Keyword{"meters", LineType::meters},
    Keyword{"count", LineType::count},
    Keyword{"GROUP", LineType::group},
    Keyword{"CATEGORIZED_GROUP", LineType::categories},
    Keyword{"CATEGORIZED_BY_NUMBER", LineType::number_categories},
    Keyword{"STAGE", LineType::stage},
};

}  // namespace

std::optional<LineType> line_type(std::string_view keyword) {
  const auto* found = std::ranges::find(kKeywords, keyword, &Keyword::word);
  if (found == kKeywords.end()) return std::nullopt;
  return found->type;
}

std::vector<std::string> line_type_keywords() {
  std::vector<std::string> words;
  words.reserve(kKeywords.size());
  for (const Keyword& keyword : kKeywords) words.emplace_back(keyword.word);
  return words;
}

}  // namespace triglub
