// Texts are filed by the place of their filter in memory; when they grow too many all go, and are made again as needed.
#include "state/filter_texts.h"

#include "resp_helper.h"

namespace triglub {

namespace {

// Archives have thousands of long filters. What is needed soon again is mostly what was made last.
constexpr std::size_t kMostBytes = std::size_t{32} << 20;

std::string filter_text(const ResponseGroup& group, const std::string& input_units, const std::string& output_units) {
  switch (group.type) {
    case RESPONSE_FIR:
      return fir_as_xml(static_cast<Fir*>(group.filter), input_units, output_units);
    case RESPONSE_PAZ:
      return paz_as_xml(static_cast<Paz*>(group.filter), input_units, output_units);
    default:
      return fap2_as_xml(static_cast<Fap2*>(group.filter), input_units, output_units);
  }
}

}  // namespace

const std::string& FilterTexts::of(const ResponseGroup& group, const std::string& input_units,
                                   const std::string& output_units) {
  for (const Text& known : texts_[group.filter]) {
    if (known.input_units == input_units && known.output_units == output_units) return known.text;
  }
  if (size_ > kMostBytes) {
    texts_.clear();
    size_ = 0;
  }
  std::vector<Text>& texts = texts_[group.filter];
  texts.push_back({input_units, output_units, filter_text(group, input_units, output_units)});
  size_ += texts.back().text.size();
  return texts.back().text;
}

}  // namespace triglub
