// The rows of stage that are made of the groups of response files.
#ifndef TRIGLUB_SRC_EPOCHS_STAGE_ROWS_H
#define TRIGLUB_SRC_EPOCHS_STAGE_ROWS_H

#include <cstdint>
#include <string_view>
#include <vector>

#include "epochs/chain_keys.h"
#include "epochs/instrument_files.h"
#include "epochs/response_tables.h"
#include "platform/columns.h"
#include "platform/database.h"

namespace triglub {

class StageRows {
 public:
  StageRows(const TableColumns& stage, Dbptr instrument);

  // Adds a row for each group. What is given must stay as long as the rows.
  void add(const InstrumentFile& of, const ChainKey& key, std::string_view units, std::string_view folder,
           std::string_view file);

  // To be added behind those of stage.
  const AddedRows& rows() const { return rows_; }
  // What they are of, row by row.
  std::vector<InstrumentStage> take_stages();

 private:
  void add_units(std::string_view input, std::string_view output);
  void add_numbers(const std::vector<InstrumentGroup>& groups, std::size_t group, const ChainKey& key);

  double null_gain_;
  std::int64_t null_factor_;
  AddedRows rows_;
  std::vector<InstrumentStage> stages_;
};

}  // namespace triglub

#endif
