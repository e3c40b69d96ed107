// Where a database's tables come from. The engine above knows sources by this interface only.
#ifndef TRIGLUB_ENGINE_SOURCE_SOURCE_H
#define TRIGLUB_ENGINE_SOURCE_SOURCE_H

#include <memory>
#include <string>
#include <vector>

#include "engine/schema/schema.h"
#include "engine/table/row_conditions.h"
#include "engine/table/table.h"
#include "platform/sources.h"

namespace triglub {

// A source does not change once it is open. All members are safe for concurrent use.
class Source {
 public:
  Source() = default;
  virtual ~Source() = default;
  Source(const Source&) = delete;
  Source& operator=(const Source&) = delete;

  // The tables that the source can have. `table` below is one of them.
  virtual const std::shared_ptr<const Schema>& schema() const = 0;

  // Loads the rows of a table that meet the conditions; every row is checked all the same. A table that the source does
  // not have is empty. Null, after complaints that name the places, when the table cannot be read or a row does not fit
  // the schema. The table refers to the schema and must not outlive the source.
  virtual std::unique_ptr<const Table> load(const TableSchema& table, const RowConditions& conditions) const = 0;

  // Where a table is, for people: the path of its file, or the like. Empty when the source does not have the table.
  virtual std::string table_place(const TableSchema& table) const = 0;

  // What the source is read from, or would be if it were there, as source_files() gives it.
  virtual std::vector<SourceFile> files() const { return {}; }

  // The folder to which the table's names of response files are relative.
  virtual std::string response_folder(const TableSchema& table) const = 0;
};

}  // namespace triglub

#endif
