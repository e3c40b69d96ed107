// The regular expressions of =~ and !~.
#ifndef TRIGLUB_ENGINE_EXPRESSION_MATCHER_H
#define TRIGLUB_ENGINE_EXPRESSION_MATCHER_H

#include <memory>
#include <string>
#include <string_view>

#include "engine/expression/expression.h"

namespace triglub::expression {

// Why a pattern is no regular expression.
struct PatternFault {
  std::string reason;
  std::size_t offset = 0;  // byte offset in the pattern
};

// The test for the pattern as it stands between its slashes (\/ is a slash); null, and the fault, when it is no regular
// expression.
std::unique_ptr<Matcher> make_matcher(std::string_view pattern, PatternFault* fault);

}  // namespace triglub::expression

#endif
