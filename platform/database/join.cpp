// Joins a base table to a view. The equal fields go through a hash index of the table, which the table keeps for the
// next join on the same fields; ranges of validity and the fields that null lifts are then tested pair by pair. Rows
// come in the view's order, and for each record in the table's.
#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "database/database.h"
#include "database/join_plan.h"
#include "platform/elog.h"

namespace triglub {

namespace {

// The words of a view's field as they are to be compared with a table's column.
class WordSource {
 public:
  WordSource(const View& view, const EqualPair& pair, const Table& table) : view_(view), pair_(pair) {
    const FieldSchema& mine = view.schema_of(pair.view_field);
    const FieldSchema& theirs = table.schema().fields[pair.table_field];
    storage_ = mine.storage();
    as_real_ = storage_ != theirs.storage();
    if (storage_ == Storage::text) translate(view.table_of(pair.view_field).column(pair.view_field.field), table);
  }

  JoinColumn column() const { return {pair_.table_field, as_real_}; }

  // False when no row of the table can be equal.
  bool word(std::uint32_t record, JoinWord* word) const {
    const ViewField& field = pair_.view_field;
    switch (storage_) {
      case Storage::text: {
        const std::uint32_t row = view_.row(field.table, record);
        *word = codes_[row == NO_ROW ? 0 : (*view_codes_)[row]];
        return *word != NO_CODE;
      }
      case Storage::integer: {
        const std::int64_t value = view_.integer(field, record);
        *word = as_real_ ? real_word(static_cast<double>(value)) : static_cast<JoinWord>(value);
        return true;
      }
      case Storage::real:
        *word = real_word(view_.real(field, record));
        return true;
    }
    return false;
  }

 private:
  static constexpr std::uint32_t NO_CODE = 0xFFFFFFFFu;

  // The table's code of each of the view's texts.
  void translate(const Column& mine, const Table& table) {
    const Dictionary& theirs = table.column(pair_.table_field).dictionary;
    view_codes_ = &mine.codes;
    codes_.reserve(mine.dictionary.size());
    for (std::uint32_t code = 0; code < mine.dictionary.size(); ++code) {
      codes_.push_back(theirs.find(mine.dictionary[code]).value_or(NO_CODE));
    }
  }

  const View& view_;
  EqualPair pair_;
  Storage storage_;
  bool as_real_;
  const std::vector<std::uint32_t>* view_codes_ = nullptr;
  std::vector<std::uint32_t> codes_;
};

class Joiner {
 public:
  Joiner(const View& view, const Table& table, const JoinPlan& plan) : view_(view), table_(table), plan_(plan) {
    for (const EqualPair& pair : plan.equal) {
      sources_.emplace_back(view, pair, table);
      if (pair.null_lifts) continue;
      strict_.push_back(sources_.size() - 1);
      columns_.push_back(sources_.back().column());
    }
    index_ = &table.join_index(columns_);
    words_.resize(columns_.size());
  }

  // Appends the rows that match a record to `rows`, in table order.
  void match(std::uint32_t record, std::vector<std::uint32_t>* rows) {
    for (std::size_t i = 0; i < strict_.size(); ++i) {
      if (!sources_[strict_[i]].word(record, &words_[i])) return;
    }
    std::uint32_t row = table_.row_count() == 0 ? NO_ROW : index_->first(table_, columns_, words_.data());
    if (row == NO_ROW) return;
    load_ranges(record);
    for (; row != NO_ROW; row = index_->next(row)) {
      if (lifted_fields_agree(record, row) && ranges_overlap(row)) rows->push_back(row);
    }
  }

 private:
  void load_ranges(std::uint32_t record) {
    view_ranges_.clear();
    for (const RangePair& pair : plan_.ranges) {
      view_ranges_.push_back({range_begin(view_.schema_of(pair.view_begin), view_.number(pair.view_begin, record),
                                          view_.is_null(pair.view_begin, record), pair.unit),
                              range_end(view_.schema_of(pair.view_end), view_.number(pair.view_end, record),
                                        view_.is_null(pair.view_end, record), pair.unit)});
    }
  }

  double table_number(std::size_t field, std::uint32_t row) const {
    if (table_.schema().fields[field].storage() == Storage::integer) {
      return static_cast<double>(table_.integer(field, row));
    }
    return table_.real(field, row);
  }

  bool ranges_overlap(std::uint32_t row) const {
    for (std::size_t i = 0; i < plan_.ranges.size(); ++i) {
      const RangePair& pair = plan_.ranges[i];
      const Range range{range_begin(table_.schema().fields[pair.table_begin], table_number(pair.table_begin, row),
                                    table_.is_null(pair.table_begin, row), pair.unit),
                        range_end(table_.schema().fields[pair.table_end], table_number(pair.table_end, row),
                                  table_.is_null(pair.table_end, row), pair.unit)};
      if (!overlap(view_ranges_[i], range)) return false;
    }
    return true;
  }

