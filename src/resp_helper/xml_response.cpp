// One stage row in the classic interface: a StageRow over the state of the process.
#include <memory>
#include <utility>

#include "resp_helper.h"
#include "resp_helper/stage_row.h"
#include "state/process_state.h"

using triglub::or_die;
using triglub::StageRow;

XmlResponse::XmlResponse(Dbptr db, std::string table)
    : row_(or_die([&] { return std::make_unique<StageRow>(triglub::process_state(), db, table); })) {}

XmlResponse::~XmlResponse() = default;

XmlResponse::XmlResponse(const XmlResponse& other) : row_(std::make_unique<StageRow>(*other.row_)) {}

XmlResponse& XmlResponse::operator=(const XmlResponse& other) {
  if (this != &other) row_ = std::make_unique<StageRow>(*other.row_);
  return *this;
}

void XmlResponse::set_cache(ResponseCache& cache) { triglub::process_state().use_responses(cache); }

void XmlResponse::forget_units() { triglub::process_state().stages.forget_units(); }

bool XmlResponse::record_to_filename(Dbptr db, std::string /*table*/) { return row_->record_to_filename(db); }

bool XmlResponse::load_response() {
  return or_die([&] { return row_->load_response(); });
}

int XmlResponse::stagecount() const { return row_->stagecount(); }

std::string XmlResponse::stage2xml(int stage) { return row_->stage2xml(stage); }

void XmlResponse::write_stage(std::ostream& out, int stage) { row_->write_stage(out, stage); }

std::string XmlResponse::stagegain_as_xml() { return row_->stagegain_as_xml(); }

std::string XmlResponse::decimation_as_xml() { return row_->decimation_as_xml(); }

std::string XmlResponse::decimation_as_xml(Fir* fir) { return row_->decimation_as_xml(fir); }
