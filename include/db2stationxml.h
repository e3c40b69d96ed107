// CSS3.0 station tables to FDSN StationXML: the entry point. Start reading here.
//
//     Dbptr db;
//     Pf* pf = nullptr;
//     if (dbopen("/net/aak/aak", "r", &db) != 0 || pfread("stationxml", &pf) != 0) return 1;
//     rbtree* subset = newarr(nullptr);                         // everything
//     setarr(subset, "snetsta.snet", "/KR/");                   // ... of one network
//     std::cout << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
//     db2stationxml(db, pf, subset, std::cout, 0x40);           // 0x40: down to the response stages
//
// The document is what the parameter file describes (elements.h); the library writes no XML declaration.
//
// Failures: a fault of the data or the parameter file that makes the document impossible ends the process through
// elog_die (exit status 1). These leave as exceptions: a master view that cannot be built (dbquery_error), a recursive
// element tree at verbosity 1 to 3 (std::runtime_error), a category or angle that is no number (std::invalid_argument,
// std::out_of_range), an attribute line of type GROUP and the keyword force_lookup (std::logic_error). A response stage
// that cannot be written is complained about and left out. What was written before a failure stays in the stream.
//
// The functions here work on the one conversion of the process: verbosity, the detail level, the parameter file of the
// latest call, the response cache (built by the first call at the response level), the unit chain of the stages and the
// null values seen live as long as the process, and one thread at a time may call. A program that converts in several
// threads, or must outlive a failure, holds conversions of its own: conversion.h.
#ifndef TRIGLUB_DB2STATIONXML_H
#define TRIGLUB_DB2STATIONXML_H

#include <ostream>
#include <string>
#include <vector>

#include "conversion.h"
#include "elements.h"
#include "platform/containers.h"
#include "platform/database.h"
#include "platform/export.h"
#include "platform/parfile.h"
#include "smartindex.h"

// Tracing of the latest call: 0 nothing, 1 and 2 what is done, 3 every function too.
TRIGLUB_API extern unsigned int verbosity;
// Depth of the node being written; 0 outside a conversion, the root at 1.
TRIGLUB_API extern unsigned int xml_depth;

// Writes the document to `out`; returns 0.
//   db      any handle of an open database
//   pf      the parameter file; must not be null (fatal)
//   subset  field names or expressions over sitechan, snetsta and schanloc, mapped to regular expressions between
//           slashes; required, empty for everything
//   flags   bits 0-1 verbosity; bits 3-6 the detail (DetailLevel): 0x08 networks, 0x10 down to stations, 0x20 down to
//           channels, 0x40 down to response stages; any other value writes the whole tree but prepares no responses
TRIGLUB_API int db2stationxml(Dbptr db, Pf* pf, rbtree* subset, std::ostream& out, unsigned int flags);

// All that db2stationxml does before it writes: sets the process-wide state from the flags and the parameter file,
// builds the master view and, at the response level, the response cache. Returns the view. For a program that writes
// nodes itself, with xml_create_node. Fails as db2stationxml does.
TRIGLUB_API Dbptr prepare_conversion(Dbptr db, Pf* pf, rbtree* subset, unsigned int flags);

// The one view that the document is written over: every channel epoch with its network, station, site, sensor,
// instrument, calibration and stages. An invalid handle when a step fails.
TRIGLUB_API Dbptr create_master_view(Dbptr db, rbtree* subset);

// Writes one group, and all groups below it, for the selected records; values come from the first of them. Writes
// nothing for an empty index. REQUIRES: prepare_conversion or db2stationxml was called with the parameter file.
TRIGLUB_API void xml_create_node(std::ostream& out, Dbptr db, ElementGroup group, SmartIndex index);

// Writes one group line (GROUP, CATEGORIZED_GROUP, CATEGORIZED_BY_NUMBER) of a node of `group` at the depth of now: all
// that xml_create_node would write for it over these records.
TRIGLUB_API void xml_create_group_line(std::ostream& out, Dbptr db, const ElementGroup& group,
                                       const ElementDescription& line, const SmartIndex& index);

// As xml_create_node, but each group line of this one node is handed to `write_group_line` instead of being written:
// for a program that has its own way to find the records of the groups.
using GroupLineWriter = triglub::GroupLineHandler;
TRIGLUB_API void xml_create_node(std::ostream& out, Dbptr db, ElementGroup group, SmartIndex index,
                                 const GroupLineWriter& write_group_line);

// The split by category, one search at a time. For callers: documents are written by forms that look at all categories
// at once and give the same.

// The distinct values of a categorized or count line over the selected records, in byte order, or in numeric order for
// CATEGORIZED_BY_NUMBER (throws std::invalid_argument or std::out_of_range for what is no int). Fatal for other lines
// and unknown fields.
TRIGLUB_API std::vector<std::string> get_categories(Dbptr db, ElementDescription line, SmartIndex index);

// The numbers that two texts begin with, compared. Throws as std::stoi.
TRIGLUB_API bool sort_strings_as_numeric(std::string const& a, std::string const& b);

// The records from the first to the last match of a condition, as seen from within the index: the first match at or
// after its first record, the last match at or before its last one. Fatal when the condition does not compile.
TRIGLUB_API SmartIndex pseudo_subset(Dbptr db, std::string expression, SmartIndex index);

// The tag at which the document is cut, the first that is left out: "Station" for DetailLevel::network (0x08),
// "Channel" for station (0x10), "Stage" for channel (0x20); any other value: not cut.
TRIGLUB_API void set_detail_level(unsigned int level);
// True when the group is the one at which the document is cut.
TRIGLUB_API bool max_detail_level_reached(ElementGroup group);

// True at any verbosity but 0.
TRIGLUB_API bool info_level();
// "Function: NAME" to the debug log at verbosity 3.
TRIGLUB_API void show_func(std::string name);

#endif
