// Database access for the writers: checked queries, evaluation of expressions and typed values, conversions of the
// platform's containers to strings.
//
// The forms that take a field name or an expression as text look it up or compile it at each call. They are for
// callers: documents are written by values that are bound to their view once and give the same.
#ifndef TRIGLUB_DBHELPER_H
#define TRIGLUB_DBHELPER_H

#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "elements.h"
#include "platform/containers.h"
#include "platform/database.h"
#include "platform/export.h"
#include "platform/parfile.h"

// A failed query of the database.
class TRIGLUB_API dbquery_error : public std::runtime_error {
 public:
  explicit dbquery_error(const std::string& message);
  ~dbquery_error() override;
  // Always "invalid response from querying the database": programs print it and know it; the message given is kept
  // in the base only.
  const char* what() const noexcept override;
};

// --- checked queries ---------------------------------------------------------------------------------------------

// A text answer; "" when the status (returned) is negative.
TRIGLUB_API int dbquery(Dbptr db, int code, std::string& value);
// Number of records, of fields, and the type of the handle's field (dbINTEGER ... dbSTRING). Each throws dbquery_error.
TRIGLUB_API long db_nrecs(Dbptr db);
TRIGLUB_API long db_nfields(Dbptr db);
TRIGLUB_API int db_getfieldtype(Dbptr db);
// The handle with its field set. Throws std::runtime_error "db field [FIELD] not found".
TRIGLUB_API Dbptr db_setfield(Dbptr db, std::string field);
// The trimmed text of a field of the handle's record. Throws as db_setfield, and dbquery_error when the value cannot
// be read; the second form gives `fallback` instead of the latter.
TRIGLUB_API std::string db_fieldlookup(Dbptr db, std::string field);
TRIGLUB_API std::string db_fieldlookup(Dbptr db, std::string field, std::string fallback);
// The field's null value as text; "" when it cannot be had. Remembered for the process by the field's position alone,
// so fields at the same position of two tables share the answer of the first one asked.
TRIGLUB_API std::string get_nullvalue(Dbptr db);
TRIGLUB_API std::string get_nullvalue(Dbptr db, std::string field);
// True when any member of the handle is dbINVALID.
TRIGLUB_API bool any_dbinvalid(const Dbptr& db);
// True when the view has no records. Throws as db_nrecs.
TRIGLUB_API bool is_empty(const Dbptr& db);
// The view's fields, one a line, to the log (notify), and how the view was made (debug). Never throws.
TRIGLUB_API void dumpViewFieldnames(Dbptr db);

// --- expressions and dates ---------------------------------------------------------------------------------------

// "2599-12-31T23:59:59.999": a time that is not set.
TRIGLUB_API extern const std::string DATETIME_ENDVAL;
// The parameter file's date formats, for the program that embeds the library; the library itself does not read them.
TRIGLUB_API extern std::string date_xml_with_ms_format;
TRIGLUB_API extern std::string date_xml_format;

// Sets the two formats from the parameters "epochtime_xmlstring_format" and "jdate_xmlstring_format".
TRIGLUB_API void date_formats_init(Pf* pf);
// A number (type dbINTEGER, dbREAL, dbTIME or dbYEARDAY) as text: six significant digits, or an integer's digits. A
// failed evaluation is complained about and gives 0. Any other type ends the process.
TRIGLUB_API std::string eval_expr(Dbptr db, const char* expr, int type);
// An epoch time as YYYY-MM-DDTHH:MM:SS.mmm; DATETIME_ENDVAL for a negative one; "" when the expression does not compile
// and "0000-00-00T00:00:00ERR" when it does not evaluate (after a complaint).
// Throws std::runtime_error "invalid db field" for a handle with a member that is not set.
TRIGLUB_API std::string eval_epoch_expr(Dbptr db, const char* expr);
// A year-day as YYYY-MM-DDTHH:MM:SS; DATETIME_ENDVAL for days up to 1970001; "0000-00-00T00:00:00ERR" (after a
// complaint) when the expression does not compile or evaluate.
TRIGLUB_API std::string eval_jday_expr(Dbptr db, const char* expr);
// A text, trimmed. Throws std::runtime_error "failure to eval_str_expr %s" with the expression behind it.
TRIGLUB_API std::string eval_str_expr(Dbptr db, const char* expr);

// --- typed values ------------------------------------------------------------------------------------------------

// The type keywords and what they are filed under. Grows by every unknown keyword met, filed under deg_lat.
TRIGLUB_API extern std::map<std::string, GroupType> INTERPRETERS;

// The text of a value of the element tree: `type` is a keyword ("deg_lat", "float", "epoch", ...), `expr` a field name
// or an expression, `db` a record. Nulls of the angle keywords give "<!--null-->0.0". A keyword that is not known is
// taken as "deg_lat" and remembered as such. Throws what the lookups and evaluations above throw, std::invalid_argument
// and std::out_of_range for texts that are no numbers, and std::logic_error for "force_lookup".
TRIGLUB_API std::string eval_as_type(Dbptr db, const char* expr, std::string type);
// Where "while value > high, subtract step", and then "while value < low, add step" ends, rounding included, in a time
// that hardly grows with the number of steps. Steps that would never end do so where they change nothing any more, as
// for a number so large that they are lost in its rounding; with a step of 0 or less they are not begun.
TRIGLUB_API double bring_into_range(double value, double low, double high, double step);
// Degrees in range, six decimals. Latitudes wrap by 180 degrees. Each throws what std::stod throws.
TRIGLUB_API std::string as_valid_lat(std::string text);
TRIGLUB_API std::string as_valid_lon(std::string text);
TRIGLUB_API std::string as_valid_az(std::string text);
// The string at `key` of the parameter file `pfname`, read anew at each call; "" when either is missing.
TRIGLUB_API std::string get_from_other_pf(std::string pfname, std::string key);

// --- conversions -------------------------------------------------------------------------------------------------

// A new copy of the text, which the caller releases with free; null when there is no memory.
TRIGLUB_API char* str_dup(const char* s);
TRIGLUB_API char* cpcast(std::string s);
// The text, trimmed in place. Null gives "", or, when required, throws std::domain_error.
TRIGLUB_API std::string as_string(void* p, bool required);
// Element i. Throws std::range_error "Index [I] out of range. Tbl has N elements".
TRIGLUB_API std::string gettbl_string(Tbl* t, unsigned long i);
// The value of a key; "" when the key is absent.
TRIGLUB_API std::string getarr_string(rbtree* a, std::string key);
// All entries of an array of texts. A null array is complained about and gives an empty map.
TRIGLUB_API std::map<std::string, std::string> arr2map(rbtree* a);
// KEY=~VALUE for each entry, keys in descending byte order, in a new list of texts made with cpcast.
TRIGLUB_API Tbl* arr2expr(rbtree* a);
// The string at a key; a missing one is complained about and gives "".
TRIGLUB_API std::string pfget_string(Pf* pf, std::string key);
// One-line dumps for the log.
TRIGLUB_API std::string as_string(std::map<std::string, std::string> m, std::string name);
TRIGLUB_API std::string as_string(std::vector<std::string> v, std::string name);
TRIGLUB_API std::string as_string(Tbl* t);
// "db(DATABASE.TABLE.FIELD.RECORD)".
TRIGLUB_API std::string as_string(Dbptr db);

#endif
