// One step of a step list, as text and in its parts.
#ifndef TRIGLUB_ENGINE_SESSION_STEP_H
#define TRIGLUB_ENGINE_SESSION_STEP_H

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/operations/join_plan.h"

namespace triglub {

struct Step {
  std::string text;                // trimmed
  std::string verb;                // its first word
  std::string rest;                // what follows the verb, trimmed
  std::vector<std::string> words;  // of the rest
};

Step parse_step(std::string_view text);

// True for the steps that apply_step() knows.
bool is_operation(const Step& step);

// The parts of "dbjoin [-o] TABLE [KEY ...]".
struct JoinStep {
  bool is_outer = false;
  std::string table;             // empty when the step names none
  std::optional<JoinKeys> keys;  // nothing: the natural join
};

JoinStep parse_join(const Step& step);

// The parts of "dbsort [-u] KEY ...".
struct SortStep {
  bool is_unique = false;
  std::vector<std::string> keys;
};

SortStep parse_sort(const Step& step);

}  // namespace triglub

#endif
