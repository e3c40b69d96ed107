// Networks are written side by side by threads, each with a writer of its own over the one view.
#include "tool/convert_epochs.h"

#include <cstdlib>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "epoch_document.h"
#include "findings.h"
#include "platform/elog.h"
#include "tool/messages.h"
#include "tool/output.h"
#include "tool/workers.h"
#include "tool/write_parts.h"

namespace triglub::tool {

namespace {

// Tells what was found; true when the document is as good as was asked for.
bool accept(const Findings& findings, bool strict) {
  findings.report();
  if (!strict || !findings.has(Rank::warning)) return true;
  elog_notify(0, "there are warnings, which --strict forbids; nothing is written");
  return false;
}

// What stands before the first piece goes out with it: a document whose pieces are all empty may not be one.
class PendingHead {
 public:
  PendingHead(Output& output, std::string text) : output_(output), text_(std::move(text)) {}

  bool is_written() const { return is_written_; }
  // Called by one thread at a time.
  void write() {
    if (is_written_) return;
    is_written_ = true;
    write_parts(output_.descriptor(), output_.name(), {{text_.data(), text_.size()}});
  }

 private:
  Output& output_;
  std::string text_;
  bool is_written_ = false;
};

// False when nothing was written.
bool write_pieces(Output& output, const EpochDocument& document, const EpochDocument::Parts& parts,
                  const ConvertOptions& options, Findings* findings) {
  const std::string& source = options.source;
  PendingHead head(output, kDeclaration + parts.head);
  std::vector<Findings> found(parts.pieces);
  const auto or_die = [&source](const auto& act) {
    try {
      return act();
    } catch (...) {
      die_of_exception(source);
    }
  };
  const auto make_writer = [&]() -> PieceWriter {
    auto writer = or_die([&] { return std::make_shared<EpochDocument::PieceWriter>(document); });
    return [writer, &found, or_die](std::ostream& out, std::size_t piece) {
      or_die([&] { writer->write(piece, out, &found[piece]); });
    };
  };
  write_side_by_side(
      output, parts.pieces, options.jobs, [&head] { head.write(); }, make_writer);
  for (const Findings& of_piece : found) findings->add(of_piece);
  if (!head.is_written() && parts.are_required) return false;
  head.write();
  output.stream() << parts.tail;
  return true;
}

bool write_whole(Output& output, EpochDocument& document) {
  output.stream() << kDeclaration;
  return document.write(output.stream());
}

[[noreturn]] void die_of_emptiness(const ConvertOptions& options, const Findings& findings, const char* why) {
  findings.report();
  elog_die(0, "%s: %s; nothing is written", options.source.c_str(), why);
}

}  // namespace

int convert_epochs(const ConvertOptions& options, Dbptr db, Pf* pf) {
  Subset subset(options.conditions);
  EpochDocument document(db, pf, subset.array(), options.level, reach_of(options));
  if (options.verbosity > 0) elog_debug(0, "%u records", document.record_count());
  if (!document.has_records()) die_of_emptiness(options, document.findings(), "no record is selected");
  const auto output = Output::open(options.output, options.strict ? Output::Hold::until_commit : Output::Hold::no);
  EpochDocument::Parts parts;
  const bool is_split = options.jobs > 1 && document.split(&parts);
  Findings findings;
  const bool is_written =
      is_split ? write_pieces(*output, document, parts, options, &findings) : write_whole(*output, document);
  Findings all = document.findings();
  all.add(findings);
  if (!is_written) die_of_emptiness(options, all, "something that the document requires is missing everywhere");
  output->finish();
  if (!accept(all, options.strict)) return EXIT_FAILURE;
  output->commit();
  return EXIT_SUCCESS;
}

}  // namespace triglub::tool
