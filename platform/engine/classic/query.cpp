// dbquery: what a view and its fields tell of themselves.
#include "engine/classic/handle.h"

namespace triglub {

namespace {

constexpr int kNoAnswer = -1;

int answer_text(const std::string& text, void* answer) {
  *static_cast<const char**>(answer) = text.c_str();
  return 0;
}

int answer_count(std::size_t count, void* answer) {
  *static_cast<long*>(answer) = static_cast<long>(count);
  return 0;
}

int query_view(const View& view, int code, void* answer) {
  switch (code) {
    case dbRECORD_COUNT:
      return answer_count(view.record_count(), answer);
    case dbFIELD_COUNT:
      return answer_count(view.fields().size(), answer);
    case dbTABLE_DIRNAME:
      return answer_text(view.tables().front().table->directory(), answer);
    case dbVIEW_OPERATIONS:
      return answer_text(view.operations(), answer);
    default:
      return kNoAnswer;
  }
}

int query_field(const View& view, const ViewField& field, int code, void* answer) {
  const FieldSchema& schema = view.schema_of(field);
  switch (code) {
    case dbFIELD_TYPE:
      *static_cast<int*>(answer) = schema.type_code();
      return 0;
    case dbFIELD_NAME:
      return answer_text(schema.name, answer);
    case dbFIELD_DETAIL:
      return answer_text(schema.detail, answer);
    case dbFIELD_BASE_TABLE:
      return answer_text(view.table_of(field).schema().name, answer);
    case dbNULL_VALUE:
      return answer_text(schema.null_text, answer);
    case dbTABLE_DIRNAME:
      return answer_text(view.table_of(field).directory(), answer);
    default:
      return query_view(view, code, answer);
  }
}

}  // namespace

}  // namespace triglub

int dbquery(Dbptr db, int code, void* answer) {
  const triglub::View* view = triglub::view_of(db);
  if (view == nullptr || answer == nullptr) return triglub::kNoAnswer;
  const triglub::ViewField* field = triglub::field_of(*view, db);
  return field == nullptr ? triglub::query_view(*view, code, answer)
                          : triglub::query_field(*view, *field, code, answer);
}
