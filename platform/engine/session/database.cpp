#include "engine/session/database.h"

#include <cstring>

#include "base/threads.h"
#include "engine/source/open/open_source.h"
#include "platform/elog.h"

static_assert(triglub::NO_ROW == triglub::NO_BASE_ROW);

namespace triglub {

namespace {

// Handles are numbers, so the databases they name are kept here; a number is not used again.
std::vector<std::unique_ptr<Database>>& open_databases() {
  static std::vector<std::unique_ptr<Database>> databases;
  return databases;
}

bool are_all(const std::vector<std::uint32_t>& records, const View& view) {
  if (records.size() != view.record_count()) return false;
  for (std::uint32_t i = 0; i < view.record_count(); ++i) {
    if (records[i] != i) return false;
  }
  return true;
}

}  // namespace

Database::Database(std::shared_ptr<const Source> source, std::int64_t id) : source_(std::move(source)), id_(id) {
  const std::size_t count = source_->schema()->tables().size();
  tables_.resize(count);
  refused_.resize(count, false);
  views_.resize(count);
}

std::int64_t Database::load_table(std::size_t index) {
  if (views_[index] != nullptr) return static_cast<std::int64_t>(index);
  if (refused_[index]) return dbINVALID;  // the complaints were made the first time
  const TableSchema& schema = source_->schema()->tables()[index];
  tables_[index] = source_->load(schema, {});
  if (tables_[index] == nullptr) {
    refused_[index] = true;
    return dbINVALID;
  }
  const Table* table = tables_[index].get();
  views_[index] =
      std::make_unique<View>(std::vector<ViewTable>{{table, nullptr}}, table->row_count(), "dbopen " + schema.name);
  return static_cast<std::int64_t>(index);
}

std::int64_t Database::find_view(std::string_view name) {
  const auto named = view_by_name_.find(name);
  if (named != view_by_name_.end()) return named->second;
  const int index = source_->schema()->find(name);
  return index < 0 ? dbINVALID : load_table(static_cast<std::size_t>(index));
}

std::int64_t Database::add_view(std::unique_ptr<View> view, const char* name) {
  views_.push_back(std::move(view));
  const auto number = static_cast<std::int64_t>(views_.size()) - 1;
  if (name != nullptr && *name != '\0' && source_->schema()->find(name) < 0) view_by_name_[name] = number;
  return number;
}

const View* Database::view(std::int64_t number) const {
  if (number < 0 || static_cast<std::size_t>(number) >= views_.size()) return nullptr;
  return views_[static_cast<std::size_t>(number)].get();
}

bool Database::is_kept(std::int64_t view) const {
  return (view >= 0 && static_cast<std::size_t>(view) < tables_.size()) || kept_.contains(view);
}

std::int64_t Database::kept_join(std::int64_t view, const std::string& step) const {
  const auto entry = kept_joins_.find({view, step});
  return entry == kept_joins_.end() ? dbINVALID : entry->second;
}

void Database::keep_join(std::int64_t view, const std::string& step, std::int64_t result) {
  kept_joins_[{view, step}] = result;
  kept_.insert(result);
}

void Database::release_view(std::int64_t number) {
  if (view(number) == nullptr || is_kept(number)) return;
  views_[static_cast<std::size_t>(number)] = nullptr;
  std::erase_if(view_by_name_, [number](const auto& entry) { return entry.second == number; });
}

Database* database_of(const Dbptr& db) {
  auto& databases = open_databases();
  if (db.database < 0 || static_cast<std::size_t>(db.database) >= databases.size()) return nullptr;
  return databases[static_cast<std::size_t>(db.database)].get();
}

const View* view_of(const Dbptr& db) {
  const Database* database = database_of(db);
  return database == nullptr ? nullptr : database->view(db.table);
}

Dbptr handle_of(const Database& database, std::int64_t view) { return {database.id(), view, dbALL, dbALL}; }

bool has_record(const View& view, const Dbptr& db) {
  return db.record >= 0 && db.record < static_cast<std::int64_t>(view.record_count());
}

std::vector<ViewTable> tables_of_records(const View& view, const std::vector<std::uint32_t>& records) {
  if (are_all(records, view)) return view.tables();
  std::vector<ViewTable> tables = view.tables();
  const auto rows_of_records = [&](std::size_t t) {
    auto rows = std::make_shared<std::vector<std::uint32_t>>();
    rows->reserve(records.size());
    for (const std::uint32_t record : records) rows->push_back(view.row(t, record));
    tables[t].rows = std::move(rows);
  };
  if (are_worth_threads(records.size())) {
    run_side_by_side(tables.size(), rows_of_records);
  } else {
    for (std::size_t t = 0; t < tables.size(); ++t) rows_of_records(t);
  }
  return tables;
}

Dbptr result_view(Database& database, std::vector<ViewTable> tables, std::uint32_t record_count, std::string operations,
                  const char* name) {
  return handle_of(database, database.add_view(
                                 std::make_unique<View>(std::move(tables), record_count, std::move(operations)), name));
}

Dbptr selected_records(Database& database, const View& view, const std::vector<std::uint32_t>& records,
                       const std::string& operation, const char* name) {
  const auto count = static_cast<std::uint32_t>(records.size());
  return result_view(database, tables_of_records(view, records), count, view.operations() + "\n" + operation, name);
}

Dbptr view_of_records(Dbptr view, const std::vector<std::uint32_t>& records, const char* name) {
  const View* from = view_of(view);
  if (from == nullptr) return INVALID_HANDLE;
  for (const std::uint32_t record : records) {
    if (record >= from->record_count()) return INVALID_HANDLE;
  }
  return selected_records(*database_of(view), *from, records, "records chosen by the program", name);
}

void release_view(Dbptr view) {
  Database* database = database_of(view);
  if (database != nullptr) database->release_view(view.table);
}

std::vector<std::uint32_t> base_rows(Dbptr view, const char* table) {
  const View* from = view_of(view);
  const int index = from == nullptr ? -1 : from->find_table(table);
  std::vector<std::uint32_t> rows;
  if (index < 0) return rows;
  rows.reserve(from->record_count());
  for (std::uint32_t record = 0; record < from->record_count(); ++record) {
    rows.push_back(from->row(static_cast<std::size_t>(index), record));
  }
  return rows;
}

int dbopen_source(std::shared_ptr<const Source> source, Dbptr* db) {
  auto& databases = open_databases();
  const auto id = static_cast<std::int64_t>(databases.size());
  databases.push_back(std::make_unique<Database>(std::move(source), id));
  *db = {id, dbALL, dbALL, dbALL};
  return 0;
}

std::string table_path(Dbptr db, const char* table) {
  const Database* database = database_of(db);
  if (database == nullptr) return "";
  const Schema& schema = *database->source().schema();
  const int index = schema.find(table);
  return index < 0 ? "" : database->source().table_place(schema.tables()[static_cast<std::size_t>(index)]);
}

std::vector<std::string> table_names(Dbptr db) {
  std::vector<std::string> names;
  const Database* database = database_of(db);
  if (database == nullptr) return names;
  for (const TableSchema& table : database->source().schema()->tables()) names.push_back(table.name);
  return names;
}

}  // namespace triglub

int dbopen(const char* source, const char* mode, Dbptr* db) {
  *db = triglub::INVALID_HANDLE;
  if (mode == nullptr || std::strcmp(mode, "r") != 0) {
    elog_complain(0, "dbopen: databases are opened for reading only, mode \"r\"");
    return -1;
  }
  auto found = triglub::open_source(source == nullptr ? "" : source);
  return found == nullptr ? -1 : triglub::dbopen_source(std::move(found), db);
}

int dbclose(Dbptr db) {
  if (triglub::database_of(db) == nullptr) return -1;
  triglub::open_databases()[static_cast<std::size_t>(db.database)] = nullptr;
  return 0;
}
