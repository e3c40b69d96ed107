// A table that the database has by a schema of its own, and lines of the tree that ask for it.
#ifndef TRIGLUB_FUZZ_SUPPORT_OWN_TABLE_H
#define TRIGLUB_FUZZ_SUPPORT_OWN_TABLE_H

#include "support/bytes.h"
#include "support/conversion_case.h"

namespace triglub_fuzz {

// Its key and rows are what the next bytes say.
void add_own_table(Bytes* bytes, Case* changed);

}  // namespace triglub_fuzz

#endif
