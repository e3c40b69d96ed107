// The master view: one record for each response stage of each channel epoch, in the order the document is written.
#ifndef TRIGLUB_SRC_WRITER_MASTER_VIEW_H
#define TRIGLUB_SRC_WRITER_MASTER_VIEW_H

#include "platform/containers.h"
#include "platform/database.h"
#include "state/conversion_state.h"

namespace triglub {

// As create_master_view.
Dbptr make_master_view(const ConversionState& state, Dbptr db, rbtree* subset);

}  // namespace triglub

#endif
