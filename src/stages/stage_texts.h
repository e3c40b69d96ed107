// Stages as StationXML.
#ifndef TRIGLUB_SRC_STAGES_STAGE_TEXTS_H
#define TRIGLUB_SRC_STAGES_STAGE_TEXTS_H

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "document/stage_writer.h"
#include "platform/database.h"
#include "stages/stage_facts.h"

namespace triglub {

// Filter blocks are made once for each filter and pair of units, as thousands of channels share them.
class StageTexts final : public StageWriter {
 public:
  // Of the records of a view; `table` must outlive it.
  StageTexts(Dbptr view, const StageTable& table);

  void append(std::uint32_t record, std::size_t depth, std::string* text) override;

 private:
  struct Block {
    std::string input_units;
    std::string output_units;
    std::size_t depth;
    std::string text;
  };

  // The units that a stage without its own takes from the one before.
  std::string units_before(std::uint32_t record);
  std::string input_units(std::uint32_t record);
  std::string output_units(std::uint32_t record, const std::string& input_units) const;
  bool has_stage_before(std::uint32_t record) const;
  const std::string& filter_block(const ResponseGroup& filter, const std::string& input_units,
                                  const std::string& output_units, std::size_t depth);

  const StageTable& table_;
  std::span<const std::uint32_t> stages_;
  std::span<const std::uint32_t> calibrations_;
  std::span<const std::uint32_t> epochs_;
  std::span<const std::uint32_t> stations_;
  // The latest record that was written, and the units that left it.
  std::uint32_t latest_ = NO_BASE_ROW;
  std::string latest_units_;
  std::unordered_map<const void*, std::vector<Block>> blocks_;
  std::size_t size_ = 0;  // of all blocks, in bytes
};

}  // namespace triglub

#endif
