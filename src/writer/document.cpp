// Decodes the flags, prepares what a document needs, and has the tree written.
#include "writer/document.h"

#include <memory>
#include <stdexcept>
#include <utility>

#include "conversion.h"
#include "dbhelper.h"
#include "element_tree.h"
#include "epoch_document.h"
#include "platform/elog.h"
#include "resp_helper.h"
#include "writer/master_view.h"
#include "writer/node_writer.h"

namespace triglub {

namespace {

constexpr unsigned int kVerbosityBits = 0x3;
constexpr unsigned int kDetailBits = 0x78;

// The name of the root group; null when the parameter file has none.
const char* root_of(Pf* pf) { return pfget_string(pf, "root_node"); }

ElementGroup root_group(Pf* pf) {
  const char* root = root_of(pf);
  if (root == nullptr) throw std::runtime_error("parameter file: no root_node");
  return {pf, root};
}

void trace_root(Pf* pf) {
  const char* root = root_of(pf);
  elog_debug(0, "root node: %s", root == nullptr ? "(null)" : root);
}

void trace_view(Dbptr view) { elog_debug(0, " %ld records after merging", db_nrecs(view)); }

// Walks the tree once, so that one that does not end is found before anything is written. A missing root is left to
// the writing, where it is reported in one way at every verbosity.
void check_tree(Pf* pf) {
  const char* root = root_of(pf);
  if (root != nullptr) navigateElementTree(pf, root, 0);
}

DetailLevel level_of(unsigned int flags) {
  switch (const auto level = static_cast<DetailLevel>(flags & kDetailBits)) {
    case DetailLevel::network:
    case DetailLevel::station:
    case DetailLevel::channel:
      return level;
    default:
      return DetailLevel::response;
  }
}

void write_epochs(ConversionState& state, Dbptr db, Pf* pf, rbtree* subset, std::ostream& out, unsigned int flags) {
  state.parameters = pf;
  state.edition = 2;
  EpochDocument document(db, pf, subset, level_of(flags));
  document.write(out);
  document.findings().report();
}

// One cache for the life of the state: the response files of an archive are read once, however many documents are made
// of it. A later call with another database keeps using it. A construction that throws is tried again.
void prepare_responses(ConversionState& state, Dbptr view) {
  if (state.kept_responses != nullptr && state.responses == state.kept_responses.get()) return;
  if (state.kept_responses == nullptr) state.kept_responses = std::make_shared<const ResponseCache>(view, "stage");
  state.use_responses(*state.kept_responses);
}

}  // namespace

void refuse_epoch_documents(const ConversionState& state) {
  if (state.edition != 2) return;
  throw FatalFailure("a document of edition 2 is written whole: by db2stationxml or triglub::EpochDocument");
}

Dbptr prepare_document(ConversionState& state, Dbptr db, Pf* pf, rbtree* subset, unsigned int flags) {
  state.verbosity = flags & kVerbosityBits;
  const unsigned int level = flags & kDetailBits;
  state.cut_at(level);
  trace_call(state, "db2stationxml");
  if (pf == nullptr) throw FatalFailure("No parameter file specified");
  state.parameters = pf;
  state.edition = edition_of(pf);
  refuse_epoch_documents(state);
  state.read_date_formats(pf);
  if (state.is_verbose()) trace_root(pf);
  const Dbptr view = make_master_view(state, db, subset);
  if (state.is_verbose()) {
    trace_view(view);
    check_tree(pf);
  }
  db_nrecs(view);  // throws for a view that could not be made, before responses are read for it
  if (level == static_cast<unsigned int>(DetailLevel::response)) prepare_responses(state, view);
  return view;
}

void write_document(ConversionState& state, Dbptr db, Pf* pf, rbtree* subset, std::ostream& out, unsigned int flags) {
  if (pf != nullptr && edition_of(pf) == 2) return write_epochs(state, db, pf, subset, out, flags);
  const Dbptr view = prepare_document(state, db, pf, subset, flags);
  const SmartIndex all(static_cast<unsigned long>(db_nrecs(view)), true);
  try {
    NodePlan plan(root_group(pf));
    NodeWriter(state, out).write_node(view, plan, all, nullptr);
  } catch (const std::runtime_error& e) {
    throw FatalFailure(e.what());
  }
}

}  // namespace triglub
