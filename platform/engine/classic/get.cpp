// dbget, dbgetv and read_field: values of a record at addresses of the caller's.
#include <cstdarg>
#include <cstring>

#include "engine/classic/handle.h"
#include "platform/text.h"

namespace triglub {

namespace {

void copy_text(std::string_view text, std::size_t limit, char* to) {
  const std::string_view kept = utf8_prefix(text, limit);
  std::memcpy(to, kept.data(), kept.size());
  to[kept.size()] = '\0';
}

// A field of the view by name, seen as a field of `table` when that is given.
int find_named(const View& view, const char* table, const char* name) {
  if (table == nullptr || *table == '\0' || std::strchr(name, '.') != nullptr) return view.find_field(name);
  return view.find_field(std::string(table) + "." + name);
}

void fill(const View& view, const ViewField& field, std::uint32_t record, void* variable) {
  const FieldSchema& schema = view.schema_of(field);
  switch (schema.storage()) {
    case Storage::text:
      copy_text(view.text(field, record), static_cast<std::size_t>(schema.width), static_cast<char*>(variable));
      break;
    case Storage::integer:
      *static_cast<std::int64_t*>(variable) = view.integer(field, record);
      break;
    case Storage::real:
      *static_cast<double*>(variable) = view.real(field, record);
      break;
  }
}

void fill_null(const FieldSchema& schema, void* variable) {
  switch (schema.storage()) {
    case Storage::text:
      copy_text(schema.null_text, static_cast<std::size_t>(schema.width), static_cast<char*>(variable));
      break;
    case Storage::integer:
      *static_cast<std::int64_t*>(variable) = schema.null_integer;
      break;
    case Storage::real:
      *static_cast<double*>(variable) = schema.null_real;
      break;
  }
}

// REQUIRES: the record is dbNULL or one of the view's.
void read_value(const View& view, std::int64_t number, std::int64_t record, void* variable) {
  const ViewField& field = view.fields()[static_cast<std::size_t>(number)];
  if (record == dbNULL) {
    fill_null(view.schema_of(field), variable);
  } else {
    fill(view, field, static_cast<std::uint32_t>(record), variable);
  }
}

bool names_record(const View* view, const Dbptr& db) {
  return view != nullptr && (db.record == dbNULL || has_record(*view, db));
}

}  // namespace

int read_field(Dbptr db, void* variable) {
  const View* view = view_of(db);
  if (!names_record(view, db) || !view->has_field(db.field)) return static_cast<int>(dbINVALID);
  read_value(*view, db.field, db.record, variable);
  return 0;
}

}  // namespace triglub

int dbget(Dbptr db, char* buffer) {
  using namespace triglub;
  const View* view = view_of(db);
  if (view == nullptr || !view->has_field(db.field)) return static_cast<int>(dbINVALID);
  const ViewField& field = view->fields()[static_cast<std::size_t>(db.field)];
  if (db.record == dbNULL) {
    copy_text(view->schema_of(field).null_text, MAX_VALUE_BYTES, buffer);
    return 0;
  }
  if (!has_record(*view, db)) return static_cast<int>(dbINVALID);
  copy_text(view->text(field, static_cast<std::uint32_t>(db.record)), MAX_VALUE_BYTES, buffer);
  return 0;
}

int dbgetv(Dbptr db, const char* table, ...) {
  using namespace triglub;
  const View* view = view_of(db);
  if (!names_record(view, db)) return static_cast<int>(dbINVALID);
  va_list pairs;
  va_start(pairs, table);
  int status = 0;
  // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized): started above; the analyzer loses sight of that
  for (const char* name = va_arg(pairs, const char*); name != nullptr; name = va_arg(pairs, const char*)) {
    void* variable = va_arg(pairs, void*);
    const int index = find_named(*view, table, name);
    if (index < 0) {
      status = static_cast<int>(dbINVALID);
      break;
    }
    read_value(*view, index, db.record, variable);
  }
  va_end(pairs);
  return status;
}
