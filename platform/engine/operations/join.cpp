// Joins a base table to a view. The equal fields go through a hash index of the table, which the table keeps for the
// next join on the same fields; ranges of validity and the null-tolerant fields are then tested pair by pair. Where
// every equal field is null-tolerant, the first of them is looked up in the index all the same: its own value's rows
// and the null's are what can match. Rows come in the first view's order, and for each record in the second's.
#include "engine/operations/join.h"

#include <algorithm>
#include <atomic>
#include <utility>

#include "base/threads.h"
#include "engine/operations/join_plan.h"
#include "engine/operations/select.h"
#include "platform/elog.h"
#include "platform/limits.h"

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
    if (storage_ == Storage::text) map_texts(table);
  }

  JoinColumn column() const { return {pair_.table_field, as_real_}; }

  // The word of the table's null.
  JoinWord null_word(const Table& table) const {
    const FieldSchema& field = table.schema().fields[pair_.table_field];
    switch (field.storage()) {
      case Storage::text:
        return kNullCode;
      case Storage::integer:
        if (as_real_) return real_word(static_cast<double>(field.null_integer));
        return static_cast<JoinWord>(field.null_integer);
      case Storage::real:
        return real_word(field.null_real);
    }
    return 0;
  }

  // False when no row of the table can be equal.
  bool word(std::uint32_t record, JoinWord* word) const {
    const ViewField& field = pair_.view_field;
    switch (storage_) {
      case Storage::text: {
        *word = (*codes_)[view_codes_[view_.row(field.table, record)]];
        return *word != kNoCode;
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
  // The table's code of each of the view's texts.
  void map_texts(const Table& table) {
    view_codes_ = view_.table_of(pair_.view_field).text_codes(pair_.view_field.field);
    codes_ = &table.dictionary_mapping(*view_codes_.dictionary, pair_.table_field);
  }

  const View& view_;
  EqualPair pair_;
  Storage storage_;
  bool as_real_;
  TextCodes view_codes_{};
  const std::vector<std::uint32_t>* codes_ = nullptr;
};

class Joiner {
 public:
  Joiner(const View& view, const Table& table, const JoinPlan& plan) : view_(view), table_(table), plan_(plan) {
    for (const EqualPair& pair : plan.equal) {
      sources_.emplace_back(view, pair, table);
      if (pair.is_null_tolerant) {
        tolerant_.push_back(sources_.size() - 1);
        continue;
      }
      strict_.push_back(sources_.size() - 1);
      columns_.push_back(sources_.back().column());
    }
    by_tolerant_field_ = strict_.empty() && !sources_.empty();
    if (by_tolerant_field_) columns_.push_back(sources_.front().column());
    index_ = &table.join_index(columns_);
    words_.resize(columns_.size());
  }

  // Rows of the table that were looked at since the last call.
  std::uint64_t take_looked_at() { return std::exchange(looked_at_, 0); }

  // Appends the rows that match a record to `rows`, in table order.
  void match(std::uint32_t record, std::vector<std::uint32_t>* rows) {
    if (by_tolerant_field_) {
      match_by_tolerant_field(record, rows);
      return;
    }
    if (!load_candidates(record) || candidates_.empty()) return;
    load_ranges(record);
    looked_at_ += candidates_.size();
    const Range* ranges = candidate_ranges_.data();
    for (const std::uint32_t row : candidates_) {
      if (all_overlap(ranges) && tolerant_fields_agree(record, row)) rows->push_back(row);
      ranges += plan_.ranges.size();
    }
  }

 private:
  // The rows whose columns are words_.
  JoinIndex::Rows rows_of_words() { return index_->find(table_, columns_, words_.data(), &next_run_); }

  // Puts the record's words in words_, the rows of these in candidates_ and their ranges in candidate_ranges_. False
  // when no row can be equal.
  bool load_candidates(std::uint32_t record) {
    bool changed = !are_words_known_;
    are_words_known_ = false;
    for (std::size_t i = 0; i < strict_.size(); ++i) {
      JoinWord word = 0;
      if (!sources_[strict_[i]].word(record, &word)) return false;
      changed = changed || word != words_[i];
      words_[i] = word;
    }
    // Neighbouring records mostly agree: the epochs of a channel, the channels of a station.
    if (changed) look_up_candidates();
    are_words_known_ = true;
    return true;
  }

  void look_up_candidates() {
    candidates_.clear();
    candidate_ranges_.clear();
    for (JoinIndex::Rows found = rows_of_words(); found.row() != kNoRow; found.move_on()) {
      candidates_.push_back(found.row());
      for (const RangePair& pair : plan_.ranges) candidate_ranges_.push_back(table_range(pair, found.row()));
    }
  }

  void test(std::uint32_t record, std::uint32_t row, std::vector<std::uint32_t>* rows) {
    ++looked_at_;
    candidate_ranges_.clear();
    for (const RangePair& pair : plan_.ranges) candidate_ranges_.push_back(table_range(pair, row));
    if (tolerant_fields_agree(record, row) && all_overlap(candidate_ranges_.data())) rows->push_back(row);
  }

  void match_by_tolerant_field(std::uint32_t record, std::vector<std::uint32_t>* rows) {
    load_ranges(record);
    if (view_.is_null(plan_.equal.front().view_field, record)) {
      for (std::uint32_t row = 0; row < table_.row_count(); ++row) test(record, row, rows);
      return;
    }
    JoinIndex::Rows same;
    if (sources_.front().word(record, words_.data())) same = rows_of_words();
    words_.front() = sources_.front().null_word(table_);
    JoinIndex::Rows null = rows_of_words();
    if (same.row() == null.row()) null = {};  // neither, or a value that is the table's null
    while (same.row() != kNoRow || null.row() != kNoRow) {
      JoinIndex::Rows& next = same.row() < null.row() ? same : null;  // kNoRow comes after every row
      test(record, next.row(), rows);
      next.move_on();
    }
  }

  void load_ranges(std::uint32_t record) {
    view_ranges_.clear();
    for (const RangePair& pair : plan_.ranges) {
      view_ranges_.push_back(make_range(view_end(pair.view_begin, record), view_end(pair.view_end, record), pair.unit));
    }
  }

  RangeEnd view_end(const ViewField& field, std::uint32_t record) const {
    return {view_.schema_of(field).type, view_.number(field, record), view_.is_null(field, record)};
  }

  RangeEnd table_end(std::size_t field, std::uint32_t row) const {
    return {table_.schema().fields[field].type, table_.number(field, row), table_.is_null(field, row)};
  }

  Range table_range(const RangePair& pair, std::uint32_t row) const {
    return make_range(table_end(pair.table_begin, row), table_end(pair.table_end, row), pair.unit);
  }

  // `ranges`: one a range pair, of a row of the table.
  bool all_overlap(const Range* ranges) const {
    for (std::size_t i = 0; i < view_ranges_.size(); ++i) {
      if (!overlap(view_ranges_[i], ranges[i])) return false;
    }
    return true;
  }

  bool tolerant_fields_agree(std::uint32_t record, std::uint32_t row) const {
    for (const std::size_t i : tolerant_) {
      const EqualPair& pair = plan_.equal[i];
      if (view_.is_null(pair.view_field, record) || table_.is_null(pair.table_field, row)) continue;
      JoinWord word = 0;
      if (!sources_[i].word(record, &word) || word != join_word(table_, sources_[i].column(), row)) return false;
    }
    return true;
  }

  const View& view_;
  const Table& table_;
  const JoinPlan& plan_;
  std::vector<WordSource> sources_;    // one an equal pair
  std::vector<std::size_t> strict_;    // the sources whose nulls are values like any other
  std::vector<std::size_t> tolerant_;  // the sources of the null-tolerant fields
  std::vector<JoinColumn> columns_;    // of the index
  bool by_tolerant_field_ = false;     // none is strict: the index is over the first null-tolerant field
  const JoinIndex* index_ = nullptr;
  std::uint32_t next_run_ = 0;  // where the next key's rows may be
  std::vector<JoinWord> words_;
  bool are_words_known_ = false;  // words_ are a record's; the next two are what they select:
  std::vector<std::uint32_t> candidates_;
  std::vector<Range> candidate_ranges_;  // one a candidate and range pair
  std::vector<Range> view_ranges_;       // of the present record
  std::uint64_t looked_at_ = 0;
};

// What a join may come to. Safe for concurrent use.
class Budget {
 public:
  // Counts records that were made and rows that were looked at for them. False when all threads have together come to
  // more than a join may.
  bool count(std::uint64_t records, std::uint64_t looked_at) {
    records_ += records;
    looked_at_ += looked_at;
    return is_kept();
  }
  bool is_kept() const { return records_ <= most_ && looked_at_ <= most_ * kLookedAtForEach; }

 private:
  // The epochs of a channel are all looked at for each of its records.
  static constexpr std::uint64_t kLookedAtForEach = 100;

  std::uint64_t most_ = limit(Limit::join_rows);
  std::atomic<std::uint64_t> records_ = 0;
  std::atomic<std::uint64_t> looked_at_ = 0;
};

// What is counted of one thread's work, handed on now and then: threads that count one by one hinder each other.
class BudgetShare {
 public:
  explicit BudgetShare(Budget& budget) : budget_(budget) {}

  // False when the join has come to more than it may.
  bool count(std::uint64_t records, std::uint64_t looked_at) {
    records_ += records;
    looked_at_ += looked_at;
    return records_ + looked_at_ < kHandedOn || hand_on();
  }
  bool hand_on() { return budget_.count(std::exchange(records_, 0), std::exchange(looked_at_, 0)); }

 private:
  static constexpr std::uint64_t kHandedOn = 4096;

  Budget& budget_;
  std::uint64_t records_ = 0;
  std::uint64_t looked_at_ = 0;
};

// The records of the view (repeated as they match) and the row that each is joined with.
struct Pairs {
  std::vector<std::uint32_t> records;
  std::vector<std::uint32_t> rows;
};

// The records of a view of one table, by the table's rows: a view may leave rows out, repeat them and have an order of
// its own.
class RecordsOfRows {
 public:
  explicit RecordsOfRows(const View& view) : view_(view), is_base_(view.tables()[0].rows == nullptr) {
    if (is_base_) return;
    first_.assign(std::size_t{view.tables()[0].table->row_count()} + 1, 0);
    for (std::uint32_t r = 0; r < view.record_count(); ++r) ++first_[view.row(0, r) + 1];
    for (std::size_t row = 1; row < first_.size(); ++row) first_[row] += first_[row - 1];
    records_.resize(view.record_count());
    std::vector<std::uint32_t> next(first_.begin(), first_.end() - 1);
    for (std::uint32_t r = 0; r < view.record_count(); ++r) records_[next[view.row(0, r)]++] = r;
  }

  // Puts the rows from `from` on into the view's order, each as often as the view has it. `found` is scratch memory.
  void arrange(std::vector<std::uint32_t>* rows, std::size_t from, std::vector<std::uint32_t>* found) const {
    if (is_base_) return;
    found->clear();
    for (std::size_t i = from; i < rows->size(); ++i) {
      const std::uint32_t row = (*rows)[i];
      found->insert(found->end(), records_.begin() + first_[row], records_.begin() + first_[row + 1]);
    }
    std::sort(found->begin(), found->end());
    rows->resize(from);
    for (const std::uint32_t record : *found) rows->push_back(view_.row(0, record));
  }

 private:
  const View& view_;
  bool is_base_;                        // record i is row i
  std::vector<std::uint32_t> first_;    // by row: where its records begin; one entry more at the end
  std::vector<std::uint32_t> records_;  // by row
};

// The matches of the records from `begin` to before `end`, not all of them when they are more than the budget. They are
// given `room`. Each caller has a joiner of its own, copied here: threads that wrote to neighbouring ones would share
// cache lines.
Pairs match_records(Joiner joiner, const RecordsOfRows& second, bool outer, std::uint32_t begin, std::uint32_t end,
                    std::size_t room, Budget* budget) {
  Pairs pairs;
  pairs.records.reserve(room);
  pairs.rows.reserve(room);
  std::vector<std::uint32_t> found;
  BudgetShare share(*budget);
  for (std::uint32_t record = begin; record < end; ++record) {
    const std::size_t before = pairs.rows.size();
    joiner.match(record, &pairs.rows);
    second.arrange(&pairs.rows, before, &found);
    if (outer && pairs.rows.size() == before) pairs.rows.push_back(kNoRow);
    if (!share.count(pairs.rows.size() - before, joiner.take_looked_at())) break;
    pairs.records.resize(pairs.rows.size(), record);
  }
  share.hand_on();
  return pairs;
}

Pairs put_together(std::vector<Pairs> found) {
  if (found.size() == 1) return std::move(found.front());
  Pairs all = std::move(found.front());
  const auto append_all = [&](std::vector<std::uint32_t> Pairs::*list) {
    for (std::size_t i = 1; i < found.size(); ++i) {
      const std::vector<std::uint32_t>& from = found[i].*list;
      (all.*list).insert((all.*list).end(), from.begin(), from.end());
    }
  };
  run_side_by_side(2, [&](std::size_t i) { append_all(i == 0 ? &Pairs::records : &Pairs::rows); });
  return all;
}

// Nothing when there are more than a join may have.
std::optional<Pairs> matching_pairs(const View& view, const View& other, const JoinPlan& plan, bool outer) {
  const Chunks chunks(0, view.record_count());
  const Joiner joiner(view, *other.tables()[0].table, plan);
  const RecordsOfRows second(other);
  Budget budget;
  std::vector<Pairs> found(chunks.size());
  run_side_by_side(chunks.size(), [&](std::size_t i) {
    const std::uint32_t begin = chunks.begin(i);
    const std::uint32_t end = chunks.end(i);
    const std::uint32_t room = (i == 0 ? view.record_count() : end) - begin;  // the first takes in the others
    found[i] = match_records(joiner, second, outer, begin, end, room, &budget);
  });
  if (!budget.is_kept()) return std::nullopt;
  return put_together(std::move(found));
}

std::vector<ViewTable> joined_tables(const View& view, const Table& table, Pairs pairs) {
  std::vector<ViewTable> tables = tables_of_records(view, pairs.records);
  tables.push_back({&table, std::make_shared<std::vector<std::uint32_t>>(std::move(pairs.rows))});
  return tables;
}

std::string operation_text(const Table& table, const JoinPlan& plan, bool outer, bool natural) {
  std::string text = std::string("dbjoin ") + (outer ? "-o " : "") + table.schema().name;
  if (natural) return text;
  for (const std::string& key : plan.keys) text += " " + key;
  return text;
}

std::nullopt_t fail(const std::string& fault) {
  elog_complain(0, "dbjoin: %s", fault.c_str());
  return std::nullopt;
}

// "site sitechan with sensor on sta chan".
std::string named(const View& view, const Table& table, const JoinPlan& plan) {
  std::string text;
  for (const ViewTable& part : view.tables()) text.append(part.table->schema().name).append(" ");
  text.append("with ").append(table.schema().name).append(" on");
  for (const std::string& key : plan.keys) text.append(" ").append(key);
  return text;
}

}  // namespace

std::optional<Joined> join_views(const View& view, const View& other, const std::optional<JoinKeys>& keys,
                                 JoinKind kind) {
  if (other.tables().size() != 1) return fail("the second view must be of one table");
  const Table& table = *other.tables()[0].table;
  auto plan = keys ? plan_named_join(view, table.schema(), *keys) : plan_natural_join(view, table.schema());
  if (!plan) return std::nullopt;
  const bool outer = kind == JoinKind::outer;
  auto pairs = matching_pairs(view, other, *plan, outer);
  if (!pairs) return fail(named(view, table, *plan) + ": " + beyond(Limit::join_rows));
  const auto record_count = static_cast<std::uint32_t>(pairs->records.size());
  const std::string operations = view.operations() + "\n" + operation_text(table, *plan, outer, !keys);
  return Joined{std::make_unique<View>(joined_tables(view, table, std::move(*pairs)), record_count, operations),
                std::move(plan->keys)};
}

}  // namespace triglub
