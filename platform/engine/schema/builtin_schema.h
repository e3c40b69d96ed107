// The text of data/schemas/css3.0.pf, compiled in so that the library works without its data folder.
#ifndef TRIGLUB_ENGINE_SCHEMA_BUILTIN_SCHEMA_H
#define TRIGLUB_ENGINE_SCHEMA_BUILTIN_SCHEMA_H

#include <string_view>

namespace triglub {

std::string_view builtin_schema_text();

}  // namespace triglub

#endif
