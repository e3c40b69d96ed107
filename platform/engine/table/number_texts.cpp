// Texts are made a column at a time and kept by the table, so that they live as long as it does.
#include "engine/table/number_texts.h"

#include <optional>
#include <string>

#include "engine/expression/format.h"
#include "engine/expression/numbers.h"
#include "engine/table/table.h"
#include "platform/text.h"

namespace triglub {

namespace {

using expression::Format;

class MadeTexts : public NumberTexts {
 public:
  std::string_view text(const Table& table, std::size_t field, std::uint32_t row) const override {
    const TextCodes codes = table.text_codes(field);
    return (*codes.dictionary)[codes[row]];
  }

  CodedTexts texts(const Table& table, std::size_t field) const override {
    CodedTexts made;
    made.dictionary.intern(table.schema().fields[field].null_text);
    made.codes.reserve(table.row_count());
    std::string text;
    for (std::uint32_t row = 0; row < table.row_count(); ++row) {
      if (table.is_null(field, row)) {
        made.codes.push_back(kNullCode);
        continue;
      }
      write(table, field, row, &text);
      made.codes.push_back(made.dictionary.intern(trimmed(text)));
    }
    return made;
  }

 private:
  virtual void write(const Table& table, std::size_t field, std::uint32_t row, std::string* text) const = 0;
};

class ShortestTexts final : public MadeTexts {
 public:
  std::unique_ptr<const NumberTexts> of_rows(const std::vector<std::uint32_t>& /*rows*/) const override {
    return shortest_texts();
  }

 private:
  void write(const Table& table, std::size_t field, std::uint32_t row, std::string* text) const override {
    expression::NumberBuffer buffer;
    if (table.schema().fields[field].storage() == Storage::integer) {
      text->assign(expression::text_of(table.integer(field, row), &buffer));
    } else {
      text->assign(expression::text_of(table.real(field, row), &buffer));
    }
  }
};

// Nothing when the format is not one of a number of that storage.
std::optional<Format> format_of(const FieldSchema& field) {
  std::string text = field.format;
  std::erase(text, 'l');  // "%8ld" tells printf the size of its argument
  expression::FormatFault fault;
  auto format = Format::read(text, &fault);
  const auto kind = field.storage() == Storage::integer ? expression::Kind::integer : expression::Kind::real;
  if (!format || format->kind() != kind) return std::nullopt;
  return format;
}

class FormattedTexts final : public MadeTexts {
 public:
  explicit FormattedTexts(const TableSchema& schema) : schema_(schema), plain_(shortest_texts()) {
    for (const FieldSchema& field : schema.fields) formats_.push_back(format_of(field));
  }

  CodedTexts texts(const Table& table, std::size_t field) const override {
    return formats_[field] ? MadeTexts::texts(table, field) : plain_->texts(table, field);
  }

  std::unique_ptr<const NumberTexts> of_rows(const std::vector<std::uint32_t>& /*rows*/) const override {
    return texts_by_format(schema_);
  }

 private:
  void write(const Table& table, std::size_t field, std::uint32_t row, std::string* text) const override {
    if (table.schema().fields[field].storage() == Storage::integer) {
      formats_[field]->write(table.integer(field, row), text);
    } else {
      formats_[field]->write(table.real(field, row), text);
    }
  }

  const TableSchema& schema_;
  std::vector<std::optional<Format>> formats_;  // by field
  std::unique_ptr<const NumberTexts> plain_;
};

}  // namespace

std::unique_ptr<const NumberTexts> texts_by_format(const TableSchema& schema) {
  return std::make_unique<FormattedTexts>(schema);
}

std::unique_ptr<const NumberTexts> shortest_texts() { return std::make_unique<ShortestTexts>(); }

}  // namespace triglub
