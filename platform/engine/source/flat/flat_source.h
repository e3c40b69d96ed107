// Flat files as a source: a path prefix, or a descriptor that names further places.
#ifndef TRIGLUB_ENGINE_SOURCE_FLAT_FLAT_SOURCE_H
#define TRIGLUB_ENGINE_SOURCE_FLAT_FLAT_SOURCE_H

#include <memory>
#include <string>
#include <vector>

#include "engine/source/flat/dialect.h"
#include "engine/source/source.h"

namespace triglub {

class FlatSource final : public Source {
 public:
  // Finds the database with the path prefix DIR/NAME. Null after a complaint when there is none.
  static std::shared_ptr<const FlatSource> open(const std::string& prefix);

  const std::shared_ptr<const Schema>& schema() const override { return schema_; }
  std::unique_ptr<const Table> load(const TableSchema& table, const RowConditions& conditions) const override;
  // The table's file.
  std::string table_place(const TableSchema& table) const override;
  std::vector<SourceFile> files() const override;
  // Where the table's file is; DIR when it has none.
  std::string response_folder(const TableSchema& table) const override;

 private:
  explicit FlatSource(const std::string& prefix);
  bool read_descriptor(const std::string& path);
  void add_place(std::string place);
  bool has_any_table() const;
  std::vector<TableFile> table_files() const;
  std::string path_of(const std::string& table) const;  // empty when there is no such file

  std::string folder_;                 // DIR, "." when the prefix has none
  std::string name_;                   // NAME
  std::vector<std::string> prefixes_;  // in the order in which tables are looked for
  std::shared_ptr<const Schema> schema_;
};

}  // namespace triglub

#endif
