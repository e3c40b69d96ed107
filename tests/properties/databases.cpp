#include "properties/databases.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include "conversion.h"
#include "platform/database.h"
#include "platform/elog.h"
#include "platform/parfile.h"
#include "support/file_text.h"

namespace triglub_properties {

namespace {

using triglub_test::FlatDatabase;
using triglub_test::FlatField;

std::string trimmed(const std::string& text) {
  const std::size_t begin = text.find_first_not_of(' ');
  return begin == std::string::npos ? "" : text.substr(begin, text.find_last_not_of(' ') - begin + 1);
}

Row row_of(const std::string& line, const triglub_test::FlatTable& fields) {
  Row row;
  std::size_t at = 0;
  for (const FlatField& field : fields) {
    if (at + field.width > line.size()) throw std::runtime_error("a row is too short: " + line);
    row[field.name] = trimmed(line.substr(at, field.width));
    at += field.width + 1;
  }
  return row;
}

void read_response(const std::filesystem::path& folder, const Row& stage, Database& database) {
  const std::string name = std::filesystem::path(stage.at("dir")) / stage.at("dfile");
  if (stage.at("dfile") == "-" || database.files.contains(name)) return;
  database.files[name] = triglub_test::file_text(folder / name);
}

void ignore(ElogLevel /*level*/, const char* /*text*/, void* /*context*/) {}

void convert(const std::string& prefix, const std::string& parameters, std::ostream& out) {
  Dbptr db;
  Pf* pf = nullptr;
  if (dbopen(prefix.c_str(), "r", &db) != 0) throw std::runtime_error("the database does not open");
  if (pfparse(parameters, "parameters", &pf) != 0) throw std::runtime_error("the parameter file is malformed");
  triglub::Conversion().write(db, pf, nullptr, out, triglub::flags_for(triglub::DetailLevel::response));
  pffree(pf);
  dbclose(db);
}

}  // namespace

Database read_database(const std::string& prefix) {
  Database database;
  for (const auto& [table, fields] : triglub_test::flat_schema()) {
    std::ifstream file(prefix + "." + table);
    for (std::string line; std::getline(file, line);) database.tables.rows[table].push_back(row_of(line, fields));
  }
  const std::filesystem::path folder = std::filesystem::path(prefix).parent_path();
  for (const Row& stage : database.tables.rows["stage"]) read_response(folder, stage, database);
  return database;
}

void write_database(const Database& database, FlatDatabase& files) {
  for (const auto& [table, rows] : database.tables.rows) {
    for (const Row& row : rows) files.add_row(table, row);
  }
  for (const auto& [name, text] : database.files) files.write_file(name, text);
  files.write();
}

std::string shipped_document(const Database& database) {
  return document_by(triglub_test::file_text(TRIGLUB_SOURCE_DIR "/data/stationxml.pf"), database);
}

std::string document_by(const std::string& parameters, const Database& database) {
  std::ostringstream out;
  write_document(parameters, database, out);
  return out.str();
}

void write_document(const std::string& parameters, const Database& database, std::ostream& out) {
  FlatDatabase files;
  write_database(database, files);
  setenv("TRIGLUB_PFPATH", TRIGLUB_SOURCE_DIR "/data", 1);
  elog_set_sink(ignore, nullptr);
  convert(files.prefix(), parameters, out);
  elog_set_sink(nullptr, nullptr);
}

}  // namespace triglub_properties
