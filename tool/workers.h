// Pieces of a document written side by side, by several processes or several threads.
#ifndef TRIGLUB_TOOL_WORKERS_H
#define TRIGLUB_TOOL_WORKERS_H

#include <functional>
#include <ostream>

#include "tool/output.h"

namespace triglub::tool {

// Writes the pieces 0 to pieces - 1 to the output, in this order, whatever number of processes works on them: what one
// writes, and what it tells, waits for its turn. A piece that fails ends the process it is written in by a fatal report
// (exit status 1); then this process ends likewise, with all pieces before that one written. So it does where the
// signal of a closed pipe ended one. REQUIRES: `write` does not throw; this process has no other threads.
using PieceWriter = std::function<void(std::ostream& out, std::size_t piece)>;
void write_in_order(Output& output, std::size_t pieces, unsigned int jobs, const PieceWriter& write);

// The same by threads, each with a writer of its own. `before_text` is called, by one thread at a time, before text of
// a piece is written. A piece that fails ends the process by a fatal report. REQUIRES: the writers do not throw and do
// not log but for a fatal report.
using MakePieceWriter = std::function<PieceWriter()>;
void write_side_by_side(Output& output, std::size_t pieces, unsigned int jobs, const std::function<void()>& before_text,
                        const MakePieceWriter& make_writer);

}  // namespace triglub::tool

#endif
