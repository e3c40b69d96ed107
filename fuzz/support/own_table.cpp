#include "support/own_table.h"

#include <array>
#include <string>

namespace triglub_fuzz {

namespace {

constexpr std::string_view kFields = R"(    fields &Tbl{
        sta t 6 %-6s - - station
        chan t 8 %-8s - - channel
        time e 17 %17.5f -9999999999.999 s from
        endtime e 17 %17.5f 9999999999.999 s to
        ondate d 8 %8ld -1 day from
        offdate d 8 %8ld -1 day to
        inid i 8 %8ld -1 - instrument
        note t 12 %-12s - - any text
        level r 9 %9.4f -1.0 - any number
        lddate e 17 %17.5f -9999999999.999 s written
    }
)";

std::string schema_with(std::string_view key) {
  static const std::string usual = shipped_parameters("schemas/css3.0");
  constexpr std::string_view kList = "tables &Tbl{\n";
  std::string schema = usual;
  schema.insert(schema.find(kList) + kList.size(), "    remark\n");
  return schema.append("remark &Arr{\n    primary ").append(key).append("\n").append(kFields).append("}\n");
}

std::string padded(std::string_view text, std::size_t width) {
  std::string cell(text.substr(0, width));
  cell.resize(width, ' ');
  return cell + " ";
}

std::string row_of(Bytes* bytes) {
  constexpr std::array kStations = {"AAK", "AA", "A1", "ANMO", "B2", "-"};
  constexpr std::array kChannels = {"BHZ", "BHN", "LHZ", "-"};
  constexpr std::array kTimes = {"-9999999999.999", "946684800.0", "946684800.5",
                                 "951782400.0",     "978307200.0", "9999999999.999"};
  constexpr std::array kDates = {"-1", "2000001", "2000060", "2000366", "1999364"};
  std::string row = padded(bytes->one_of(kStations), 6) + padded(bytes->one_of(kChannels), 8);
  for (int i = 0; i < 2; ++i) row += padded(bytes->one_of(kTimes), 17);
  for (int i = 0; i < 2; ++i) row += padded(bytes->one_of(kDates), 8);
  row += padded(std::to_string(bytes->below(4)), 8);
  std::string note(bytes->take(bytes->below(10)));
  for (char& c : note) c = c == '\n' || c == '\0' ? ' ' : c;
  return row + padded(note, 12) + padded(std::to_string(bytes->byte()), 9) + padded("-1", 17) + "\n";
}

// Before the elements of some of the groups.
void ask_for_it(Bytes* bytes, std::string* tree) {
  constexpr std::string_view kList = "elements &Tbl{\n";
  constexpr std::string_view kLines = "Note - string remark.note\nLevel - float remark.level\n";
  for (std::size_t at = tree->find(kList); at != std::string::npos; at = tree->find(kList, at + 1)) {
    if (bytes->one_in(3)) tree->insert(at + kList.size(), kLines);
  }
}

}  // namespace

void add_own_table(Bytes* bytes, Case* changed) {
  constexpr std::size_t kMostRows = 12;
  constexpr std::array kKeys = {
      "sta", "sta chan", "sta chan time::endtime", "sta ondate::offdate", "inid", "chan time::endtime", "note"};
  changed->files["db"] = "schema own\n";
  changed->files["own.pf"] = schema_with(bytes->one_of(kKeys));
  std::string& rows = changed->files["db.remark"];
  for (std::size_t n = bytes->below(kMostRows); n > 0; --n) rows += row_of(bytes);
  ask_for_it(bytes, &changed->tree);
}

}  // namespace triglub_fuzz
