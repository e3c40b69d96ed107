// The codes that FDSN gives out.
#ifndef TRIGLUB_SRC_DOCUMENT_CODE_CHECK_H
#define TRIGLUB_SRC_DOCUMENT_CODE_CHECK_H

#include <string_view>

namespace triglub {

// Whether an attribute of an element with that tag is one of the codes that FDSN has rules for.
bool is_fdsn_code(std::string_view tag, std::string_view attribute);

// Whether a code is one that FDSN allows there: networks and stations of up to 8, channels of 3, locations of up to 8
// capital letters and digits, those of stations and locations with dashes. Source: FDSN Source Identifiers, 1.0.
// REQUIRES: is_fdsn_code().
bool is_allowed_code(std::string_view tag, std::string_view attribute, std::string_view code);

}  // namespace triglub

#endif
