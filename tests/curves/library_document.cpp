#include "curves/library_document.h"

#include <cstdlib>
#include <sstream>
#include <stdexcept>

#include "conversion.h"
#include "platform/database.h"
#include "platform/elog.h"
#include "platform/parfile.h"
#include "support/file_text.h"

namespace triglub_curves {

namespace {

void ignore(ElogLevel /*level*/, const char* /*text*/, void* /*context*/) {}

}  // namespace

std::string shipped_document(const std::string& database, const std::string& further_keys) {
  setenv("TRIGLUB_PFPATH", TRIGLUB_SOURCE_DIR "/data", 1);
  elog_set_sink(ignore, nullptr);
  const std::string parameters = triglub_test::file_text(TRIGLUB_SOURCE_DIR "/data/stationxml.pf") + further_keys;
  Dbptr db;
  Pf* pf = nullptr;
  if (dbopen(database.c_str(), "r", &db) != 0) throw std::runtime_error("the database does not open");
  if (pfparse(parameters.c_str(), "stationxml", &pf) != 0) throw std::runtime_error("the shipped tree is malformed");
  std::ostringstream out;
  triglub::Conversion().write(db, pf, nullptr, out, triglub::flags_for(triglub::DetailLevel::response));
  pffree(pf);
  dbclose(db);
  elog_set_sink(nullptr, nullptr);
  return out.str();
}

}  // namespace triglub_curves
