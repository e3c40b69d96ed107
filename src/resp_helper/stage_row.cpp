// The StationXML of one stage row.
#include "resp_helper/stage_row.h"

#include <array>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "dbhelper/db_value.h"
#include "fatal_failure.h"
#include "platform/elog.h"
#include "platform/text.h"
#include "resp_helper/text_block.h"

namespace triglub {

namespace {

StageFields look_up_fields(Dbptr db) {
  const auto number = [&](const char* name) { return dblookup(db, nullptr, nullptr, name, nullptr).field; };
  return {db,
          number("stage.iunits"),
          number("stage.ounits"),
          number("stage.gtype"),
          number("stage.gnom"),
          number("stage.decifac"),
          number("stage.izero"),
          number("stage.samprate"),
          number("stage.stageid"),
          number("stage.dir"),
          number("stage.dfile"),
          number("calibration.fc")};
}

// The fields of a handle's view.
const StageFields& fields_of(ConversionState& state, Dbptr db) {
  StageFields& known = state.stages.fields;
  if (db.database != known.view.database || db.table != known.view.table) known = look_up_fields(db);
  return known;
}

Dbptr at(Dbptr db, std::int64_t field) {
  db.field = field;
  return db;
}

// The text of a field into a buffer, cut to it; nothing when the field cannot be read.
template <std::size_t size>
void read_text(Dbptr db, std::int64_t field, std::array<char, size>& buffer) {
  ValueText value;
  if (dbget(at(db, field), value.data()) != 0) return;
  const std::string_view kept = utf8_prefix(value.data(), size - 1);
  buffer[kept.copy(buffer.data(), kept.size())] = '\0';
}

// The whole number in a field, or `fallback` when it cannot be read.
int read_int(Dbptr db, std::int64_t field, int fallback) {
  std::int64_t value = 0;
  return read_field(at(db, field), &value) == 0 ? static_cast<int>(value) : fallback;
}

double read_real(Dbptr db, std::int64_t field, double fallback) {
  double value = 0;
  return read_field(at(db, field), &value) == 0 ? value : fallback;
}

std::string read_string(Dbptr db, std::int64_t field, const char* fallback) {
  ValueText text;
  return dbget(at(db, field), text.data()) == 0 ? text.data() : fallback;
}

// The group that `stage` counts, or null when the response does not have it.
const ResponseGroup* group_at(const Response& response, int stage) {
  if (stage < 0 || static_cast<std::size_t>(stage) >= response.groups.size()) return nullptr;
  return &response.groups[static_cast<std::size_t>(stage)];
}

std::string type_name(Response* response, int stage) {
  std::array<char, 64> name{};
  if (get_response_stage_type(response, stage, name.data()) != 0) return {};
  return name.data();
}

std::string type_mismatch(std::string_view expected) {
  return "<!-- Expected response type " + std::string(expected) + ", which did not match retrieved response type -->\n";
}

std::string no_such_stage(int stage, int count) {
  return "<!-- no stage " + std::to_string(stage) + " (max stage:" + std::to_string(count) + ") -->\n";
}

// A stage without a response file passes samples on as they are.
std::string default_stage(const std::string& input_units, const std::string& output_units) {
  TextBlock block("          ");
  block.line("<Coefficients>");
  block.line(" <InputUnits><Name>", input_units, "</Name></InputUnits>");
  block.line(" <OutputUnits><Name>", output_units, "</Name></OutputUnits>");
  block.line(" <CfTransferFunctionType>DIGITAL</CfTransferFunctionType>");
  block.line("</Coefficients>");
  return block.take();
}

// The blank behind the rate is part of the published documents; readers of numbers skip it.
std::string decimation(double input_rate, int decimation_factor, double delay) {
  TextBlock block("        ");
  block.line("<Decimation>");
  block.line("  <InputSampleRate>", input_rate, " </InputSampleRate>");
  block.line("  <Factor>", decimation_factor == -1 ? 1 : decimation_factor, "</Factor>");
  block.line("  <Offset>", 0, "</Offset>");
  block.line("  <Delay>", delay, "</Delay>");
  block.line("  <Correction>", delay, "</Correction>");
  block.line("</Decimation>");
  return block.take();
}

}  // namespace

StageRow::StageRow(ConversionState& state, Dbptr db, const std::string& table)
    : state_(state), filename_(EMPTYFILENAME) {
  const StageFields& fields = fields_of(state, db);
  read_row(db, fields);
  chain_units();
  if (!record_to_filename(db)) return;
  if (!load_response()) throw std::runtime_error("problems with response file \"" + filename_ + "\"");
  if (table == "stage") {
    stageid_ = read_int(db, fields.stageid, stageid_);
  } else {
    elog_complain(0, "unexpected table %s", table.c_str());
  }
  // The row states the rate that leaves the stage, the document the one that enters it. A rate that is not stated (-1)
  // is scaled as well, so that a negative rate in the document shows which row lacks it.
  if (decimation_factor_ != -1) sample_rate_ *= decimation_factor_;
}

void StageRow::read_row(Dbptr db, const StageFields& fields) {
  read_text(db, fields.iunits, state_.stages.input_units);
  read_text(db, fields.ounits, state_.stages.output_units);
  read_text(db, fields.gtype, state_.stages.gain_type);
  gain_type_ = state_.stages.gain_type.data();
  nominal_gain_ = read_real(db, fields.gnom, nominal_gain_);
  decimation_factor_ = read_int(db, fields.decifac, decimation_factor_);
  izero_ = read_int(db, fields.izero, izero_);
  sample_rate_ = read_real(db, fields.samprate, sample_rate_);
  calibration_frequency_ = read_real(db, fields.fc, calibration_frequency_);
}

void StageRow::chain_units() {
  StageMemory& memory = state_.stages;
  input_units_ = memory.input_units.data();
  if (input_units_ == "-") input_units_ = memory.latest_unit;
  output_units_ = memory.output_units.data();
  if (output_units_ == "-") output_units_ = input_units_;
  memory.latest_unit = output_units_;
}

bool StageRow::record_to_filename(Dbptr db) {
  const StageFields& fields = fields_of(state_, db);
  const std::string dfile = read_string(db, fields.dfile, "-");
  filename_ = StageFile{"", dfile}.is_named() ? simplefile(read_string(db, fields.dir, "-"), dfile) : EMPTYFILENAME;
  return filename_ != EMPTYFILENAME;
}

bool StageRow::load_response() {
  if (filename_ == EMPTYFILENAME) return false;
  if (state_.responses == nullptr) {
    throw FatalFailure("a stage row names the response file " + filename_ + ", but no response cache has been set");
  }
  Response* const found = state_.responses->get(filename_);
  if (found == nullptr) return false;
  response_ = found;
  return true;
}

int StageRow::stagecount() const {
  if (response_ == nullptr) return 0;
  if (response_->group_count != 1) {
    throw std::runtime_error("expected single group. instead got " + std::to_string(response_->group_count));
  }
  return response_->group_count;
}

std::string StageRow::stage2xml(int stage) {
  StageText text = stage_text(stage);
  return text.block == nullptr ? std::move(text.rest) : *text.block + text.rest;
}

void StageRow::write_stage(std::ostream& out, int stage) {
  const StageText text = stage_text(stage);
  if (text.block != nullptr) out << *text.block;
  out << text.rest;
}

StageRow::StageText StageRow::stage_text(int stage) {
  if (stage == -1 && stagecount() == 1) stage = 0;
  if (stage == -1) stage = stageid_;
  if (response_ == nullptr) return {nullptr, default_stage(input_units_, output_units_) + decimation_as_xml()};

  if (stagecount() < stage && stageid_ != stage) {
    return {nullptr, no_such_stage(stage, stagecount())};
  }
  // The number of groups itself, and the row's own stage number, come through the test above; where there is no such
  // group, there is no text.
  const ResponseGroup* group = group_at(*response_, stage);
  if (group == nullptr) return {};

  // Three letters decide, so every kind of frequency table is taken for a fap2 until its code says otherwise.
  const std::string kind = type_name(response_, stage).substr(0, 3);
  if (kind == "fir") {
    if (group->type != RESPONSE_FIR) return {nullptr, type_mismatch("fir")};
    return {filter_block(*group), decimation_as_xml(static_cast<Fir*>(group->filter))};
  }
  if (kind == "fap") {
    if (group->type != RESPONSE_FAP2) return {nullptr, type_mismatch("fap2")};
    return {filter_block(*group), ""};
  }
  if (kind == "paz") {
    if (group->type != RESPONSE_PAZ) return {nullptr, type_mismatch("paz")};
    return {filter_block(*group), ""};
  }
  return {};  // other filters have no form in the document; the stage's gain still stands
}

const std::string* StageRow::filter_block(const ResponseGroup& group) const {
  return &state_.filter_texts.of(group, input_units_, output_units_);
}

std::string StageRow::stagegain_as_xml() {
  TextBlock block("          ");
  block.line("<StageGain>");
  block.line("  <Value>", nominal_gain_, "</Value>");
  block.line("  <Frequency>", calibration_frequency_, "</Frequency>");
  block.line("</StageGain>");
  return block.take();
}

std::string StageRow::decimation_as_xml() { return decimation(sample_rate_, decimation_factor_, 0); }

std::string StageRow::decimation_as_xml(Fir* fir) {
  // Without a rate in the row the filter's own stands in, divided by the factor as it is: a row that states neither
  // rate nor factor (-1) shows itself by a negative rate.
  const double input_rate = sample_rate_ == -1.0 ? fir->samprate / decimation_factor_ : sample_rate_;
  return decimation(input_rate, decimation_factor_, get_fir_delay(fir));
}

}  // namespace triglub
