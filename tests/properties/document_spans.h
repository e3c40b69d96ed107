// When the elements of a document hold, and what must be true of that whatever the tables say.
#ifndef TRIGLUB_TESTS_PROPERTIES_DOCUMENT_SPANS_H
#define TRIGLUB_TESTS_PROPERTIES_DOCUMENT_SPANS_H

#include "properties/xml_reader.h"
#include "reference/edition2/instants.h"

namespace triglub_properties {

// From startDate to endDate; open where there is none. std::runtime_error where one of them is no time.
triglub_reference::edition2::Span span_of(const Element& element);

// Fails the running test where an element ends before it begins or reaches out of the one around it, more is selected
// than there is in total, or stages are not in order.
void expect_consistent(const Element& document);

}  // namespace triglub_properties

#endif