  bool lifted_fields_agree(std::uint32_t record, std::uint32_t row) const {
    for (std::size_t i = 0; i < plan_.equal.size(); ++i) {
      const EqualPair& pair = plan_.equal[i];
      if (!pair.null_lifts || view_.is_null(pair.view_field, record) || table_.is_null(pair.table_field, row)) continue;
      JoinWord word = 0;
      if (!sources_[i].word(record, &word) || word != join_word(table_, sources_[i].column(), row)) return false;
    }
    return true;
  }

  const View& view_;
  const Table& table_;
  const JoinPlan& plan_;
  std::vector<WordSource> sources_;   // one an equal pair
  std::vector<std::size_t> strict_;   // the sources whose fields always restrict
  std::vector<JoinColumn> columns_;   // their columns
  const JoinIndex* index_ = nullptr;  // over those
  std::vector<JoinWord> words_;
  std::vector<Range> view_ranges_;  // of the present record
};

// The records of the view (repeated as they match) and the row that each is joined with.
struct Pairs {
  std::vector<std::uint32_t> records;
  std::vector<std::uint32_t> rows;
};

// `kept` are the rows that the second view has, by row number; null when it has all.
Pairs matching_pairs(const View& view, const Table& table, const JoinPlan& plan, const std::vector<bool>* kept,
                     bool outer) {
  Joiner joiner(view, table, plan);
  Pairs pairs;
  pairs.records.reserve(view.record_count());
  pairs.rows.reserve(view.record_count());
  for (std::uint32_t record = 0; record < view.record_count(); ++record) {
    const std::size_t before = pairs.rows.size();
    joiner.match(record, &pairs.rows);
    if (kept != nullptr) {
      const auto from = pairs.rows.begin() + static_cast<std::ptrdiff_t>(before);
      pairs.rows.erase(std::remove_if(from, pairs.rows.end(), [&](std::uint32_t row) { return !(*kept)[row]; }),
                       pairs.rows.end());
    }
    if (outer && pairs.rows.size() == before) pairs.rows.push_back(NO_ROW);
    pairs.records.resize(pairs.rows.size(), record);
  }
  return pairs;
}

std::vector<ViewTable> joined_tables(const View& view, const Table& table, Pairs pairs) {
  std::vector<ViewTable> tables;
  for (std::size_t t = 0; t < view.tables().size(); ++t) {
    auto rows = std::make_shared<std::vector<std::uint32_t>>();
    rows->reserve(pairs.records.size());
    for (const std::uint32_t record : pairs.records) rows->push_back(view.row(t, record));
    tables.push_back({view.tables()[t].table, std::move(rows)});
  }
  tables.push_back({&table, std::make_shared<std::vector<std::uint32_t>>(std::move(pairs.rows))});
  return tables;
}

std::string operation_text(const Table& table, const JoinPlan& plan, bool outer, bool natural) {
  std::string text = std::string("dbjoin ") + (outer ? "-o " : "") + table.schema().name;
  if (natural) return text;
  for (const std::string& key : plan.keys) text += " " + key;
  return text;
}

void report_keys(const JoinPlan& plan, Tbl** joined_on) {
  if (joined_on == nullptr) return;
  *joined_on = newtbl(static_cast<int>(plan.keys.size()));
  for (const std::string& key : plan.keys) pushtbl(*joined_on, strdup(key.c_str()));
}

// Which rows of its table a view has; nothing when it has each once, in order.
std::vector<bool> rows_of(const View& view) {
  std::vector<bool> kept;
  if (view.tables()[0].rows == nullptr) return kept;
  kept.resize(view.tables()[0].table->row_count(), false);
  for (std::uint32_t record = 0; record < view.record_count(); ++record) {
    const std::uint32_t row = view.row(0, record);
    if (row != NO_ROW) kept[row] = true;
  }
  return kept;
}

Dbptr fail(const char* fault) {
  elog_complain(0, "dbjoin: %s", fault);
  return INVALID_HANDLE;
}

}  // namespace

}  // namespace triglub

Dbptr dbjoin(Dbptr a, Dbptr b, Tbl** keys_a, Tbl** keys_b, int outer, Tbl** joined_on, const char* name) {
  using namespace triglub;
  const View* view = view_of(a);
  const View* other = view_of(b);
  if (view == nullptr || other == nullptr) return INVALID_HANDLE;
  if (a.database != b.database) return fail("the views are of different databases");
  if (other->tables().size() != 1) return fail("the second view must be of one table");
  const Table& table = *other->tables()[0].table;
  const bool natural = keys_a == nullptr || keys_b == nullptr || *keys_a == nullptr || *keys_b == nullptr;
  const auto plan =
      natural ? plan_natural_join(*view, table.schema()) : plan_named_join(*view, table.schema(), *keys_a, *keys_b);
  if (!plan) return INVALID_HANDLE;
  const std::vector<bool> kept = rows_of(*other);
  Pairs pairs = matching_pairs(*view, table, *plan, kept.empty() ? nullptr : &kept, outer != 0);
  if (pairs.records.size() >= MAX_ROWS) return fail("the result has more records than a view can have");
  report_keys(*plan, joined_on);
  const auto record_count = static_cast<std::uint32_t>(pairs.records.size());
  return result_view(*database_of(a), joined_tables(*view, table, std::move(pairs)), record_count,
                     view->operations() + "\n" + operation_text(table, *plan, outer != 0, natural), name);
}
