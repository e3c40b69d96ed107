#include "filter_texts.h"

#include "resp_helper.h"

namespace triglub {

namespace {

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
  auto& texts = texts_[group.filter];
  for (const auto& known : texts) {
    if (known->input_units == input_units && known->output_units == output_units) return known->text;
  }
  texts.push_back(
      std::make_unique<Text>(Text{input_units, output_units, filter_text(group, input_units, output_units)}));
  return texts.back()->text;
}

}  // namespace triglub
