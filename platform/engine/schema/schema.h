// A schema: the tables that a database can have, their fields in file order, and their keys.
#ifndef TRIGLUB_ENGINE_SCHEMA_SCHEMA_H
#define TRIGLUB_ENGINE_SCHEMA_SCHEMA_H

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/half_place.h"
#include "platform/parfile.h"

namespace triglub {

enum class FieldType : char { text = 't', integer = 'i', real = 'r', time = 'e', date = 'd' };

// How the values of a field are held: texts as dictionary codes, integers and dates as 64-bit integers, the rest as
// doubles.
enum class Storage : char { text, integer, real };

struct FieldSchema {
  std::string name;
  FieldType type = FieldType::text;
  int width = 0;  // bytes
  std::string format;
  std::string null_text;
  std::int64_t null_integer = 0;  // for Storage::integer
  double null_real = 0.0;         // for Storage::real
  std::string unit;
  std::string description;
  std::string detail;    // one line on the field, for people
  LastPlace last_place;  // of reals; of times and all others nothing is known, for they are exact

  Storage storage() const {
    if (type == FieldType::text) return Storage::text;
    return type == FieldType::integer || type == FieldType::date ? Storage::integer : Storage::real;
  }
  int type_code() const;  // dbINTEGER ... dbSTRING
};

// True when two fields can be the begin and the end of a range of validity: both dates, or both numbers of another
// type.
bool can_be_range(const FieldSchema& begin, const FieldSchema& end);

// One field of a key, or the two of a range of validity.
struct KeyField {
  std::string name;
  std::string end;  // empty unless a range

  bool is_range() const { return !end.empty(); }
  friend bool operator==(const KeyField&, const KeyField&) = default;
};

// "name" or "begin::end".
KeyField parse_key_field(std::string_view text);

struct TableSchema {
  std::string name;
  std::string description;
  std::vector<FieldSchema> fields;
  std::vector<KeyField> primary;
  std::vector<KeyField> alternate;
  std::vector<KeyField> foreign;

  // The index of a field by its bare name; -1 when there is none.
  int find(std::string_view field) const;
};

class Schema {
 public:
  // The CSS3.0 schema that is compiled in.
  static std::shared_ptr<const Schema> builtin();
  // The CSS3.0 schema of the data folders, schemas/css3.0.pf in TRIGLUB_PFPATH or where it is installed, else the one
  // that is compiled in. Null after a complaint.
  static std::shared_ptr<const Schema> standard();
  // The KB Core dialect of CSS3.0, found likewise: schemas/kbcore.pf.
  static std::shared_ptr<const Schema> kb_core();
  // Reads a schema from a parameter file object; null after a complaint that names what is wrong.
  static std::shared_ptr<const Schema> from(Pf* pf);
  // The schema of that name: a path when it holds '/' or ends in ".pf" (relative to `folder`), else NAME.pf in
  // `folder`, schemas/NAME.pf in the data folders, else the one that is compiled in under that name, css3.0 or kbcore.
  // Null after a complaint.
  static std::shared_ptr<const Schema> named(const std::string& name, const std::string& folder);

  // The file that it was read from, empty for none.
  const std::string& path() const { return path_; }
  const std::vector<TableSchema>& tables() const { return tables_; }
  // The index of a table by name; -1 when there is none.
  int find(std::string_view table) const;

 private:
  std::vector<TableSchema> tables_;
  std::string path_;
};

}  // namespace triglub

#endif
