// Chains of stages that can be written whole, and those that cannot be written at all: a chain that lacks a stage gives
// a wrong response without a word.
#ifndef TRIGLUB_SRC_STAGES_CHAIN_CHECK_H
#define TRIGLUB_SRC_STAGES_CHAIN_CHECK_H

#include "epochs/records.h"
#include "epochs/response_tables.h"
#include "findings.h"
#include "stages/response_files.h"

namespace triglub {

// Reads the response files that the records name. Epochs of which any stage cannot be written, or that lack one, keep
// one record without a stage; each is told, with the stage's place, the channel and the reason. Of the others is told
// what in them is not as it should be.
void drop_broken_chains(const ResponseTables& tables, ResponseFiles* files, RecordRows* rows, Findings* findings);

}  // namespace triglub

#endif
