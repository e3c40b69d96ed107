// Typed values of the element tree over one view: names are looked up and expressions compiled when a value is first
// asked for, then kept.
#ifndef TRIGLUB_SRC_DBHELPER_BOUND_VALUE_H
#define TRIGLUB_SRC_DBHELPER_BOUND_VALUE_H

#include <cstdint>
#include <optional>
#include <string>

#include "dbhelper/bound_expression.h"
#include "elements.h"
#include "platform/database.h"
#include "state/conversion_state.h"

namespace triglub {

// What eval_as_type gives for a field name or expression and a type keyword. REQUIRES: every call comes with the same
// state and a handle of the same view.
class BoundValue {
 public:
  BoundValue(std::string text, std::string type);

  // In place of what *result held. Fails as eval_as_type does, with FatalFailure where that ends the process.
  void write(ConversionState& state, Dbptr db, std::string* result);

 private:
  void read_field(Dbptr db, std::string* result);
  void write_angle(ConversionState& state, Dbptr db, std::string* result);
  void write_expression(Dbptr db, int type, TextWriter* write, std::string* result);

  std::string text_;
  std::string type_;
  // Each known once it was asked for.
  std::optional<GroupType> kind_;
  std::optional<std::int64_t> field_;
  const std::string* null_ = nullptr;
  std::optional<BoundExpression> expression_;
  // The text of the angle written last, and what it became.
  std::string latest_;
  std::string latest_result_;
};

}  // namespace triglub

#endif
