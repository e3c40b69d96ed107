// A value of an expression as the text that its type asks for.
#ifndef TRIGLUB_SRC_DOCUMENT_TYPED_TEXT_H
#define TRIGLUB_SRC_DOCUMENT_TYPED_TEXT_H

#include <cstdint>
#include <optional>
#include <string>

#include "element_tree.h"
#include "platform/record_expression.h"

namespace triglub {

// What there is to tell of a value.
enum class ValueRemark : std::uint8_t { none, wrapped, no_number, out_of_range, no_date, forbidden_characters };

// Appends the text of a number that is in doubt by so much (0: it is exact); nothing where there is something wrong
// with it. REQUIRES: the type is one of numbers.
ValueRemark append_number_as(LineType type, double number, double doubt, std::string* text);

// Appends the number cut towards zero.
ValueRemark append_integer(double number, std::string* text);

// Appends an instant (epoch seconds) as YYYY-MM-DDTHH:MM:SS[.mmm]Z.
ValueRemark append_instant(double seconds, std::string* text);

// Appends 00:00 of a day (yyyyddd) in the same form.
ValueRemark append_day(double yyyyddd, std::string* text);

// The number that a value is; nothing for a text that is none. REQUIRES: the value is not null.
std::optional<double> number_of(const RecordValue& value, ValueKind kind);

}  // namespace triglub

#endif
