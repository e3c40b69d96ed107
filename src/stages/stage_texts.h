// Stages as StationXML.
#ifndef TRIGLUB_SRC_STAGES_STAGE_TEXTS_H
#define TRIGLUB_SRC_STAGES_STAGE_TEXTS_H

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <tuple>
#include <unordered_map>
#include <vector>

#include "document/stage_writer.h"
#include "element_tree.h"
#include "platform/database.h"
#include "stages/stage_facts.h"

namespace triglub {

// Filter blocks are made once for each filter and pair of units, decimations once for each rate and delay, as thousands
// of channels share them.
class StageTexts final : public StageWriter {
 public:
  // Of the records of a view; `table` and `options` must outlive it.
  StageTexts(Dbptr view, const StageTable& table, const TreeOptions& options);

  void append(std::uint32_t record, std::size_t depth, std::string* text) override;

 private:
  struct Block {
    std::string input_units;
    std::string output_units;
    std::optional<Normalization> normalization;
    std::size_t depth;
    std::string text;
  };

  // The units that a stage without its own takes from the one before.
  std::string units_before(std::uint32_t record);
  std::string input_units(std::uint32_t record);
  std::string output_units(std::uint32_t record, const std::string& input_units) const;
  std::string as_written(std::string_view units) const;
  void append_filter(const StageFacts& facts, const std::string& input_units, const std::string& output_units,
                     std::size_t depth, std::string* text);
  const std::string& block_of(const StageFacts& facts, const std::string& input_units, const std::string& output_units,
                              std::size_t depth);
  const std::string& decimation_of(std::uint32_t stage, const StageFacts& facts, std::size_t depth);
  void forget_much();

  // What a decimation is written of.
  using DecimationKey = std::tuple<double, double, bool, std::int64_t, double, double, bool, std::size_t>;

  const StageTable& table_;
  const TreeOptions& options_;
  std::span<const std::uint32_t> stages_;
  std::span<const std::uint32_t> calibrations_;
  std::span<const std::uint32_t> places_;  // in their chains, whose records lie together
  // The latest record that was written, and the units that left it.
  std::uint32_t latest_ = NO_BASE_ROW;
  std::string latest_units_;
  std::unordered_map<const StageFilter*, std::vector<Block>> blocks_;
  std::map<DecimationKey, std::string> decimations_;
  std::size_t size_ = 0;  // of all these texts, in bytes
};

}  // namespace triglub

#endif
