// Conditions on tables that the library joins behind those it takes conditions for.
#ifndef TRIGLUB_TOOL_LATE_CONDITIONS_H
#define TRIGLUB_TOOL_LATE_CONDITIONS_H

#include "platform/database.h"
#include "tool/subset.h"

namespace triglub::tool {

// Takes those out of *conditions that cannot be asked of the coded channels (station_views.h), but of the master view.
Conditions take_late_conditions(Dbptr db, Conditions* conditions);

// A view with the rows of stage, where there are any, behind its tables.
Dbptr joined_with_stages(Dbptr view);

// The records of a view, which goes, that meet the conditions; invalid, after a complaint, where one fails.
Dbptr meeting(Dbptr view, const Conditions& conditions);

}  // namespace triglub::tool

#endif
