// The functions of the language on times and dates. Implementations for the table of functions.
#ifndef TRIGLUB_ENGINE_EXPRESSION_TIME_FUNCTIONS_H
#define TRIGLUB_ENGINE_EXPRESSION_TIME_FUNCTIONS_H

#include <span>
#include <string>

#include "engine/expression/value.h"

namespace triglub::expression {

bool epoch_of_yearday(std::span<const Value> arguments, std::string* scratch, Value* result);
bool yearday_of_epoch(std::span<const Value> arguments, std::string* scratch, Value* result);
bool strtime(std::span<const Value> arguments, std::string* scratch, Value* result);
bool current_time(std::span<const Value> arguments, std::string* scratch, Value* result);

}  // namespace triglub::expression

#endif
