// Whole databases in memory, their response files with them, so that a test can change them before they are written.
#ifndef TRIGLUB_TESTS_PROPERTIES_DATABASES_H
#define TRIGLUB_TESTS_PROPERTIES_DATABASES_H

#include <map>
#include <ostream>
#include <string>

#include "reference/case.h"
#include "support/flat_database.h"

namespace triglub_properties {

using triglub_reference::Row;
using triglub_reference::Tables;

struct Database {
  Tables tables;
  std::map<std::string, std::string> files;  // texts by name below the tables' folder
};

// Reads the tables PREFIX.TABLE and the response files that stage rows name. std::runtime_error where a row does not
// have the built-in schema's length.
Database read_database(const std::string& prefix);

void write_database(const Database& database, triglub_test::FlatDatabase& files);

// The document that the shipped tree makes of it at the response level; empty when there is none.
std::string shipped_document(const Database& database);
// The same by a parameter file of one's own.
std::string document_by(const std::string& parameters, const Database& database);
void write_document(const std::string& parameters, const Database& database, std::ostream& out);

}  // namespace triglub_properties

#endif
