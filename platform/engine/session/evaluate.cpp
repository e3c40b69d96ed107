// The classic interface of expressions. Compiled forms are kept by the view, so that the same text over the same view
// is compiled once, however many records it is evaluated at.
#include <cstring>

#include "engine/session/compile.h"
#include "platform/elog.h"

namespace triglub {

std::unique_ptr<Expression> compile_expression(const View& view, const char* text, int type) {
  expression::Fault fault{};
  auto compiled = expression::Compiled::compile(text, view, type, &fault);
  if (compiled == nullptr) {
    elog_complain(0, "%s", fault.text.c_str());
    return nullptr;
  }
  auto made = std::make_unique<Expression>();
  made->compiled = std::move(compiled);
  made->type = type;
  return made;
}

namespace {

// The view's compiled form of a text; null after a complaint.
Expression* compiled_for(const View& view, const char* text, int type) {
  View::CompiledByText& compiled = view.compiled(type);
  const auto known = compiled.find(std::string_view(text));
  if (known != compiled.end()) return known->second.get();
  auto made = compile_expression(view, text, type);
  if (made == nullptr) return nullptr;
  return compiled.emplace(text, std::move(made)).first->second.get();
}

char* new_text(const std::string& text) {
  auto* copy = static_cast<char*>(std::malloc(text.size() + 1));
  if (copy != nullptr) std::memcpy(copy, text.c_str(), text.size() + 1);
  return copy;
}

bool evaluate(const Expression& expression, const expression::Record& record, void* result) {
  switch (expression.type) {
    case dbINTEGER:
    case dbYEARDAY:
      return expression.compiled->integer(record, static_cast<std::int64_t*>(result));
    case dbREAL:
    case dbTIME:
      return expression.compiled->real(record, static_cast<double*>(result));
    default: {
      std::string text;
      if (!expression.compiled->text(record, &text)) return false;
      *static_cast<char**>(result) = new_text(text);
      return true;
    }
  }
}

// What a caller that goes on after a failure finds.
void clear_result(int type, void* result) {
  switch (type) {
    case dbINTEGER:
    case dbYEARDAY:
      *static_cast<std::int64_t*>(result) = 0;
      break;
    case dbREAL:
    case dbTIME:
      *static_cast<double*>(result) = 0.0;
      break;
    default:
      *static_cast<char**>(result) = nullptr;
  }
}

}  // namespace

}  // namespace triglub

int dbex_compile(Dbptr db, const char* expression, Expression** compiled, int type) {
  const triglub::View* view = triglub::view_of(db);
  *compiled = nullptr;
  if (view == nullptr) {
    elog_complain(0, "an expression needs a view to be compiled for: %s", expression);
    return -1;
  }
  *compiled = triglub::compiled_for(*view, expression, type);
  return *compiled == nullptr ? -1 : 0;
}

int dbex_eval(Dbptr db, Expression* compiled, int /*reserved*/, void* result) {
  const triglub::View* view = triglub::view_of(db);
  if (compiled == nullptr || view == nullptr || !triglub::has_record(*view, db)) return -1;
  const triglub::ViewRecord record(*view, static_cast<std::uint32_t>(db.record));
  return triglub::evaluate(*compiled, record, result) ? 0 : -1;
}

bool triglub::evaluate_text(Dbptr db, const Expression* compiled, std::string* text) {
  const View* view = view_of(db);
  if (compiled == nullptr || view == nullptr || !has_record(*view, db)) return false;
  return compiled->compiled->text(ViewRecord(*view, static_cast<std::uint32_t>(db.record)), text);
}

int dbex_evalstr(Dbptr db, const char* expression, int type, void* result) {
  triglub::clear_result(type, result);
  Expression* compiled = nullptr;
  if (dbex_compile(db, expression, &compiled, type) != 0) return -1;
  return dbex_eval(db, compiled, 0, result);
}
