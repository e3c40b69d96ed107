// The document of the shipped tree, of edition 2, at the response level.
#ifndef TRIGLUB_TESTS_CURVES_LIBRARY_DOCUMENT_H
#define TRIGLUB_TESTS_CURVES_LIBRARY_DOCUMENT_H

#include <string>

namespace triglub_curves {

// `further_keys`: lines that the parameter file gets at its end. Changes TRIGLUB_PFPATH; what the library says
// meanwhile is kept from standard error. std::runtime_error where the database does not open.
std::string shipped_document(const std::string& database, const std::string& further_keys = "");

}  // namespace triglub_curves

#endif
