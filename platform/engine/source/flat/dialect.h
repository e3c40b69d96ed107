// Which of the shipped schemas the tables of a database follow, judged by their rows.
#ifndef TRIGLUB_ENGINE_SOURCE_FLAT_DIALECT_H
#define TRIGLUB_ENGINE_SOURCE_FLAT_DIALECT_H

#include <memory>
#include <string>
#include <vector>

#include "engine/schema/schema.h"

namespace triglub {

struct TableFile {
  std::string table;  // its name
  std::string path;
};

// css3.0, or kbcore where the first rows of the files fit that one only. Files that cannot be read, have no rows, or
// fit neither say nothing. Null, after a complaint, where some fit only the one and others only the other, or where a
// schema cannot be read.
std::shared_ptr<const Schema> schema_by_rows(const std::vector<TableFile>& files);

}  // namespace triglub

#endif
