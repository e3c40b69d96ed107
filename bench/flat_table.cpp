#include "flat_table.h"

#include <array>
#include <charconv>
#include <stdexcept>
#include <utility>

namespace triglub_bench {

namespace {

constexpr std::size_t kHeldBytes = 1 << 20;

[[noreturn]] void refuse(std::string_view value, std::size_t width) {
  throw std::length_error("'" + std::string(value) + "' is wider than " + std::to_string(width));
}

}  // namespace

FlatTable::FlatTable(std::string path) : path_(std::move(path)), file_(path_, std::ios::binary) {
  if (!file_) throw std::runtime_error("cannot make " + path_);
  held_.reserve(kHeldBytes + 1024);
}

FlatTable& FlatTable::text(std::string_view value, std::size_t width) {
  if (value.size() > width) refuse(value, width);
  begin_field();
  held_.append(value).append(width - value.size(), ' ');
  return *this;
}

FlatTable& FlatTable::integer(long value, std::size_t width) {
  std::array<char, 24> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value);
  return number({digits.data(), end.ptr}, width);
}

FlatTable& FlatTable::real(double value, std::size_t width, int decimals) {
  std::array<char, 64> digits{};
  const auto end =
      std::to_chars(digits.data(), digits.data() + digits.size(), value, std::chars_format::fixed, decimals);
  return number({digits.data(), end.ptr}, width);
}

void FlatTable::end_row() {
  held_.push_back('\n');
  row_is_empty_ = true;
  if (held_.size() >= kHeldBytes) flush();
}

void FlatTable::close() {
  flush();
  file_.close();
  if (!file_) throw std::runtime_error("cannot write " + path_);
}

FlatTable& FlatTable::number(std::string_view digits, std::size_t width) {
  if (digits.size() > width) refuse(digits, width);
  begin_field();
  held_.append(width - digits.size(), ' ').append(digits);
  return *this;
}

void FlatTable::begin_field() {
  if (!row_is_empty_) held_.push_back(' ');
  row_is_empty_ = false;
}

void FlatTable::flush() {
  file_.write(held_.data(), static_cast<std::streamsize>(held_.size()));
  held_.clear();
}

}  // namespace triglub_bench
