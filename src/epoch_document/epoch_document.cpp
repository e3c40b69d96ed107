// Records are made once; the writer of the whole and those of the pieces each have plans of their own over them.
#include "epoch_document.h"

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

#include "document/element_writer.h"
#include "document/record_set.h"
#include "element_tree.h"
#include "epochs/record_view.h"
#include "epochs/records.h"
#include "fatal_failure.h"
#include "stages/chain_check.h"
#include "stages/response_files.h"
#include "stages/stage_facts.h"
#include "stages/stage_texts.h"

namespace triglub {

namespace {

constexpr std::size_t kRootDepth = 1;

// The tag of the groups that a document of that level leaves out with all below.
const char* cut_of(DetailLevel level) {
  switch (level) {
    case DetailLevel::network:
      return "Station";
    case DetailLevel::station:
      return "Channel";
    case DetailLevel::channel:
      return "Stage";
    case DetailLevel::response:
      break;
  }
  return "";
}

std::unique_ptr<const ElementTree> read_or_fail(Dbptr db, Pf* pf, std::uint32_t* tables) {
  auto tree = read_tree(db, pf, tables);
  if (tree != nullptr) return tree;
  const std::string path = pf_path(pf);
  throw FatalFailure("parameter file" + (path.empty() ? "" : " " + path) + ": cannot be used");
}

// Whether stages are written with their filters: a group that writes fields of theirs can have them as they are.
bool has_stage_line(const TreeGroup& group) {
  return std::any_of(group.elements.begin(), group.elements.end(), [](const TreeLine& line) {
    return line.type == LineType::stage || (line.group != nullptr && has_stage_line(*line.group));
  });
}

RecordList all_of(const RecordSet& records) { return {nullptr, 0, records.size()}; }

}  // namespace

struct EpochDocument::Inside {
  Inside(Dbptr db, Pf* pf, rbtree* conditions, DetailLevel level, ResponseReach reach)
      : tree(read_or_fail(db, pf, &tables)),
        cut(cut_of(level)),
        view(make_view(db, conditions, level, reach)),
        records(view.view, kEpoch),
        stages(view.tables, *files) {}

  RecordView make_view(Dbptr db, rbtree* conditions, DetailLevel level, ResponseReach reach) {
    RecordChoice choice;
    choice.conditions = conditions;
    choice.tables = tables;
    choice.reach = reach;
    choice.calibration_units = tree->options().calibration_units;
    choice.with_empty_networks = level == DetailLevel::network;
    if (level == DetailLevel::response && has_stage_line(tree->root())) {
      choice.amend = [this](const ResponseTables& response, RecordRows* rows) {
        files.emplace(response);
        drop_broken_chains(response, &*files, rows, &findings);
      };
    }
    RecordView made = make_record_view(db, choice, &findings);
    if (!files) files.emplace(made.tables);
    return made;
  }

  Findings findings;
  std::uint32_t tables = 0;  // that the tree looks at
  std::unique_ptr<const ElementTree> tree;
  std::string cut;
  std::optional<ResponseFiles> files;
  RecordView view;
  RecordSet records;
  StageTable stages;
  std::unique_ptr<EpochDocument::PieceWriter> split_by;  // holds the categories
  SplitElement parts;
};

struct EpochDocument::PieceWriter::Inside {
  explicit Inside(const EpochDocument& document)
      : of(*document.inside_),
        context{*of.tree, of.records, findings},
        stages(of.view.view, of.stages, of.tree->options()),
        writer(context, of.cut, stages) {}

  const EpochDocument::Inside& of;
  Findings findings;
  ValueContext context;
  StageTexts stages;
  ElementWriter writer;
};

EpochDocument::EpochDocument(Dbptr db, Pf* pf, rbtree* conditions, DetailLevel level)
    : EpochDocument(db, pf, conditions, level, ResponseReach::anywhere) {}

EpochDocument::EpochDocument(Dbptr db, Pf* pf, rbtree* conditions, DetailLevel level, ResponseReach reach)
    : inside_(std::make_unique<Inside>(db, pf, conditions, level, reach)) {}

EpochDocument::~EpochDocument() {
  const RecordView view = inside_->view;
  inside_.reset();
  release(view);
}

const Findings& EpochDocument::findings() const { return inside_->findings; }

std::uint32_t EpochDocument::record_count() const { return inside_->records.size(); }

bool EpochDocument::write(std::ostream& out) {
  if (!has_records()) return false;
  PieceWriter whole(*this);
  PieceWriter::Inside& inside = *whole.inside_;
  const bool is_written = inside.writer.write(inside_->tree->root(), all_of(inside_->records), kRootDepth, out);
  inside_->findings.add(inside.findings);
  return is_written;
}

bool EpochDocument::split(Parts* parts) {
  if (!has_records()) return false;
  inside_->split_by = std::make_unique<PieceWriter>(*this);
  PieceWriter::Inside& inside = *inside_->split_by->inside_;
  SplitElement& split = inside_->parts;
  if (!inside.writer.split(inside_->tree->root(), all_of(inside_->records), kRootDepth, &split)) return false;
  inside_->findings.add(std::exchange(inside.findings, {}));
  *parts = {split.head, split.categories.size(), split.line->is_required, split.tail};
  return true;
}

EpochDocument::PieceWriter::PieceWriter(const EpochDocument& document) : inside_(std::make_unique<Inside>(document)) {}

EpochDocument::PieceWriter::~PieceWriter() = default;

bool EpochDocument::PieceWriter::write(std::size_t piece, std::ostream& out, Findings* findings) {
  const bool is_written = inside_->writer.write_category(inside_->of.parts, piece, kRootDepth + 1, out);
  findings->add(std::exchange(inside_->findings, {}));
  return is_written;
}

}  // namespace triglub
