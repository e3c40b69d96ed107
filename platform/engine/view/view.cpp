// Names and fields of a view; the values are read in the header, where callers can inline them.
#include "engine/view/view.h"

namespace triglub {

View::View(std::vector<ViewTable> tables, std::uint32_t record_count, std::string operations)
    : tables_(std::move(tables)), record_count_(record_count), operations_(std::move(operations)) {
  for (std::size_t t = 0; t < tables_.size(); ++t) {
    const std::vector<FieldSchema>& fields = tables_[t].table->schema().fields;
    for (std::size_t f = 0; f < fields.size(); ++f) {
      // The first table that has the name keeps it.
      field_by_bare_name_.try_emplace(fields[f].name, static_cast<int>(fields_.size()));
      fields_.push_back({t, f});
    }
  }
}

int View::find_table(std::string_view name) const {
  for (std::size_t t = 0; t < tables_.size(); ++t) {
    if (tables_[t].table->schema().name == name) return static_cast<int>(t);
  }
  return -1;
}

int View::find_field(std::string_view name) const {
  const std::size_t point = name.find('.');
  if (point == std::string_view::npos) {
    const auto entry = field_by_bare_name_.find(name);
    return entry == field_by_bare_name_.end() ? -1 : entry->second;
  }
  const int table = find_table(name.substr(0, point));
  if (table < 0) return -1;
  const int field = tables_[static_cast<std::size_t>(table)].table->schema().find(name.substr(point + 1));
  if (field < 0) return -1;
  int before = 0;
  for (int t = 0; t < table; ++t) {
    before += static_cast<int>(tables_[static_cast<std::size_t>(t)].table->schema().fields.size());
  }
  return before + field;
}

std::optional<expression::Field> View::find(std::string_view name) const {
  const int index = find_field(name);
  if (index < 0) return std::nullopt;
  const FieldSchema& schema = schema_of(fields_[static_cast<std::size_t>(index)]);
  switch (schema.storage()) {
    case Storage::text:
      return expression::Field{index, expression::Kind::text};
    case Storage::integer:
      return expression::Field{index, expression::Kind::integer};
    case Storage::real:
      return expression::Field{index, expression::Kind::real, schema.last_place.is_known()};
  }
  return std::nullopt;
}

const FieldRuns& View::runs(std::size_t field) const {
  return runs_.get(field, [&] { return FieldRuns(*this, fields_[field]); });
}

}  // namespace triglub
