// The functions of the language on texts. Implementations for the table of functions.
#ifndef TRIGLUB_ENGINE_EXPRESSION_TEXT_FUNCTIONS_H
#define TRIGLUB_ENGINE_EXPRESSION_TEXT_FUNCTIONS_H

#include <span>
#include <string>

#include "engine/expression/value.h"

namespace triglub::expression {

bool concat(std::span<const Value> arguments, std::string* scratch, Value* result);
bool upper(std::span<const Value> arguments, std::string* scratch, Value* result);
bool lower(std::span<const Value> arguments, std::string* scratch, Value* result);
bool trim(std::span<const Value> arguments, std::string* scratch, Value* result);
bool substr(std::span<const Value> arguments, std::string* scratch, Value* result);
bool length(std::span<const Value> arguments, std::string* scratch, Value* result);
bool replace(std::span<const Value> arguments, std::string* scratch, Value* result);
bool xml(std::span<const Value> arguments, std::string* scratch, Value* result);

}  // namespace triglub::expression

#endif
