// Opens what the exported dbopen cannot name.
#ifndef TRIGLUB_ENGINE_CLASSIC_OPEN_H
#define TRIGLUB_ENGINE_CLASSIC_OPEN_H

#include <memory>

#include "engine/source/source.h"
#include "platform/database.h"

namespace triglub {

// As dbopen, for a source that is open. Several databases may stand on one source. Gives 0.
int dbopen_source(std::shared_ptr<const Source> source, Dbptr* db);

}  // namespace triglub

#endif
