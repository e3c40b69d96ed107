// What the text of a cell stands for: the rules that hold for every source.
//
// A blank cell is null. Blanks around a value do not count. The cells of text fields hold any text without a zero byte,
// in UTF-8 or else Latin-1; those of numbers and dates a number; those of times epoch seconds or a date text, as in
// time/date_text.h. A load date that is neither is null: it is written by programs of all kinds, and nothing else
// depends on it.
#ifndef TRIGLUB_ENGINE_TABLE_CELL_H
#define TRIGLUB_ENGINE_TABLE_CELL_H

#include <cstdint>
#include <string>
#include <string_view>

#include "engine/schema/schema.h"

namespace triglub {

// The text without the blanks around it. Other white space stays: to numbers it is a fault.
std::string_view without_blanks(std::string_view text);
std::string_view without_trailing_blanks(std::string_view text);

// Whether the field is the date at which a row was written, which nothing else depends on.
bool is_load_date(const FieldSchema& field);

// The number in a cell of a field of Storage::integer or Storage::real; its null value for a blank cell. False, *value
// untouched or the null, when the cell holds no such number.
bool parse_cell(const FieldSchema& field, std::string_view cell, std::int64_t* value);
bool parse_cell(const FieldSchema& field, std::string_view cell, double* value);

// Whether a cell that is no number counts as null all the same: the load date in a form that is not known.
bool is_unread_load_date(const FieldSchema& field, std::string_view cell);

// What was expected and what was found instead.
std::string misread(const FieldSchema& field, std::string_view cell);

// What is wrong with a cell, for people; empty when nothing is. Its bytes are counted from `first_byte`.
std::string cell_fault(const FieldSchema& field, std::string_view cell, std::size_t first_byte);

}  // namespace triglub

#endif
