// The texts of data/schemas/css3.0.pf and data/schemas/kbcore.pf, compiled in so that the library works without its
// data folder.
#ifndef TRIGLUB_ENGINE_SCHEMA_BUILTIN_SCHEMA_H
#define TRIGLUB_ENGINE_SCHEMA_BUILTIN_SCHEMA_H

#include <string_view>

namespace triglub {

// Empty for a name that no schema is compiled in under.
std::string_view builtin_schema_text(std::string_view name);

}  // namespace triglub

#endif
