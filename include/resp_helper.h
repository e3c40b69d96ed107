// Instrument responses as StationXML: the cache of parsed response files, the writer of one stage row, and the
// writers of the filter blocks.
#ifndef TRIGLUB_RESP_HELPER_H
#define TRIGLUB_RESP_HELPER_H

#include <map>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>

#include "platform/database.h"
#include "platform/export.h"
#include "platform/response.h"
#include "platform/response_reading.h"

namespace triglub {

// The response file that a stage row names with its fields dir and dfile.
struct TRIGLUB_API StageFile {
  std::string_view dir;
  std::string_view dfile;

  // False for a row without a filter, whose dfile is null.
  bool is_named() const { return dfile != "-"; }
  // False for what a ResponseCache does not look for: the null of either field is a dash, and whatever else begins with
  // one says "no file" there as well.
  bool is_looked_for() const { return !dir.starts_with('-') && !dfile.starts_with('-'); }
  // "DIR/DFILE", as simplefile().
  std::string name() const;
};

class StageRow;

}  // namespace triglub

// The file name of a stage row that names no response file: null directory, slash, null file.
TRIGLUB_API extern const std::string EMPTYFILENAME;

// "DIR/DFILE", as they are.
TRIGLUB_API std::string simplefile(std::string dir, std::string dfile);

// The text of a field of the handle's record, or `fallback` when it cannot be read. Never fails.
TRIGLUB_API std::string dbget_stringv(Dbptr db, std::string field, std::string fallback);

// The parsed response files of a stage table, one entry a distinct file, by "DIR/DFILE". Owns the responses. Threads
// may share a cache to which nothing is added any more.
class TRIGLUB_API ResponseCache {
 public:
  // Reads every distinct response file that the rows of `table` name (in practice "stage"; the fields read are always
  // stage.dir and stage.dfile). Files that cannot be read are left out without a word. `table` must not be empty
  // (assertion). Throws dbquery_error when the table's records cannot be counted.
  ResponseCache(Dbptr db, std::string table);
  // The same with files outside of the reach left out, and what reading the others gave kept for failure().
  ResponseCache(Dbptr db, std::string table, triglub::ResponseReach reach);
  ~ResponseCache();
  ResponseCache(const ResponseCache&) = delete;
  ResponseCache& operator=(const ResponseCache&) = delete;

  // The table's directory, a slash, the name; an unknown directory leaves the slash.
  std::string fullfile(std::string name) const;
  bool exists(std::string dir, std::string dfile) const;
  bool exists(std::string name) const;
  // The response, which belongs to the cache; null when there is none.
  Response* get(std::string dir, std::string dfile) const;
  Response* get(std::string name) const;
  // What reading a file gave that is not there for it; null for one that is there, or that was not looked for, and
  // always without a reach.
  const triglub::ResponseReading* failure(const std::string& name) const;
  // Reads fullfile(name) and keeps it. False for EMPTYFILENAME, a name already there, a file that cannot be read.
  bool add(std::string name);

 private:
  void read_files_of(Dbptr db, const std::string& table);
  bool add_by_get_response(std::string name);
  bool add_within(std::string name, triglub::ResponseReach reach);

  std::map<std::string, Response*> responses_;
  std::map<std::string, triglub::ResponseReading> failures_;
  std::string base_directory_;
  std::optional<triglub::ResponseReach> reach_;  // nothing: files are read by get_response
};

// The StationXML of one stage row. Made at a record, asked for its texts, destroyed:
//
//     XmlResponse writer(record, "stage");
//     out << writer.stage2xml(-1) << writer.stagegain_as_xml();
//
// For callers: documents are written by the same rows without a copy of their texts.
//
// The units chain across writers: a null input unit is the output unit of the writer made before. That chain, and the
// buffers that units and gain type are read into, are shared by the whole process and never reset by the library.
class TRIGLUB_API XmlResponse {
 public:
  // REQUIRES: set_cache was called, if the row names a file. Throws std::runtime_error
  // 'problems with response file "NAME"' when the row names a file that the cache does not hold.
  XmlResponse(Dbptr db, std::string table);
  ~XmlResponse();
  XmlResponse(const XmlResponse& other);
  XmlResponse& operator=(const XmlResponse& other);

  // The cache must outlive every later use; it stays until the next call. Its responses must not change meanwhile.
  static void set_cache(ResponseCache& cache);
  // Puts the unit chain and the field buffers back to where a new process has them, for programs that write
  // documents which must not depend on each other.
  static void forget_units();

  // Sets the file name from the row; true when it names a file.
  bool record_to_filename(Dbptr db, std::string table);
  // Finds the file in the cache; true when it is there.
  bool load_response();
  // 0 without a response, else its group count, which must be 1:
  // throws std::runtime_error "expected single group. instead got N".
  int stagecount() const;
  // The filter block and the decimation block; -1 means the one stage there is.
  std::string stage2xml(int stage);
  // Writes what stage2xml gives, without a copy of the whole.
  void write_stage(std::ostream& out, int stage);
  std::string stagegain_as_xml();
  std::string decimation_as_xml();
  std::string decimation_as_xml(Fir* fir);

 private:
  std::unique_ptr<triglub::StageRow> row_;
};

// The blocks <PolesZeros> and <Coefficients>. Units are inserted as they are.
TRIGLUB_API std::string paz_as_xml(Paz* paz, std::string input_units, std::string output_units);
TRIGLUB_API std::string fir_as_xml(Fir* fir, std::string input_units, std::string output_units);
// A fixed comment: tables are not converted.
TRIGLUB_API std::string fap2_as_xml(Fap2* fap2, std::string input_units, std::string output_units);

// The delay of the filter in seconds: the stated one, else that of a symmetric filter (half its length), else its
// whole length. 0 for a filter without numerators and without a stated delay.
TRIGLUB_API double get_fir_delay(Fir* fir);

#endif
