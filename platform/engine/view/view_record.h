// One record of a view, as expressions see it.
#ifndef TRIGLUB_ENGINE_VIEW_VIEW_RECORD_H
#define TRIGLUB_ENGINE_VIEW_VIEW_RECORD_H

#include <cstdint>
#include <string_view>

#include "engine/expression/expression.h"
#include "engine/view/view.h"

namespace triglub {

// REQUIRES: the view outlives it.
class ViewRecord final : public expression::Record {
 public:
  ViewRecord(const View& view, std::uint32_t record) : view_(view), record_(record) {}
  void move_to(std::uint32_t record) { record_ = record; }

  std::int64_t integer(int field) const override { return view_.integer(at(field), record_); }
  double real(int field) const override { return view_.real(at(field), record_); }
  std::string_view text(int field) const override { return view_.text(at(field), record_); }
  bool is_null(int field) const override { return view_.is_null(at(field), record_); }
  double doubt(int field) const override { return view_.doubt(at(field), record_); }

 private:
  const ViewField& at(int field) const { return view_.fields()[static_cast<std::size_t>(field)]; }
  const View& view_;
  std::uint32_t record_;
};

}  // namespace triglub

#endif
