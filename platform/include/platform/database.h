// A read-only engine for CSS3.0 station tables: open a source, join, subset, sort, look up, evaluate.
//
//     Dbptr db;
//     if (dbopen("/net/aak/aak", "r", &db) != 0) ...          // complaint already in the log
//     Tbl* steps = newtbl(0);
//     pushtbl(steps, "dbopen sitechan");
//     pushtbl(steps, "dbjoin site");
//     pushtbl(steps, "dbsubset sta =~ /AAK|ANMO/");
//     Dbptr view = dbprocess(db, steps, nullptr);             // view.table == dbINVALID when a step failed
//     long n = 0;
//     dbquery(view, dbRECORD_COUNT, &n);
//     double lat = 0;
//     for (view.record = 0; view.record < n; ++view.record)
//       dbgetv(view, nullptr, "site.lat", &lat, nullptr);     // 0, and lat in degrees
//     dbclose(db);
//
// A handle (`Dbptr`) is four numbers and is copied freely. A view is a set of row numbers into base tables; a base
// table is a view of itself. Views belong to the session and live until dbclose. Field names resolve bare (the first
// table of the view, in join order, that has the name) or qualified by the table ("site.ondate").
//
// A row that an outer join could not find reads as null in every field. A null is a value like any other (the
// schema's null value) in expressions, sorts, joins and dbgetv; is_null() tells it in an expression.
//
// Threads. What is loaded of a database (tables, their dictionaries and join indexes) does not change any more and is
// shared. What operations make of it (views, names, compiled expressions) belongs to a session, which one thread at a
// time may use: dbopen opens the first session of a database, triglub::open_session (platform/sessions.h) a further one
// for another thread. Different sessions may be used at the same time, also those of one database; every handle and
// every Expression is used only with the session that it came from. Inside the engine, const means safe to share.
//
// Failures are reported through the error log (elog_complain) unless an operation says otherwise, and seen as a
// negative status or a handle member equal to dbINVALID. An operation that is handed an invalid handle gives an invalid
// one without a word: what made it so has been reported.
#ifndef TRIGLUB_PLATFORM_DATABASE_H
#define TRIGLUB_PLATFORM_DATABASE_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/containers.h"
#include "platform/export.h"
#include "platform/threads.h"

// Markers of a handle's members.
inline constexpr std::int64_t dbINVALID = -102;  // not set, or the result of something that failed
inline constexpr std::int64_t dbALL = -501;      // no one table, field or record in particular
inline constexpr std::int64_t dbNULL = -502;     // as record: the row whose every field is null

// A position in a database: which database, table or view, field and record (from 0).
struct Dbptr {
  std::int64_t database = dbINVALID;
  std::int64_t table = dbINVALID;
  std::int64_t field = dbINVALID;
  std::int64_t record = dbINVALID;

  friend bool operator==(const Dbptr&, const Dbptr&) = default;
};

// What dbquery can be asked. In brackets: what the answer points to.
enum : int {
  dbFIELD_COUNT = -304,       // [long] number of fields of the table or view
  dbRECORD_COUNT = -305,      // [long] number of records
  dbFIELD_DETAIL = -310,      // [const char*] a text describing the field: type, width, unit, description
  dbFIELD_NAME = -320,        // [const char*] the field's name, bare
  dbFIELD_TYPE = -328,        // [int] dbINTEGER, dbREAL, dbTIME, dbYEARDAY or dbSTRING
  dbTABLE_DIRNAME = -331,     // [const char*] the directory of the table's file
  dbFIELD_BASE_TABLE = -354,  // [const char*] the table that the field comes from
  dbVIEW_OPERATIONS = -368,   // [const char*] the operations that made the view, one to a line
  dbNULL_VALUE = -505,        // [const char*] the field's null value as text
};

// Field types, and the types that an expression's result can be asked for.
enum : int { dbINTEGER = 2, dbREAL = 3, dbTIME = 4, dbYEARDAY = 5, dbSTRING = 6 };

// Flag of dbsort: keep the first record of each run of equal keys.
inline constexpr int dbSORT_UNIQUE = 2;

