// Opens a source by its name.
#ifndef TRIGLUB_ENGINE_SOURCE_OPEN_OPEN_SOURCE_H
#define TRIGLUB_ENGINE_SOURCE_OPEN_OPEN_SOURCE_H

#include <memory>
#include <string>

#include "engine/source/source.h"

namespace triglub {

// "flat:PREFIX" and "PREFIX" are flat files, DIR/NAME.TABLE; "memory:NAME" is a source of this process that was
// published under that name. Any other word before a colon is a part of the path, and "./memory:x" is a path too. Null
// after a complaint when there is no such source. Safe for concurrent use.
std::shared_ptr<const Source> open_source(const std::string& name);

}  // namespace triglub

#endif
