// In a file of its own, so that what only reports failures does not draw in what writes documents.
#include "fatal_failure.h"

#include <utility>

namespace triglub {

FatalFailure::FatalFailure(std::string text) : text_(std::move(text)) {}

FatalFailure::~FatalFailure() = default;

const char* FatalFailure::what() const noexcept { return text_.c_str(); }

}  // namespace triglub