// Opens the flat-file database with the path prefix `source` (DIR/NAME: table T is the file DIR/NAME.T; DIR/NAME
// itself, when it is a file, is a descriptor). "flat:" may stand before the prefix; "memory:NAME" is a source of this
// process. `mode` must be "r". Returns 0 and a handle of the whole database;
// -1 after a complaint when there is neither a descriptor nor any table file, the descriptor or schema is faulty, or
// the rows of some tables are those of CSS3.0 and of others those of KB Core, and no descriptor names a schema.
// Tables are loaded when first used. The caller ends it with dbclose.
TRIGLUB_API int dbopen(const char* source, const char* mode, Dbptr* db);

// Closes the session: every view, compiled expression and text that came from it is gone. The database's tables go with
// the last of its sessions. Returns 0, or -1 for a handle of no open session.
TRIGLUB_API int dbclose(Dbptr db);

// The handle moved to a table or view, field and record given by name; null or "" keeps the handle's member. A table
// starts with field and record dbALL. Records: a decimal number, "dbALL" or "dbNULL". `database` must be null or "".
// A name that is not found leaves that member and the ones after it dbINVALID, without a complaint; a table that
// refuses to load does so after its complaints.
TRIGLUB_API Dbptr dblookup(Dbptr db, const char* database, const char* table, const char* field, const char* record);

// Asks one of the codes above; text answers belong to the session. Returns 0; negative, the answer untouched, for a
// handle or code that has no answer. No complaint.
TRIGLUB_API int dbquery(Dbptr db, int code, void* answer);

// The longest text of a value that dbget and text_runs give, in bytes without a zero byte behind it.
inline constexpr std::size_t MAX_VALUE_BYTES = 1023;

// The value at the handle's field and record as text, trimmed, into `buffer`, which needs room for 1024 bytes (longer
// values are cut to MAX_VALUE_BYTES, never inside a character). Null: the schema's null text; else a flat file's own
// digits, and for a time that stands there as a date its epoch seconds as the schema writes them. 0, or dbINVALID (no
// complaint, buffer untouched) when the handle names no value.
TRIGLUB_API int dbget(Dbptr db, char* buffer);

// Reads fields of the current record: pairs of field name and address, ended by a null name. Text goes into a char
// array of the field's width + 1 (trimmed, cut to the width, ended by a zero byte; never cut inside a character),
// integers and dates into std::int64_t, reals and times into double. `table` null means names as the view resolves
// them, else they are that table's. Returns 0; negative at the first field that cannot be read (what came before is
// filled). No complaint.
TRIGLUB_API int dbgetv(Dbptr db, const char* table, ...) __attribute__((sentinel));

// The compiled form of an expression for dbex_eval, and of a condition for dbfind.
struct Expression;

// Compiles an expression over the fields of the handle's view, its result to be of `type` (dbINTEGER ... dbSTRING).
// 0 and the compiled form, which belongs to the view and lives as long; -1 after a complaint that shows the
// expression with a caret under the fault.
TRIGLUB_API int dbex_compile(Dbptr db, const char* expression, Expression** compiled, int type);

// Evaluates on the handle's record. The result is std::int64_t for dbINTEGER and dbYEARDAY, double for dbREAL and
// dbTIME, char* for dbSTRING (a new text, which the caller releases with free). 0; -1 when the evaluation fails
// (division by zero, domain, overflow, a text that is no number, no such record); the result is then untouched.
// No complaint.
TRIGLUB_API int dbex_eval(Dbptr db, Expression* compiled, int reserved, void* result);

// Compiles (once for each view and text) and evaluates. As the two above; on failure a number result is set to 0 and
// a text result to null.
TRIGLUB_API int dbex_evalstr(Dbptr db, const char* expression, int type, void* result);

// The nearest record at which the condition is true, from the handle's record (exclusive) forward (direction 0) or
// backward (1); a record at which it fails to evaluate does not match. *hook starts null and keeps the compiled
// condition for further searches with the same view and text; the caller releases it with dbfind_release.
// -1: it does not compile (after a complaint); -2: no record matches.
TRIGLUB_API std::int64_t dbfind(Dbptr db, const char* expression, int direction, Expression** hook);
TRIGLUB_API void dbfind_release(Expression** hook);

// The records at which the condition is true, in order. A record at which it fails to evaluate is not taken.
TRIGLUB_API Dbptr dbsubset(Dbptr view, const char* expression, const char* name);

