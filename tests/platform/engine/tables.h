// Short ways to a small database, its views and their values.
#ifndef TRIGLUB_TESTS_DATABASE_TABLES_H
#define TRIGLUB_TESTS_DATABASE_TABLES_H

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "engine/source/memory/memory_source.h"
#include "engine/source/memory/published.h"
#include "platform/containers.h"
#include "platform/database.h"
#include "support/collected_log.h"
#include "support/flat_database.h"

namespace triglub_test {

using Row = std::map<std::string, std::string>;
using Texts = std::vector<std::string>;

// A list of texts for the classic interface. The texts live in the object.
class TextTbl {
 public:
  explicit TextTbl(Texts texts) : texts_(std::move(texts)), list_(newtbl(0)) {
    for (const std::string& text : texts_) pushtbl(list_, text.c_str());
  }
  ~TextTbl() { freetbl(list_, nullptr); }
  TextTbl(const TextTbl&) = delete;
  TextTbl& operator=(const TextTbl&) = delete;
  Tbl* get() const { return list_; }
  Tbl** address() { return &list_; }

 private:
  Texts texts_;
  Tbl* list_;
};

inline Dbptr table_of(Dbptr db, const std::string& name) {
  return dblookup(db, nullptr, name.c_str(), nullptr, nullptr);
}

inline Dbptr process(Dbptr db, const Texts& steps) { return dbprocess(db, TextTbl(steps).get(), nullptr); }

inline bool is_view(const Dbptr& view) { return view.database >= 0 && view.table >= 0; }

inline long record_count(Dbptr view) {
  long count = -1;
  dbquery(view, dbRECORD_COUNT, &count);
  return count;
}

inline Dbptr at(Dbptr view, std::int64_t record) {
  view.record = record;
  return view;
}

// The value as dbget gives it; throws where there is none.
inline std::string text_at(Dbptr view, const std::string& field, std::int64_t record) {
  Dbptr value = dblookup(view, nullptr, nullptr, field.c_str(), nullptr);
  value.record = record;
  std::array<char, 1024> buffer{};
  if (dbget(value, buffer.data()) != 0) throw std::runtime_error("no value of " + field);
  return buffer.data();
}

// The texts of a field, record by record.
inline Texts texts_of(Dbptr view, const std::string& field) {
  Texts texts;
  for (long record = 0; record < record_count(view); ++record) texts.push_back(text_at(view, field, record));
  return texts;
}

// The records as the texts of some fields, blanks between them.
inline Texts records_of(Dbptr view, const Texts& fields) {
  Texts records;
  for (long record = 0; record < record_count(view); ++record) {
    std::string text;
    for (const std::string& field : fields) text += (text.empty() ? "" : " ") + text_at(view, field, record);
    records.push_back(text);
  }
  return records;
}

// Whether tests run over tables in memory, and not over flat files: what is done with tables must not depend on it.
inline bool is_memory_wanted() {
  const char* source = std::getenv("TRIGLUB_TEST_SOURCE");
  return source != nullptr && std::string_view(source) == "memory";
}

// A database of the rows added so far, opened when first asked for.
class Tables {
 public:
  Tables() = default;
  ~Tables() {
    close();
    triglub::withdraw(files_.folder());
  }
  Tables(const Tables&) = delete;
  Tables& operator=(const Tables&) = delete;

  Tables& add(const std::string& table, const Row& row) {
    files_.add_row(table, row);
    rows_[table].push_back(row);
    return *this;
  }
  Tables& add_all(const std::string& table, const std::vector<Row>& rows) {
    for (const Row& row : rows) add(table, row);
    return *this;
  }
  // What dbopen takes. Writes the rows added so far.
  std::string name() {
    if (!is_memory_wanted()) {
      files_.write_file("db", "");  // a database even when no table has rows
      return files_.write();
    }
    triglub::publish(files_.folder(), std::make_shared<triglub::MemorySource>("db", rows_));
    return "memory:" + files_.folder();
  }
  Dbptr db() {
    if (db_.database < 0 && dbopen(name().c_str(), "r", &db_) != 0) throw std::runtime_error("dbopen");
    return db_;
  }
  Dbptr table(const std::string& name) { return table_of(db(), name); }
  Dbptr process(const Texts& steps) { return triglub_test::process(db(), steps); }
  void close() {
    if (db_.database >= 0) dbclose(db_);
    db_ = Dbptr();
  }

 private:
  FlatDatabase files_;
  triglub::MemorySource::Tables rows_;
  Dbptr db_;
};

}  // namespace triglub_test

#endif
