// A whole document over one state: what db2stationxml does.
#ifndef TRIGLUB_SRC_WRITER_DOCUMENT_H
#define TRIGLUB_SRC_WRITER_DOCUMENT_H

#include <ostream>

#include "elements.h"
#include "platform/containers.h"
#include "platform/database.h"
#include "platform/parfile.h"
#include "state/conversion_state.h"

namespace triglub {

// Throws FatalFailure where the parameter file of the latest call is of edition 2, whose documents have no parts to be
// written one by one.
void refuse_epoch_documents(const ConversionState& state);

// As prepare_conversion, with FatalFailure where that ends the process.
Dbptr prepare_document(ConversionState& state, Dbptr db, Pf* pf, rbtree* subset, unsigned int flags);

// As db2stationxml, with FatalFailure where that ends the process.
void write_document(ConversionState& state, Dbptr db, Pf* pf, rbtree* subset, std::ostream& out, unsigned int flags);

}  // namespace triglub

#endif
