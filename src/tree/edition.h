// Which edition of the writing rules a parameter file asks for.
#ifndef TRIGLUB_SRC_TREE_EDITION_H
#define TRIGLUB_SRC_TREE_EDITION_H

#include "platform/parfile.h"

namespace triglub {

// 1 when the key `edition` is absent or "1", 2 for "2". Throws FatalFailure, naming file, line and value, for anything
// else.
int edition_of(Pf* pf);

}  // namespace triglub

#endif
