// Flat-file tables as they are written: rows of fields of fixed width, one blank between fields.
//
//     FlatTable affiliation("/tmp/made/made.affiliation");
//     affiliation.text("N100", 8).text("AAAAA", 6).real(1.7e9, 17, 5).end_row();
//     affiliation.close();
#ifndef TRIGLUB_BENCH_FLAT_TABLE_H
#define TRIGLUB_BENCH_FLAT_TABLE_H

#include <fstream>
#include <string>
#include <string_view>

namespace triglub_bench {

class FlatTable {
 public:
  // Throws std::runtime_error when the file cannot be made.
  explicit FlatTable(std::string path);

  // One field each, `width` bytes wide: texts at the left, numbers at the right. Throw std::length_error for a value
  // that is wider.
  FlatTable& text(std::string_view value, std::size_t width);
  FlatTable& integer(long value, std::size_t width);
  FlatTable& real(double value, std::size_t width, int decimals);
  void end_row();

  // Writes what is still held back. Throws std::runtime_error when the file could not be written.
  void close();

 private:
  FlatTable& number(std::string_view digits, std::size_t width);
  void begin_field();
  void flush();

  std::string path_;
  std::ofstream file_;
  std::string held_;  // rows that are not yet written
  bool row_is_empty_ = true;
};

}  // namespace triglub_bench

#endif
