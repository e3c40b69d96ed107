// The texts of numbers as the file itself has them: "1.50" and "1.5" differ as texts. A time that stands there as a
// date is no number yet, and its text is made by the schema's format, as that of any time that does not come out of a
// file: who reads it as a time need not know how it was written.
#ifndef TRIGLUB_ENGINE_SOURCE_FLAT_FILE_DIGITS_H
#define TRIGLUB_ENGINE_SOURCE_FLAT_FILE_DIGITS_H

#include <utility>
#include <vector>

#include "engine/table/kept_cells.h"
#include "engine/table/number_texts.h"

namespace triglub {

class FileDigits final : public NumberTexts {
 public:
  // `cells` by field. The schema must outlive the object.
  FileDigits(std::vector<KeptCells> cells, const TableSchema& schema) : cells_(std::move(cells)), schema_(schema) {}

  std::string_view text(const Table& table, std::size_t field, std::uint32_t row) const override;
  CodedTexts texts(const Table& table, std::size_t field) const override;
  std::unique_ptr<const NumberTexts> of_rows(const std::vector<std::uint32_t>& rows) const override;

 private:
  std::string_view cell(std::size_t field, std::uint32_t row) const;
  bool is_date_text(std::size_t field, std::string_view cell) const;

  std::vector<KeptCells> cells_;
  const TableSchema& schema_;
};

}  // namespace triglub

#endif
