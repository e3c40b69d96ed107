// Only channels with samples need a response: logs and the like have none.
#include "checks/stage_checks.h"

namespace triglub::checks {

namespace {

bool has_samples(const Channel& channel) { return channel.rate && *channel.rate > 0; }

}  // namespace

void check_stage_order(const Channel& channel, const Place& place) {
  for (std::size_t i = 0; i < channel.stages.size(); ++i) {
    const Stage& stage = channel.stages[i];
    if (finite_number(stage.number) == static_cast<double>(i + 1)) continue;
    return place.tell(Rule::stage_order, stage.element->line,
                      "a stage has the number " + quoted(stage.number) + ", expected " + std::to_string(i + 1));
  }
}

void check_response(const Channel& channel, const Place& place) {
  if (channel.response != nullptr || !has_samples(channel)) return;
  place.tell(Rule::response_missing, channel.element->line, "there are samples and no Response, expected one");
}

// An empty Response says that there is none.
std::optional<DocumentFinding> find_missing_stages(const Channel& channel, const Place& place) {
  if (!channel.sensitivity || !channel.stages.empty() || !has_samples(channel)) return std::nullopt;
  return place.finding(Rule::stages_missing, channel.response->line,
                       "there is a sensitivity and no Stage, expected some as other channels have");
}

}  // namespace triglub::checks
