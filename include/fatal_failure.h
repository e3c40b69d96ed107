// How a conversion that a program holds itself ends for good (conversion.h).
#ifndef TRIGLUB_FATAL_FAILURE_H
#define TRIGLUB_FATAL_FAILURE_H

#include <exception>
#include <string>

#include "platform/export.h"

namespace triglub {

// A failure after which a document cannot be had: of the parameter file, or of the data. Not a std::runtime_error: what
// puts up with those, as the writing of a stage does, must not put up with this.
class TRIGLUB_API FatalFailure : public std::exception {
 public:
  explicit FatalFailure(std::string text);
  ~FatalFailure() override;
  const char* what() const noexcept override;

 private:
  std::string text_;
};

}  // namespace triglub

#endif
