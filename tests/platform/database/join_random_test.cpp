// Random joins against nested loops that follow the rules of joins one by one.
#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <optional>
#include <random>

#include "platform/timeconv.h"
#include "support/random_seed.h"
#include "tables.h"

namespace triglub_test {
namespace {

// --- the tables as the rules see them --------------------------------------------------------------------------------

struct Keys {
  Texts strict;   // of the primary and alternate keys
  Texts foreign;  // of no other key
  std::string begin, end;
};

const std::map<std::string, Keys>& keys_of_tables() {
  static const std::map<std::string, Keys> keys = {
      {"site", {{"sta"}, {}, "ondate", "offdate"}},
      {"sitechan", {{"sta", "chan", "chanid"}, {}, "ondate", "offdate"}},
      {"sensor", {{"sta", "chan"}, {"inid", "chanid"}, "time", "endtime"}},
      {"instrument", {{"inid"}, {}, "", ""}},
      {"network", {{"net"}, {}, "", ""}},
      {"affiliation", {{"net", "sta"}, {}, "", ""}},
      {"snetsta", {{"snet", "fsta", "sta"}, {}, "", ""}},
      {"schanloc", {{"sta", "chan"}, {}, "", ""}},
      {"calibration", {{"sta", "chan"}, {}, "time", "endtime"}},
      {"stage", {{"sta", "chan", "stageid"}, {}, "time", "endtime"}},
  };
  return keys;
}

const FlatField* find_field(const std::string& table, const std::string& name) {
  for (const FlatField& field : flat_schema().at(table)) {
    if (field.name == name) return &field;
  }
  return nullptr;
}

bool is_date(const std::string& field) { return field == "ondate" || field == "offdate"; }

constexpr int kAbsent = -1;

struct Cell {
  std::string text;  // of a text
  double number = 0;
  bool is_null = false;
};

Cell cell_of(const std::string& table, const std::vector<Row>& rows, int row, const std::string& name) {
  const FlatField& field = *find_field(table, name);
  Cell cell;
  cell.text = field.null_text;
  if (row != kAbsent && rows[static_cast<std::size_t>(row)].contains(name)) {
    cell.text = rows[static_cast<std::size_t>(row)].at(name);
  }
  if (field.is_text) {
    cell.is_null = cell.text == field.null_text;
  } else {
    cell.number = std::stod(cell.text);
    cell.is_null = cell.number == std::stod(field.null_text);
  }
  return cell;
}

// --- ranges, on a grid of quarter days -------------------------------------------------------------------------------

constexpr int kQuarter = 21600;
constexpr int kDays[] = {1999363, 1999364, 1999365, 2000001, 2000002, 2000003};
constexpr long kFirst = -50, kLast = 50;  // stand for the open sides

long quarters(const std::string& field, double value) {
  if (!is_date(field)) return std::lround((value - epoch(kDays[0])) / kQuarter);
  return 4 * (std::find(std::begin(kDays), std::end(kDays), static_cast<int>(value)) - std::begin(kDays));
}

struct Span {
  long begin, end;
  bool is_backward;
};

Span span_of(const std::string& begin_name, const Cell& begin, const std::string& end_name, const Cell& end) {
  Span span{begin.is_null ? kFirst : quarters(begin_name, begin.number),
            end.is_null ? kLast : quarters(end_name, end.number), false};
  span.is_backward = span.end < span.begin;
  return span;
}

long day_of(long quarter) { return quarter == kFirst || quarter == kLast ? quarter : quarter / 4; }

bool meet(Span a, Span b, bool in_days) {
  if (a.is_backward || b.is_backward) return false;
  if (in_days) a = {day_of(a.begin), day_of(a.end), false}, b = {day_of(b.begin), day_of(b.end), false};
  const auto holds = [](const Span& span, long i) {
    return span.begin == span.end ? i == span.begin : span.begin <= i && i < span.end;
  };
  for (long i = kFirst; i <= kLast; ++i) {
    if (holds(a, i) && holds(b, i)) return true;
  }
  return false;
}

// --- the reference ---------------------------------------------------------------------------------------------------

using Data = std::map<std::string, std::vector<Row>>;

struct Named {
  std::string view_table, view_name, table_name;
  bool is_range = false;  // then the names are begins, and these the ends
  std::string view_end, table_end;
};

struct Reference {
  const Data& data;
  Texts tables;
  std::vector<std::vector<int>> records;  // by record: the row of each table

