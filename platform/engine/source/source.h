// Where a database's tables are: a path prefix, or a descriptor that names further places.
#ifndef TRIGLUB_ENGINE_SOURCE_SOURCE_H
#define TRIGLUB_ENGINE_SOURCE_SOURCE_H

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "engine/table/table.h"

namespace triglub {

class Source {
 public:
  // Finds the database with the path prefix DIR/NAME. Nothing after a complaint when there is none.
  static std::optional<Source> find(const std::string& prefix);

  const std::shared_ptr<const Schema>& schema() const { return schema_; }
  // The file of a table, empty when there is none.
  std::string table_file(const std::string& table) const;
  // Loads a table; one without a file is empty. Null, after complaints, when the file does not fit the schema.
  std::unique_ptr<Table> load(const TableSchema& table) const;

 private:
  bool read_descriptor(const std::string& path);
  bool has_any_table() const;

  std::string folder_;                 // DIR, "." when the prefix has none
  std::string name_;                   // NAME
  std::vector<std::string> prefixes_;  // in the order in which tables are looked for
  std::shared_ptr<const Schema> schema_;
};

}  // namespace triglub

#endif
