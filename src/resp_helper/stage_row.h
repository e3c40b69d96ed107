// One row of the stage table with its response, and the texts of it that stand in the document. XmlResponse, the
// exported form, is one of these over the state of the process.
#ifndef TRIGLUB_SRC_RESP_HELPER_STAGE_ROW_H
#define TRIGLUB_SRC_RESP_HELPER_STAGE_ROW_H

#include <ostream>
#include <string>

#include "platform/database.h"
#include "platform/response.h"
#include "resp_helper.h"
#include "state/conversion_state.h"

namespace triglub {

// All as XmlResponse has it, with FatalFailure where that ends the process. The state must outlive the row.
class StageRow {
 public:
  StageRow(ConversionState& state, Dbptr db, const std::string& table);

  bool record_to_filename(Dbptr db);
  bool load_response();
  int stagecount() const;
  std::string stage2xml(int stage);
  void write_stage(std::ostream& out, int stage);
  std::string stagegain_as_xml();
  std::string decimation_as_xml();
  std::string decimation_as_xml(Fir* fir);

 private:
  // A kept block, if any, and what comes behind it.
  struct StageText {
    const std::string* block = nullptr;
    std::string rest;
  };
  void read_row(Dbptr db, const StageFields& fields);
  void chain_units();
  StageText stage_text(int stage);
  const std::string* filter_block(const ResponseGroup& group) const;

  ConversionState& state_;
  std::string filename_;
  Response* response_ = nullptr;  // belongs to the cache
  int stageid_ = -1;
  std::string input_units_;
  std::string output_units_;
  std::string gain_type_;
  double nominal_gain_ = 0.0;
  double calibration_frequency_ = -1.0;  // Hz
  int decimation_factor_ = -1;           // -1: none
  int izero_ = -1;
  double sample_rate_ = -1.0;  // samples per second; the stage's input rate once a response is loaded
};

}  // namespace triglub

#endif