  Cell cell(const std::vector<int>& record, const std::string& table, const std::string& name) const {
    const auto t = static_cast<std::size_t>(std::find(tables.begin(), tables.end(), table) - tables.begin());
    return cell_of(table, data.at(table), record[t], name);
  }
  bool has(const std::string& table) const { return std::find(tables.begin(), tables.end(), table) != tables.end(); }
  // The tables as they were joined.
  std::string path() const {
    std::string text = "from";
    for (const std::string& table : tables) text += " " + table;
    return text;
  }
  // The first table that has the field.
  std::optional<std::string> owner(const std::string& name) const {
    for (const std::string& table : tables) {
      if (find_field(table, name) != nullptr) return table;
    }
    return std::nullopt;
  }
  std::optional<std::string> range_for(const std::string& begin) const {
    for (const std::string& table : tables) {
      if (keys_of_tables().at(table).begin == begin) return table;
    }
    for (const std::string& table : tables) {
      const std::string& own = keys_of_tables().at(table).begin;
      if (!own.empty() && is_date(own) != is_date(begin)) return table;
    }
    return std::nullopt;
  }

  static bool equal(const Cell& a, const Cell& b, bool is_text) {
    return is_text ? a.text == b.text : a.number == b.number;
  }

  bool matches_naturally(const std::vector<int>& record, const std::string& table, int row) const {
    const Keys& keys = keys_of_tables().at(table);
    const auto agree = [&](const std::string& name, bool is_null_tolerant) {
      const auto from = owner(name);
      if (!from) return true;
      const Cell mine = cell(record, *from, name);
      const Cell theirs = cell_of(table, data.at(table), row, name);
      return (is_null_tolerant && (mine.is_null || theirs.is_null)) ||
             equal(mine, theirs, find_field(table, name)->is_text);
    };
    for (const std::string& name : keys.strict) {
      if (!agree(name, false)) return false;
    }
    for (const std::string& name : keys.foreign) {
      if (!agree(name, true)) return false;
    }
    const auto from = keys.begin.empty() ? std::nullopt : range_for(keys.begin);
    if (!from) return true;
    const Keys& own = keys_of_tables().at(*from);
    return meet(span_of(own.begin, cell(record, *from, own.begin), own.end, cell(record, *from, own.end)),
                table_span(table, row, keys.begin, keys.end), is_date(own.begin) != is_date(keys.begin));
  }

  Span table_span(const std::string& table, int row, const std::string& begin, const std::string& end) const {
    const std::vector<Row>& rows = data.at(table);
    return span_of(begin, cell_of(table, rows, row, begin), end, cell_of(table, rows, row, end));
  }

  bool matches_named(const std::vector<int>& record, const std::string& table, int row,
                     const std::vector<Named>& keys) const {
    return std::all_of(keys.begin(), keys.end(), [&](const Named& key) {
      const Cell mine = cell(record, key.view_table, key.view_name);
      if (key.is_range) {
        const Span span = span_of(key.view_name, mine, key.view_end, cell(record, key.view_table, key.view_end));
        return meet(span, table_span(table, row, key.table_name, key.table_end),
                    is_date(key.view_name) != is_date(key.table_name));
      }
      const Cell theirs = cell_of(table, data.at(table), row, key.table_name);
      return equal(mine, theirs, find_field(table, key.table_name)->is_text);
    });
  }

