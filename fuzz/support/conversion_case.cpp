#include "support/conversion_case.h"

#include <expat.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <exception>
#include <sstream>
#include <stdexcept>

#include "platform/sessions.h"
#include "reference/response_text.h"
#include "support/edits.h"
#include "support/expect.h"
#include "support/flat_database.h"

namespace triglub_fuzz {

namespace {

// Where parameter files are looked for; made at the first use, as the process needs no more than one.
Folder& folder() {
  static Folder all;
  static const bool is_known = setenv("TRIGLUB_PFPATH", all.path().c_str(), 1) == 0;
  expect(is_known, "the folder is known");
  return all;
}

std::string* nth_text(Case* of, std::size_t n) {
  if (n >= of->files.size()) return &of->tree;
  return &std::next(of->files.begin(), static_cast<std::ptrdiff_t>(n))->second;
}

// Most often one that the field can have: a fault costs the whole table.
std::string number_for(Bytes* bytes, const triglub_test::FlatField& field) {
  constexpr std::array kDates = {"-1", "", "1999365", "2000001", "2000060", "2000366", "2001001", "2286324"};
  constexpr std::array kIntegers = {"-1", "", "0", "1", "2", "10", "-0", "+5", "99999999", "-9999999"};
  constexpr std::array kReals = {"-1",     "",     "0",      "-0",    "0.1",    "90.5",        "-180.0",     "360",
                                 "-999.0", "1e10", "1e-300", "1e308", "1e-400", "946684800.5", "9999936000", "-7e10"};
  constexpr std::array kOdd = {"nan", "1e400", "0x10", "2000000", "1.5", "x", "9e99", "."};
  if (bytes->one_in(40)) return std::string(bytes->one_of(kOdd)).substr(0, field.width);
  if (field.name.ends_with("date") && field.name != "lddate") return bytes->one_of(kDates);
  const bool is_real = field.null_text.find('.') != std::string::npos;
  return std::string(is_real ? bytes->one_of(kReals) : bytes->one_of(kIntegers)).substr(0, field.width);
}

std::string text_for(Bytes* bytes, const triglub_test::FlatField& field) {
  constexpr std::size_t kLongest = 16;
  std::string text(bytes->take(bytes->below(std::min(field.width, kLongest) + 1)));
  for (const char c : {'\n', '\0'}) std::replace(text.begin(), text.end(), c, ' ');
  return text;
}

void edit_cell(Bytes* bytes, triglub_reference::Tables* changed) {
  const auto table = std::next(changed->rows.begin(), static_cast<std::ptrdiff_t>(bytes->below(changed->rows.size())));
  if (table->second.empty()) return;
  auto& row = table->second[bytes->below(table->second.size())];
  const triglub_test::FlatField& field = bytes->one_of(triglub_test::flat_schema().at(table->first));
  row[field.name] = field.is_text ? text_for(bytes, field) : number_for(bytes, field);
}

void add_condition(Bytes* bytes, Case* changed) {
  const std::string field(bytes->take(bytes->below(24)));
  changed->conditions[field] = "/" + std::string(bytes->take(bytes->below(16))) + "/";
}

}  // namespace

Files files_of(const triglub_reference::Tables& tables, const std::map<std::string, std::string>& site) {
  Files files;
  for (const auto& [table, rows] : tables.rows) {
    std::string& text = files["db." + table];
    for (const auto& row : rows) text += triglub_test::flat_row(table, row) + "\n";
  }
  for (const auto& [name, file] : tables.files) files[name] = triglub_reference::response_text(file);
  for (const auto& [key, value] : site) files["site.pf"].append(key).append(" ").append(value).append("\n");
  return files;
}

void edit(Bytes edits, triglub_reference::Tables* changed) {
  while (!edits.at_end() && !changed->rows.empty()) edit_cell(&edits, changed);
}

void edit(Bytes edits, Case* changed) {
  while (!edits.at_end()) {
    const std::size_t which = edits.below(changed->files.size() + 3);
    if (which == changed->files.size() + 2) {
      add_condition(&edits, changed);
    } else {
      edit(&edits, nth_text(changed, which));
    }
  }
}

std::string shipped_parameters(const std::string& name) {
  Pf* pf = nullptr;
  expect(pfread((std::string(TRIGLUB_SOURCE_DIR) + "/data/" + name + ".pf").c_str(), &pf) == 0, "the file is there");
  std::string text = pf2text(pf);
  pffree(pf);
  return text;
}

OpenDatabase::OpenDatabase(const Case& given) {
  folder().fill(given.files);
  if (dbopen((folder().path() + "/db").c_str(), "r", &db_) != 0) {
    throw std::runtime_error("the database does not open");
  }
}

Call::Call(Dbptr db, const Case& given) {
  if (pfparse(given.tree, "tree", &pf_) != 0) throw std::runtime_error("the tree is malformed");
  expect(triglub::open_session(db, &db_) == 0, "a session opens");
  conditions_ = newarr(nullptr);
  for (const auto& [field, pattern] : given.conditions) setarr(conditions_, field.c_str(), pattern.c_str());
}

Call::~Call() {
  freearr(conditions_, nullptr);
  pffree(pf_);
  dbclose(db_);
}

Outcome convert(Dbptr db, const Case& given) {
  std::ostringstream out;
  Outcome outcome;
  try {
    const Call call(db, given);
    triglub::Conversion().write(call.db(), call.pf(), call.conditions(), out, given.flags);
    outcome.end = "returned";
  } catch (const triglub::FatalFailure& failure) {
    outcome.end = std::string("fatal: ") + failure.what();
  } catch (const std::exception& e) {
    outcome.end = std::string("exception: ") + e.what();
  }
  outcome.document = out.str();
  return outcome;
}

Outcome convert(const Case& given) {
  try {
    return convert(OpenDatabase(given).db(), given);
  } catch (const std::runtime_error& e) {
    return {"", std::string("fatal: ") + e.what()};
  }
}

void expect_well_formed(const std::string& document) {
  XML_Parser parser = XML_ParserCreateNS(nullptr, ' ');
  const bool is_read = XML_Parse(parser, document.data(), static_cast<int>(document.size()), XML_TRUE) == XML_STATUS_OK;
  if (!is_read) {
    const std::string fault = XML_ErrorString(XML_GetErrorCode(parser));
    const auto line = std::to_string(XML_GetCurrentLineNumber(parser));
    expect(false, "the document is well-formed", "line " + line + ": " + fault + "\n" + document);
  }
  XML_ParserFree(parser);
}

bool is_for_threads(const std::uint8_t* data, std::size_t size) {
  constexpr std::size_t kOneIn = 200;
  return std::hash<std::string_view>()({reinterpret_cast<const char*>(data), size}) % kOneIn == 0;
}

}  // namespace triglub_fuzz
