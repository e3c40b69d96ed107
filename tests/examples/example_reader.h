// A plain reader of the example database, which shares nothing with the engine: what it finds in the files is held
// against what the files should say, not against what the engine makes of them.
#ifndef TRIGLUB_TESTS_EXAMPLES_EXAMPLE_READER_H
#define TRIGLUB_TESTS_EXAMPLES_EXAMPLE_READER_H

#include <complex>
#include <cstddef>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace example {

struct Field {
  std::string name;
  char type = 't';  // t text, i integer, d day, r real, e epoch seconds, g real in the general format
  std::size_t width = 0;
  int decimals = 0;
};

// A row: field name to the field's columns as they stand, blanks included.
using Row = std::map<std::string, std::string>;

std::filesystem::path folder();  // of the database and its response files
std::string read_file(const std::filesystem::path& path);

std::vector<std::string> table_names();
std::vector<Field> fields(const std::string& table);
std::vector<std::string> lines(const std::string& table);
const std::vector<Row>& rows(const std::string& table);  // read once

std::string text(const Row& row, const std::string& field);  // trailing blanks cut
double value(const Row& row, const std::string& field);
long day(const Row& row, const std::string& field);  // of a time field: its UTC day as yyyyddd, -1 for no end

// The rows of a table that share the fields' texts with `row`, in table order.
std::vector<Row> matching(const std::string& table, const Row& row, const std::vector<std::string>& names);

struct Filter {
  std::string type;
  double rate_or_factor = 0;           // sampling rate of a fir, normalization factor of a paz
  std::optional<double> beside;        // what stands beside it: delay or normalization frequency
  std::vector<std::vector<double>> a;  // poles, numerators or table rows
  std::vector<std::vector<double>> b;  // zeros or denominators
};

Filter read_filter(const std::filesystem::path& path);
double amplitude(const Filter& paz, double hz);  // |H(f)|, the normalization factor included

}  // namespace example

#endif