  bool shares_a_key_with(const std::string& table) const {
    const Keys& keys = keys_of_tables().at(table);
    const auto has = [&](const std::string& name) { return owner(name).has_value(); };
    return std::any_of(keys.strict.begin(), keys.strict.end(), has) ||
           std::any_of(keys.foreign.begin(), keys.foreign.end(), has) || (!keys.begin.empty() && range_for(keys.begin));
  }

  // `second` are the second view's rows in its order.
  void join(const std::string& table, const std::vector<int>& second, bool outer, const std::vector<Named>& keys) {
    std::vector<std::vector<int>> joined;
    for (const std::vector<int>& record : records) {
      const std::size_t before = joined.size();
      const auto add = [&](int row) {
        joined.push_back(record);
        joined.back().push_back(row);
      };
      for (const int row : second) {
        if (keys.empty() ? matches_naturally(record, table, row) : matches_named(record, table, row, keys)) add(row);
      }
      if (outer && joined.size() == before) add(kAbsent);
    }
    records = std::move(joined);
    tables.push_back(table);
  }
};

// --- random data and joins -------------------------------------------------------------------------------------------

class Generator {
 public:
  explicit Generator(std::uint64_t seed) : random_(seed) {}

  int below(int n) { return static_cast<int>(random_() % static_cast<unsigned>(n)); }
  bool one_in(int n) { return below(n) == 0; }
  std::string one_of(const Texts& texts) {
    return texts[static_cast<std::size_t>(below(static_cast<int>(texts.size())))];
  }

  // A value, or the empty text for a field that is left null.
  std::string value(const FlatField& field) {
    if (one_in(5)) return "";
    if (is_date(field.name)) return std::to_string(kDays[below(6)]);
    if (field.name == "time" || field.name == "endtime") {
      return std::to_string(static_cast<long>(epoch(kDays[0])) + kQuarter * below(24));
    }
    if (field.width == 1) return one_of({"A", "B"});
    return field.is_text ? one_of({"A", "B", "AB"}) : one_of({"0", "1", "2", "-1"});
  }

  Data data() {
    Data data;
    for (const auto& [table, fields] : flat_schema()) {
      std::vector<Row>& rows = data[table];
      rows.resize(static_cast<std::size_t>(one_in(8) ? 0 : below(14)));
      for (Row& row : rows) {
        for (const FlatField& field : fields) {
          if (const std::string text = value(field); !text.empty()) row[field.name] = text;
        }
      }
    }
    return data;
  }

  // Keys that can be compared, now and then a range.
  std::vector<Named> named_keys(const Texts& view_tables, const std::string& table) {
    std::vector<Named> keys;
    for (int n = 1 + below(2); n > 0; --n) {
      const std::string from = one_of(view_tables);
      const Keys& mine = keys_of_tables().at(from);
      const Keys& theirs = keys_of_tables().at(table);
      if (one_in(3) && !mine.begin.empty() && !theirs.begin.empty()) {
        keys.push_back({from, mine.begin, theirs.begin, true, mine.end, theirs.end});
        continue;
      }
      const FlatField& a = early_field(from);
      const FlatField& b = early_field(table);
      if (a.is_text == b.is_text) keys.push_back({from, a.name, b.name, false, "", ""});
    }
    return keys;
  }

 private:
  // One of a table's first fields, where its keys are; not every table has five.
  const FlatField& early_field(const std::string& table) {
    const auto& fields = flat_schema().at(table);
    return fields[static_cast<std::size_t>(below(static_cast<int>(std::min<std::size_t>(fields.size(), 5))))];
  }

