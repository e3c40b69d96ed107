// Filter blocks of responses, formatted once for each filter and pair of units: thousands of channels share a response,
// and its coefficients are most of a document.
#ifndef TRIGLUB_SRC_STATE_FILTER_TEXTS_H
#define TRIGLUB_SRC_STATE_FILTER_TEXTS_H

#include <string>
#include <unordered_map>
#include <vector>

#include "platform/response.h"

namespace triglub {

class FilterTexts {
 public:
  // The block of a fir, paz or fap2 group with these units; valid until the next call. REQUIRES: a filter that was
  // asked for does not change, and lives as long as the object.
  const std::string& of(const ResponseGroup& group, const std::string& input_units, const std::string& output_units);

 private:
  struct Text {
    std::string input_units;
    std::string output_units;
    std::string text;
  };
  std::unordered_map<const void*, std::vector<Text>> texts_;  // by filter
  std::size_t size_ = 0;                                      // of all texts, in bytes
};

}  // namespace triglub

#endif
