// The entry point and its parts in the classic interface: the writers over the state of the process.
#include "db2stationxml.h"

#include "platform/elog.h"
#include "state/process_state.h"
#include "writer/document.h"
#include "writer/master_view.h"
#include "writer/node_writer.h"

using triglub::or_die;
using triglub::process_state;

bool info_level() { return process_state().is_verbose(); }

void show_func(std::string name) { triglub::trace_call(process_state(), name); }

void set_detail_level(unsigned int level) { process_state().cut_at(level); }

bool max_detail_level_reached(ElementGroup group) { return process_state().is_cut(group.name()); }

Dbptr create_master_view(Dbptr db, rbtree* subset) { return triglub::make_master_view(process_state(), db, subset); }

Dbptr prepare_conversion(Dbptr db, Pf* pf, rbtree* subset, unsigned int flags) {
  return or_die([&] { return triglub::prepare_document(process_state(), db, pf, subset, flags); });
}

int db2stationxml(Dbptr db, Pf* pf, rbtree* subset, std::ostream& out, unsigned int flags) {
  or_die([&] { triglub::write_document(process_state(), db, pf, subset, out, flags); });
  return 0;
}

void xml_create_node(std::ostream& out, Dbptr db, ElementGroup group, SmartIndex index) {
  triglub::NodePlan plan(group);
  or_die([&] {
    triglub::refuse_epoch_documents(process_state());
    triglub::NodeWriter(process_state(), out).write_node(db, plan, index, nullptr);
  });
}

void xml_create_node(std::ostream& out, Dbptr db, ElementGroup group, SmartIndex index,
                     const GroupLineWriter& write_group_line) {
  triglub::NodePlan plan(group);
  or_die([&] {
    triglub::refuse_epoch_documents(process_state());
    triglub::NodeWriter(process_state(), out).write_node(db, plan, index, &write_group_line);
  });
}

void xml_create_group_line(std::ostream& out, Dbptr db, const ElementGroup& group, const ElementDescription& line,
                           const SmartIndex& index) {
  triglub::NodePlan plan(group);
  triglub::LinePlan line_plan(line);
  or_die([&] {
    triglub::refuse_epoch_documents(process_state());
    triglub::NodeWriter(process_state(), out).write_line_of_groups(db, plan, line_plan, index);
  });
}
