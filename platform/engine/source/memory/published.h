// Sources of this process that can be opened by name.
#ifndef TRIGLUB_ENGINE_SOURCE_MEMORY_PUBLISHED_H
#define TRIGLUB_ENGINE_SOURCE_MEMORY_PUBLISHED_H

#include <memory>
#include <string>

#include "engine/source/source.h"

namespace triglub {

// Publishes a source under a name, in place of the one that had it. Safe for concurrent use, as are the two below.
void publish(const std::string& name, std::shared_ptr<const Source> source);
// The name names nothing any more; a database that is open on the source stays open.
void withdraw(const std::string& name);
// Null when nothing has the name.
std::shared_ptr<const Source> find_published(const std::string& name);

}  // namespace triglub

#endif