// Joins view `b` (a base table, or a view of one table) to view `a`. Key lists by address: null addresses or lists mean
// the natural join on the keys the two share; else field i of the first list equals field i of the second (a key
// "begin::end" is a validity range and matches where the two overlap). `outer` non-zero keeps records of `a` without
// a match. Rows come in the order of `a`, then of `b`. When `joined_on` is not null it receives a new list of the
// keys used (release it with freetbl(list, free)). The view can be looked up under `name` (null: no name).
TRIGLUB_API Dbptr dbjoin(Dbptr a, Dbptr b, Tbl** keys_a, Tbl** keys_b, int outer, Tbl** joined_on, const char* name);

// Sorts by the keys (stable, by type, texts by bytes). Flags: 0 or dbSORT_UNIQUE.
TRIGLUB_API Dbptr dbsort(Dbptr view, Tbl* keys, int flags, const char* name);

// What dbprocess calls for a step it does not know; returns the view that results.
using DbprocessHandler = Dbptr (*)(Dbptr view, const char* step);

// Applies the steps in order, each to the result of the one before:
//   verbose                              trace each following step with elog_debug
//   dbopen TABLE                         start from a table
//   dbjoin [-o] TABLE [KEY ...]          join (outer with -o), natural or on KEY or VIEWKEY:TABLEKEY
//   dbsubset EXPRESSION
//   dbsort [-u] KEY ...                  -u keeps one record of each run of equal keys
// An unknown step goes to `handler`, or fails when that is null. A step that fails is reported and ends the list; the
// result's members are then dbINVALID.
TRIGLUB_API Dbptr dbprocess(Dbptr db, Tbl* steps, DbprocessHandler handler);

namespace triglub {

// For each record of the view the number (from 0) of the row of a base table behind it, NO_BASE_ROW where the row is
// absent through an outer join. Empty when the view does not have the table.
TRIGLUB_API std::vector<std::uint32_t> base_rows(Dbptr view, const char* table);
inline constexpr std::uint32_t NO_BASE_ROW = 0xFFFFFFFFu;

// As dbgetv for the handle's own field.
TRIGLUB_API int read_field(Dbptr db, void* variable);

// As dbex_eval for an expression compiled as dbSTRING, in place of what *text held and in its memory: for a program
// that reads many values. False when the evaluation fails; the text is then untouched.
TRIGLUB_API bool evaluate_text(Dbptr db, Expression* compiled, std::string* text);

// Records of a view, from `begin` to before `end`, at which a field has one text.
struct TextRun {
  std::string_view text;  // as dbget gives it; valid as long as the session
  std::uint32_t begin = 0;
  std::uint32_t end = 0;
};

// The runs of equal texts of the handle's field among the records from `begin` to before `end` (cut at the end of the
// view), in record order: neighbours differ. Empty for a handle that names no field.
TRIGLUB_API void text_runs(Dbptr db, std::uint64_t begin, std::uint64_t end, std::vector<TextRun>* runs);

// The records of the view, ascending, at which the handle's field has a text (as dbget gives it) that is `wanted`.
// Neighbours of one text are mostly asked about once. `wanted` is called by several threads at a time when set_threads
// says so, and must not throw. Empty for a handle that names no field.
using TextCondition = std::function<bool(std::string_view text)>;
TRIGLUB_API std::vector<std::uint32_t> records_with_text(Dbptr db, const TextCondition& wanted);

// A view of chosen rows of a base table or view, in the order given. Rows beyond the end make the result invalid.
TRIGLUB_API Dbptr view_of_records(Dbptr view, const std::vector<std::uint32_t>& records, const char* name);

// Frees a view made by an operation (a base table stays). Handles of it are invalid afterwards.
TRIGLUB_API void release_view(Dbptr view);

// Opens a database of the built-in schema whose tables have no rows: for looking names and kinds up, and compiling
// expressions, before there is a database. The caller ends it with dbclose.
TRIGLUB_API Dbptr open_empty();

// The file that a table was loaded from, empty when there is none; for messages.
TRIGLUB_API std::string table_path(Dbptr db, const char* table);

// The names of the tables that the database's schema knows, in schema order.
TRIGLUB_API std::vector<std::string> table_names(Dbptr db);

}  // namespace triglub

#endif
