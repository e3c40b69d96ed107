// The text of one response stage.
#ifndef TRIGLUB_TESTS_REFERENCE_REFERENCE_STAGE_H
#define TRIGLUB_TESTS_REFERENCE_REFERENCE_STAGE_H

#include <map>
#include <stdexcept>
#include <string>

#include "reference/case.h"
#include "reference/reference_view.h"
#include "reference/reference_writer.h"

namespace triglub_reference {

// The files that the rows of the table "stage" name and that can be read.
std::map<std::string, ResponseFile> readable_responses(const Tables& tables);

struct MissingCache {};

// Filter, decimation and gain of the record's stage. std::runtime_error when the file is not among the responses or
// holds several filters; MissingCache when no responses were ever read.
std::string stage_text(const Record& record, ProcessState& state);

}  // namespace triglub_reference

#endif
