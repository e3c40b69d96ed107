// Stages as a list, and whether there are any.
#ifndef TRIGLUB_CHECKS_STAGE_CHECKS_H
#define TRIGLUB_CHECKS_STAGE_CHECKS_H

#include <optional>

#include "checks/channel.h"
#include "checks/place.h"

namespace triglub::checks {

void check_stage_order(const Channel& channel, const Place& place);
void check_response(const Channel& channel, const Place& place);
// What there is to tell of a channel without stages, if the document is one that has stages.
std::optional<DocumentFinding> find_missing_stages(const Channel& channel, const Place& place);

}  // namespace triglub::checks

#endif