  std::mt19937 random_;
};

// The engine's records as the reference holds them.
std::vector<std::vector<int>> records_of_view(Dbptr view, const Texts& tables) {
  std::vector<std::vector<int>> records(static_cast<std::size_t>(record_count(view)));
  for (const std::string& table : tables) {
    const auto rows = triglub::base_rows(view, table.c_str());
    for (std::size_t r = 0; r < rows.size(); ++r) {
      records[r].push_back(rows[r] == triglub::NO_BASE_ROW ? kAbsent : static_cast<int>(rows[r]));
    }
  }
  return records;
}

Dbptr join(Dbptr a, Dbptr b, const std::vector<Named>& keys, bool outer) {
  Texts first, second;
  for (const Named& key : keys) {
    const std::string from = key.view_table + ".";
    first.push_back(from + key.view_name + (key.is_range ? "::" + from + key.view_end : ""));
    second.push_back(key.table_name + (key.is_range ? "::" + key.table_end : ""));
  }
  TextTbl view_keys(first), table_keys(second);
  return dbjoin(a, b, keys.empty() ? nullptr : view_keys.address(), keys.empty() ? nullptr : table_keys.address(),
                outer ? 1 : 0, nullptr, nullptr);
}

// A view that is joined on and on, and what the reference has of it.
struct Chain {
  Dbptr view;
  Reference reference;
};

Chain chain_from(Tables& tables, const Data& data, const std::string& start) {
  Chain chain{tables.table(start), {data, {start}, {}}};
  for (int row = 0; row < static_cast<int>(data.at(start).size()); ++row) chain.reference.records.push_back({row});
  return chain;
}

// Some of a table's rows in any order, some twice; most often nothing, for the table itself.
std::optional<std::vector<int>> chosen_rows(Generator& random, int count) {
  if (count == 0 || !random.one_in(4)) return std::nullopt;
  std::vector<int> rows(static_cast<std::size_t>(random.below(2 * count)));
  for (int& row : rows) row = random.below(count);
  return rows;
}

std::vector<int> all_rows(std::size_t count) {
  std::vector<int> rows(count);
  std::iota(rows.begin(), rows.end(), 0);
  return rows;
}

// Joins the table to the chain on random terms; false when the two have no key in common.
bool join_on(Chain& chain, Tables& tables, const std::string& table, Generator& random) {
  Reference& reference = chain.reference;
  const std::size_t count = reference.data.at(table).size();
  const auto chosen = chosen_rows(random, static_cast<int>(count));
  Dbptr other = tables.table(table);
  if (chosen) other = triglub::view_of_records(other, {chosen->begin(), chosen->end()}, nullptr);
  const bool outer = random.one_in(2);
  const auto keys = random.one_in(3) ? random.named_keys(reference.tables, table) : std::vector<Named>();
  SCOPED_TRACE(reference.path() + (outer ? " outer " : " to ") + table +
               (keys.empty() ? "" : " on " + keys[0].view_name));
  const CollectedLog log;
  const Dbptr joined = join(chain.view, other, keys, outer);
  if (keys.empty() && !reference.shares_a_key_with(table)) {
    EXPECT_EQ(joined, Dbptr());
    EXPECT_EQ(log.lines().size(), 1u);
    return false;
  }
  EXPECT_TRUE(is_view(joined));
  reference.join(table, chosen ? *chosen : all_rows(count), outer, keys);
  EXPECT_EQ(records_of_view(joined, reference.tables), reference.records);
  chain.view = joined;
  return true;
}

TEST(RandomJoin, AgreesWithNestedLoops) {
  Generator random(random_seed());
  Texts names;
  for (const auto& [table, fields] : flat_schema()) names.push_back(table);
  int joins = 0;
  std::size_t matches = 0;
  for (int i = 0; i < 150; ++i) {
    const Data data = random.data();
    Tables tables;
    for (const auto& [table, rows] : data) tables.add_all(table, rows);
    for (int n = 0; n < 20; ++n) {
      Chain chain = chain_from(tables, data, random.one_of(names));
      for (int step = 1 + random.below(4); step > 0 && chain.reference.records.size() < 400; --step) {
        const std::string table = random.one_of(names);
        if (chain.reference.has(table) || !join_on(chain, tables, table, random)) continue;
        ++joins;
        matches += chain.reference.records.size();
      }
      ASSERT_FALSE(HasFailure());
    }
  }
  EXPECT_GT(joins, 1000);
  EXPECT_GT(matches, 10000u);
}

}  // namespace
}  // namespace triglub_test
