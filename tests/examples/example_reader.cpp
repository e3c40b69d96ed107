#include "examples/example_reader.h"

#include <chrono>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <numbers>
#include <sstream>
#include <stdexcept>
#include <utility>

namespace example {

namespace {

const std::map<std::string, std::string>& schema() {
  static const std::map<std::string, std::string> tables = {
      {"site",
       "sta t6 ondate d8 offdate d8 lat r9.4 lon r9.4 elev r9.4 staname t50 statype t4 refsta t6 dnorth r9.4 "
       "deast r9.4 lddate e17.5"},
      {"sitechan",
       "sta t6 chan t8 ondate d8 chanid i8 offdate d8 ctype t4 edepth r9.4 hang r6.1 vang r6.1 descrip t50 "
       "lddate e17.5"},
      {"sensor",
       "sta t6 chan t8 time e17.5 endtime e17.5 inid i8 chanid i8 jdate d8 calratio r16.6 calper r16.6 tshift r6.2 "
       "instant t1 lddate e17.5"},
      {"instrument",
       "inid i8 insname t50 instype t6 band t1 digital t1 samprate r11.7 ncalib r16.6 ncalper r16.6 dir t64 "
       "dfile t32 rsptype t6 lddate e17.5"},
      {"network", "net t8 netname t80 nettype t4 auth t15 commid i8 lddate e17.5"},
      {"affiliation", "net t8 sta t6 lddate e17.5"},
      {"snetsta", "snet t8 fsta t6 sta t6 auth t15 lddate e17.5"},
      {"schanloc", "sta t6 chan t8 fchan t8 loc t8 auth t15 lddate e17.5"},
      {"calibration",
       "sta t6 chan t8 time e17.5 endtime e17.5 snident t16 units t16 samprate r11.7 calib g16.8 calper r16.6 "
       "fc r16.6 commid i8 lddate e17.5"},
      {"stage",
       "sta t6 chan t8 time e17.5 endtime e17.5 stageid i8 ssident t16 gnom g16.8 iunits t16 ounits t16 "
       "gcalib r10.6 gtype t20 izero i8 decifac i8 samprate r11.7 leadfac r11.7 dir t64 dfile t32 lddate e17.5"},
  };
  return tables;
}

// The next line that is neither blank nor a comment, as numbers.
std::vector<double> next_numbers(std::istream& in) {
  for (std::string line; std::getline(in, line);) {
    if (line.empty() || line.front() == '#') continue;
    std::istringstream words(line);
    std::vector<double> numbers;
    for (std::string word; words >> word;) numbers.push_back(std::stod(word));
    return numbers;
  }
  throw std::runtime_error("the response file ends too early");
}

std::vector<std::vector<double>> next_list(std::istream& in) {
  const std::vector<double> count = next_numbers(in);
  if (count.size() != 1) throw std::runtime_error("a count does not stand alone");
  std::vector<std::vector<double>> list(static_cast<std::size_t>(count.front()));
  for (std::vector<double>& numbers : list) numbers = next_numbers(in);
  return list;
}

std::string next_type(std::istream& in) {
  for (std::string line; std::getline(in, line);) {
    if (line.empty() || line.front() == '#') continue;
    std::istringstream words(line);
    std::string source, sequence, description, type;
    words >> source >> sequence >> description >> type;
    return type;
  }
  return "";
}

}  // namespace

std::filesystem::path folder() { return std::filesystem::path(TRIGLUB_SOURCE_DIR) / "examples" / "observatory"; }

std::string read_file(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) throw std::runtime_error("cannot read " + path.string());
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

std::vector<std::string> table_names() {
  std::vector<std::string> names;
  for (const auto& [name, list] : schema()) names.push_back(name);
  return names;
}

std::vector<Field> fields(const std::string& table) {
  std::istringstream words(schema().at(table));
  std::vector<Field> list;
  std::string name, form;
  while (words >> name >> form) {
    const std::size_t point = form.find('.');
    const int decimals = point == std::string::npos ? 0 : std::stoi(form.substr(point + 1));
    list.push_back({name, form.front(), std::stoul(form.substr(1)), decimals});
  }
  return list;
}

std::vector<std::string> lines(const std::string& table) {
  std::istringstream in(read_file(folder() / ("observatory." + table)));
  std::vector<std::string> list;
  for (std::string line; std::getline(in, line);) list.push_back(line);
  return list;
}

const std::vector<Row>& rows(const std::string& table) {
  static std::map<std::string, std::vector<Row>> tables;
  const auto [entry, fresh] = tables.try_emplace(table);
  if (!fresh) return entry->second;
  const std::vector<Field> layout = fields(table);
  for (const std::string& line : lines(table)) {
    Row row;
    std::size_t column = 0;
    for (const Field& field : layout) {
      row[field.name] = line.substr(column, field.width);
      column += field.width + 1;
    }
    entry->second.push_back(row);
  }
  return entry->second;
}

std::string text(const Row& row, const std::string& field) {
  const std::string& columns = row.at(field);
  return columns.substr(0, columns.find_last_not_of(' ') + 1);
}

double value(const Row& row, const std::string& field) { return std::stod(row.at(field)); }

long day(const Row& row, const std::string& field) {
  using std::chrono::days, std::chrono::sys_days, std::chrono::year_month_day;
  if (field != "time" && field != "endtime") return std::lround(value(row, field));
  if (value(row, field) > 9999999999.0) return -1;
  const sys_days date{days{static_cast<int>(std::floor(value(row, field) / 86400))}};
  const year_month_day civil{date};
  const auto of_year = date - sys_days{civil.year() / std::chrono::January / 1} + days{1};
  return static_cast<int>(civil.year()) * 1000L + of_year.count();
}

std::vector<Row> matching(const std::string& table, const Row& row, const std::vector<std::string>& names) {
  std::vector<Row> found;
  for (const Row& other : rows(table)) {
    bool same = true;
    for (const std::string& name : names) same = same && other.at(name) == row.at(name);
    if (same) found.push_back(other);
  }
  return found;
}

Filter read_filter(const std::filesystem::path& path) {
  std::istringstream in(read_file(path));
  Filter filter;
  filter.type = next_type(in);
  if (filter.type == "fap2") {
    filter.a = next_list(in);
  } else {
    const std::vector<double> head = next_numbers(in);
    filter.rate_or_factor = head.at(0);
    if (head.size() > 1) filter.beside = head[1];
    filter.a = next_list(in);
    filter.b = next_list(in);
  }
  std::string rest;
  if (in >> rest) throw std::runtime_error("more than one group in " + path.string());
  return filter;
}

double amplitude(const Filter& paz, double hz) {
  const std::complex<double> s(0, 2 * std::numbers::pi * hz);
  double product = paz.rate_or_factor;
  for (const auto& zero : paz.b) product *= std::abs(s - std::complex<double>(zero.at(0), zero.at(1)));
  for (const auto& pole : paz.a) product /= std::abs(s - std::complex<double>(pole.at(0), pole.at(1)));
  return product;
}

}  // namespace example
