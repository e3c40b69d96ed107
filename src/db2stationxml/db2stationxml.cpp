// The entry point: decodes the flags, prepares what a document needs, and has the tree written.
#include "db2stationxml.h"

#include <stdexcept>

#include "db2stationxml/conversion.h"
#include "dbhelper.h"
#include "platform/elog.h"
#include "resp_helper.h"

unsigned int verbosity = 0;
unsigned int xml_depth = 0;

namespace {

constexpr unsigned int VERBOSITY_BITS = 0x3;
constexpr unsigned int DETAIL_BITS = 0x78;
constexpr unsigned int STATION_LEVEL = 0x08;
constexpr unsigned int CHANNEL_LEVEL = 0x10;
constexpr unsigned int STAGE_LEVEL = 0x20;
constexpr unsigned int RESPONSE_LEVEL = 0x40;

// The tag of the groups at which the document is cut; the empty text cuts nothing.
std::string final_element_name;

Pf* latest_parameters = nullptr;

// The name of the root group; null when the parameter file has none.
const char* root_of(Pf* pf) { return pfget_string(pf, "root_node"); }

ElementGroup root_group(Pf* pf) {
  const char* root = root_of(pf);
  if (root == nullptr) throw std::runtime_error("parameter file: no root_node");
  return {pf, root};
}

void trace_view(Dbptr view) { elog_debug(0, " %ld records after merging", db_nrecs(view)); }

// Walks the tree once, so that one that does not end is found before anything is written. A missing root is left to
// the writing, where it is reported in one way at every verbosity.
void check_tree(Pf* pf) {
  const char* root = root_of(pf);
  if (root != nullptr) navigateElementTree(pf, root, 0);
}

// One cache for the life of the process: the response files of an archive are read once, however many documents are
// made of it. A later call with another database keeps using it. A construction that throws is tried again.
void prepare_responses(Dbptr view) {
  static ResponseCache cache(view, "stage");
  XmlResponse::set_cache(cache);
}

}  // namespace

Pf* triglub::conversion_parameters() { return latest_parameters; }

bool triglub::is_cut(const std::string& tag) { return tag == final_element_name; }

bool info_level() { return verbosity != 0; }

void show_func(std::string name) {
  if (verbosity > 2) elog_debug(0, "%s", ("Function: " + name).c_str());
}

void set_detail_level(unsigned int level) {
  // Each level names the first element that is left out, not the last that is kept.
  switch (level) {
    case STATION_LEVEL:
      final_element_name = "Station";
      return;
    case CHANNEL_LEVEL:
      final_element_name = "Channel";
      return;
    case STAGE_LEVEL:
      final_element_name = "Stage";
      return;
    default:
      final_element_name.clear();
  }
}

bool max_detail_level_reached(ElementGroup group) { return triglub::is_cut(group.name()); }

Dbptr prepare_conversion(Dbptr db, Pf* pf, rbtree* subset, unsigned int flags) {
  verbosity = flags & VERBOSITY_BITS;
  const unsigned int level = flags & DETAIL_BITS;
  set_detail_level(level);
  show_func("db2stationxml");
  if (pf == nullptr) elog_die(0, "No parameter file specified");
  latest_parameters = pf;
  date_formats_init(pf);
  if (info_level()) {
    const char* root = root_of(pf);
    elog_debug(0, "root node: %s", root == nullptr ? "(null)" : root);
  }
  const Dbptr view = create_master_view(db, subset);
  if (info_level()) {
    trace_view(view);
    check_tree(pf);
  }
  db_nrecs(view);  // throws for a view that could not be made, before responses are read for it
  if (level == RESPONSE_LEVEL) prepare_responses(view);
  return view;
}

int db2stationxml(Dbptr db, Pf* pf, rbtree* subset, std::ostream& out, unsigned int flags) {
  const Dbptr view = prepare_conversion(db, pf, subset, flags);
  SmartIndex all(static_cast<unsigned long>(db_nrecs(view)), true);
  try {
    xml_create_node(out, view, root_group(pf), std::move(all));
  } catch (const std::runtime_error& e) {
    elog_die(0, "%s", e.what());
  }
  return 0;
}
