// Schemas from parameter files, and where these are found.
#include "engine/schema/schema.h"

#include <sys/stat.h>

#include <algorithm>
#include <set>

#include "base/characters.h"
#include "base/number.h"
#include "base/words.h"
#include "engine/schema/builtin_schema.h"
#include "parfile/search.h"
#include "platform/database.h"
#include "platform/elog.h"
#include "platform/text.h"

namespace triglub {

namespace {

constexpr const char* kStandard = "css3.0";
constexpr const char* kKbCore = "kbcore";
constexpr int kMaxFieldWidth = 1000;  // a value must fit the 1024-byte buffers of dbget
constexpr std::size_t kMaxTables = 1000;
constexpr std::size_t kMaxFields = 1000;  // of a table, and of each of its keys

// The next word of a line, which a blank or a tab ends.
std::string_view next_word(std::string_view* rest) {
  *rest = trimmed(*rest);
  return take_word(rest, kBlanks);
}

std::vector<KeyField> parse_key(std::string_view text) {
  std::vector<KeyField> key;
  for (std::string_view word = next_word(&text); !word.empty(); word = next_word(&text)) {
    if (word != "-") key.push_back(parse_key_field(word));
  }
  return key;
}

bool is_type(std::string_view word) {
  return word.size() == 1 && std::string_view("tired").find(word) != std::string_view::npos;
}

// Reads the null of a number from its text; returns what is wrong with it, empty when nothing is.
std::string parse_null(FieldSchema* field) {
  if (field->storage() == Storage::integer && !parse_integer(field->null_text, &field->null_integer)) {
    return "the null of an integer or date must be an integer";
  }
  if (field->storage() == Storage::real && !parse_real(field->null_text, &field->null_real)) {
    return "the null of a real or time must be a number";
  }
  return "";
}

std::string detail_of(const FieldSchema& field) {
  const std::string unit = field.unit == "-" ? "" : ", " + field.unit;
  return static_cast<char>(field.type) + std::to_string(field.width) + unit + ", null " + field.null_text + ": " +
         field.description;
}

// Reads one field line; returns what is wrong with it, empty when nothing is.
std::string parse_field(std::string_view line, FieldSchema* field) {
  std::string_view rest = line;
  field->name = next_word(&rest);
  const std::string_view type = next_word(&rest);
  const std::string_view width = next_word(&rest);
  field->format = next_word(&rest);
  field->null_text = next_word(&rest);
  field->unit = next_word(&rest);
  field->description = trimmed(rest);
  if (field->unit.empty()) return "expected NAME TYPE WIDTH FORMAT NULL UNIT DESCRIPTION";
  if (!is_type(type)) return "the type must be one of t i r e d";
  field->type = static_cast<FieldType>(type[0]);
  std::int64_t bytes = 0;
  if (!parse_integer(width, &bytes) || bytes < 1 || bytes > kMaxFieldWidth) return "the width must be 1 to 1000";
  field->width = static_cast<int>(bytes);
  field->detail = detail_of(*field);
  if (field->type == FieldType::real) field->last_place = LastPlace::of_format(field->format);
  return parse_null(field);
}

// A text as messages show it: enough to find it by.
std::string shown(std::string_view text) {
  constexpr std::size_t kLongest = 100;
  return std::string(utf8_prefix(text, kLongest)) + (text.size() > kLongest ? "..." : "");
}

// What is wrong with one field of a table's keys; empty when nothing is.
std::string key_fault(const TableSchema& table, const KeyField& key) {
  const int begin = table.find(key.name);
  if (begin < 0) return "the key field '" + shown(key.name) + "' is no field of the table";
  if (!key.is_range()) return "";
  const int end = table.find(key.end);
  if (end < 0) return "the key field '" + shown(key.end) + "' is no field of the table";
  if (can_be_range(table.fields[static_cast<std::size_t>(begin)], table.fields[static_cast<std::size_t>(end)]))
    return "";
  return "the range '" + shown(key.name) + "::" + shown(key.end) + "' needs two dates or two times";
}

std::string keys_fault(const TableSchema& table) {
  for (const auto* keys : {&table.primary, &table.alternate, &table.foreign}) {
    if (keys->size() > kMaxFields) return "more than " + std::to_string(kMaxFields) + " fields in a key";
    for (const KeyField& key : *keys) {
      std::string fault = key_fault(table, key);
      if (!fault.empty()) return fault;
    }
  }
  return "";
}

bool is_longer(Tbl* list, std::size_t most) { return static_cast<std::size_t>(maxtbl(list)) > most; }

bool reject(Pf* pf, const std::string& table, const std::string& fault) {
  elog_complain(0, "schema %s: table '%s': %s", pf_path(pf), shown(table).c_str(), fault.c_str());
  return false;
}

std::string string_at(Pf* pf, const std::string& key) {
  const char* text = pfget_string(pf, key.c_str());
  return text == nullptr ? "" : text;
}

bool parse_table(Pf* pf, const std::string& name, TableSchema* table) {
  table->name = name;
  table->description = string_at(pf, name + "{description}");
  Tbl* lines = pfget_tbl(pf, (name + "{fields}").c_str());
  if (maxtbl(lines) == 0) return reject(pf, name, "no list of fields");
  if (is_longer(lines, kMaxFields)) return reject(pf, name, "more than " + std::to_string(kMaxFields) + " fields");
  std::set<std::string> names;
  for (long i = 0; i < maxtbl(lines); ++i) {
    FieldSchema field;
    const char* line = static_cast<const char*>(gettbl(lines, i));
    const std::string fault = parse_field(line, &field);
    if (!fault.empty()) return reject(pf, name, fault + ": '" + shown(line) + "'");
    if (!names.insert(field.name).second) return reject(pf, name, "field '" + shown(field.name) + "' is there twice");
    table->fields.push_back(std::move(field));
  }
  table->primary = parse_key(string_at(pf, name + "{primary}"));
  table->alternate = parse_key(string_at(pf, name + "{alternate}"));
  table->foreign = parse_key(string_at(pf, name + "{foreign}"));
  const std::string fault = keys_fault(*table);
  return fault.empty() || reject(pf, name, fault);
}

bool is_file(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

// The file of a schema in the data folders; empty when there is none.
std::string path_in_data_folders(const std::string& name) {
  for (const std::string& place : parfile::data_folders()) {
    std::string path = place;
    path.append("/schemas/").append(name).append(".pf");
    if (is_file(path)) return path;
  }
  return "";
}

std::shared_ptr<const Schema> read_schema(const std::string& path) {
  Pf* pf = nullptr;
  const int status = pfread(path.c_str(), &pf);
  if (status != 0) {
    if (status != -3) elog_complain(0, "schema %s: cannot be read", path.c_str());
    return nullptr;
  }
  auto schema = Schema::from(pf);
  pffree(pf);
  return schema;
}

std::shared_ptr<const Schema> compiled_in(const char* name) {
  Pf* pf = nullptr;
  if (pfparse(builtin_schema_text(name), name, &pf) != 0) elog_die(0, "the built-in schema cannot be read");
  auto made = Schema::from(pf);
  pffree(pf);
  return made;
}

}  // namespace

int FieldSchema::type_code() const {
  switch (type) {
    case FieldType::text:
      return dbSTRING;
    case FieldType::integer:
      return dbINTEGER;
    case FieldType::date:
      return dbYEARDAY;
    case FieldType::real:
      return dbREAL;
    case FieldType::time:
      return dbTIME;
  }
  return dbSTRING;
}

bool can_be_range(const FieldSchema& begin, const FieldSchema& end) {
  if (begin.storage() == Storage::text || end.storage() == Storage::text) return false;
  return (begin.type == FieldType::date) == (end.type == FieldType::date);
}

KeyField parse_key_field(std::string_view text) {
  const std::size_t colons = text.find("::");
  if (colons == std::string_view::npos) return {std::string(text), ""};
  return {std::string(text.substr(0, colons)), std::string(text.substr(colons + 2))};
}

int TableSchema::find(std::string_view field) const {
  for (std::size_t i = 0; i < fields.size(); ++i) {
    if (fields[i].name == field) return static_cast<int>(i);
  }
  return -1;
}

int Schema::find(std::string_view table) const {
  for (std::size_t i = 0; i < tables_.size(); ++i) {
    if (tables_[i].name == table) return static_cast<int>(i);
  }
  return -1;
}

std::shared_ptr<const Schema> Schema::from(Pf* pf) {
  Tbl* names = pfget_tbl(pf, "tables");
  if (maxtbl(names) == 0) {
    elog_complain(0, "schema %s: no list 'tables'", pf_path(pf));
    return nullptr;
  }
  if (is_longer(names, kMaxTables)) {
    elog_complain(0, "schema %s: more than %zu tables", pf_path(pf), kMaxTables);
    return nullptr;
  }
  auto schema = std::make_shared<Schema>();
  schema->path_ = pf_path(pf);
  for (long i = 0; i < maxtbl(names); ++i) {
    const std::string name = static_cast<const char*>(gettbl(names, i));
    TableSchema table;
    if (!parse_table(pf, name, &table)) return nullptr;
    if (schema->find(name) < 0) schema->tables_.push_back(std::move(table));
  }
  return schema;
}

std::shared_ptr<const Schema> Schema::builtin() {
  static const std::shared_ptr<const Schema> schema = compiled_in(kStandard);
  return schema;
}

std::shared_ptr<const Schema> Schema::standard() {
  const std::string path = path_in_data_folders(kStandard);
  return path.empty() ? builtin() : read_schema(path);
}

std::shared_ptr<const Schema> Schema::kb_core() {
  static const std::shared_ptr<const Schema> schema = compiled_in(kKbCore);
  const std::string path = path_in_data_folders(kKbCore);
  return path.empty() ? schema : read_schema(path);
}

std::shared_ptr<const Schema> Schema::named(const std::string& name, const std::string& folder) {
  if (name.find('/') != std::string::npos || name.ends_with(".pf")) {
    return read_schema(name.starts_with("/") ? name : folder + "/" + name);
  }
  if (is_file(folder + "/" + name + ".pf")) return read_schema(folder + "/" + name + ".pf");
  if (name == kStandard) return standard();
  if (name == kKbCore) return kb_core();
  const std::string path = path_in_data_folders(name);
  if (!path.empty()) return read_schema(path);
  elog_complain(0, "there is no schema '%s' (looked for schemas/%s.pf in TRIGLUB_PFPATH and %s)", name.c_str(),
                name.c_str(), parfile::data_folders().back().c_str());
  return nullptr;
}

}  // namespace triglub
