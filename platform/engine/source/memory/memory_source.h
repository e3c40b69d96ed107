// A source of rows that are given as texts.
//
//     auto source = std::make_shared<MemorySource>(
//         "aak", MemorySource::Tables{{"site", {{{"sta", "AAK"}, {"ondate", "1990001"}, {"lat", "42.6375"}}}}});
//     publish("aak", source);                     // dbopen("memory:aak", "r", &db) from now on
#ifndef TRIGLUB_ENGINE_SOURCE_MEMORY_MEMORY_SOURCE_H
#define TRIGLUB_ENGINE_SOURCE_MEMORY_MEMORY_SOURCE_H

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "engine/source/source.h"

namespace triglub {

class MemorySource final : public Source {
 public:
  using Row = std::map<std::string, std::string>;          // texts by field; a field that is missing is null
  using Tables = std::map<std::string, std::vector<Row>>;  // rows by table
  enum class Numbers { shortest, by_format };              // what the texts of numbers are: see number_texts.h

  // `name` is for messages. std::invalid_argument for a table or field that the schema does not have.
  MemorySource(std::string name, Tables tables, Numbers numbers = Numbers::shortest,
               std::shared_ptr<const Schema> schema = Schema::builtin(), std::string response_folder = ".");

  const std::shared_ptr<const Schema>& schema() const override { return schema_; }
  std::unique_ptr<const Table> load(const TableSchema& table, const RowConditions& conditions) const override;
  // "memory:NAME.TABLE"; its rows are "memory:NAME.TABLE row 1" and so on.
  std::string table_place(const TableSchema& table) const override;
  std::string response_folder(const TableSchema& /*table*/) const override { return response_folder_; }

 private:
  std::string name_;
  Tables tables_;
  Numbers numbers_;
  std::shared_ptr<const Schema> schema_;
  std::string response_folder_;
};

}  // namespace triglub

#endif
