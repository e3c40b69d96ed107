// What a response owns is given back by the type of its groups, which tells what stands behind their pointers.
#include "platform/response.h"

#include <cstring>

#include "platform/text.h"

namespace {

void free_filter(const ResponseGroup& group) {
  switch (group.type) {
    case RESPONSE_PAZ:
      delete static_cast<Paz*>(group.filter);
      break;
    case RESPONSE_IIR:
      delete static_cast<Iir*>(group.filter);
      break;
    case RESPONSE_FIR:
      delete static_cast<Fir*>(group.filter);
      break;
    case RESPONSE_FAP:
      delete static_cast<Fap*>(group.filter);
      break;
    case RESPONSE_FAP2:
      delete static_cast<Fap2*>(group.filter);
      break;
    default:  // a group of another type has no filter
      break;
  }
}

}  // namespace

void free_response(Response* response) {
  if (response == nullptr) return;
  for (const ResponseGroup& group : response->groups) free_filter(group);
  delete response;
}

int get_response_stage_type(Response* response, int stage, char* type) {
  if (response == nullptr || stage < 0 || static_cast<std::size_t>(stage) >= response->groups.size()) return -1;
  constexpr std::size_t kLongestName = 63;  // and the zero byte
  const std::string& whole = response->groups[static_cast<std::size_t>(stage)].type_name;
  const std::string_view name = triglub::utf8_prefix(whole, kLongestName);
  type[name.copy(type, name.size())] = '\0';
  return 0;
}
