// A state begins as a new process would; what it refers to may be its own or the exported variables.
#include "state/conversion_state.h"

#include "conversion.h"
#include "dbhelper.h"
#include "elements/keywords.h"
#include "platform/elog.h"

namespace triglub {

ConversionState::ConversionState()
    : own_(std::make_unique<ConversionVariables>()),
      verbosity(own_->verbosity),
      depth(own_->depth),
      date_with_ms_format(own_->date_with_ms_format),
      date_format(own_->date_format),
      keywords(own_->keywords) {
  keywords = keyword_codes();
}

ConversionState::ConversionState(unsigned int& verbosity, unsigned int& depth, std::string& date_with_ms_format,
                                 std::string& date_format, std::map<std::string, GroupType>& keywords)
    : verbosity(verbosity),
      depth(depth),
      date_with_ms_format(date_with_ms_format),
      date_format(date_format),
      keywords(keywords) {}

ConversionState::~ConversionState() = default;

void ConversionState::cut_at(unsigned int level) {
  // Each level names the first element that is left out, not the last that is kept.
  switch (static_cast<DetailLevel>(level)) {
    case DetailLevel::network:
      final_element_name = "Station";
      return;
    case DetailLevel::station:
      final_element_name = "Channel";
      return;
    case DetailLevel::channel:
      final_element_name = "Stage";
      return;
    case DetailLevel::response:
      break;
  }
  final_element_name.clear();
}

void ConversionState::use_responses(const ResponseCache& cache) {
  responses = &cache;
  filter_texts = {};  // they are filed by the place of a filter, where another may stand now
}

void ConversionState::read_date_formats(Pf* pf) {
  date_with_ms_format = pfget_string(pf, std::string("epochtime_xmlstring_format"));
  date_format = pfget_string(pf, std::string("jdate_xmlstring_format"));
}

void trace_call(const ConversionState& state, const std::string& function) {
  if (state.traces_calls()) elog_debug(0, "%s", ("Function: " + function).c_str());
}

}  // namespace triglub
