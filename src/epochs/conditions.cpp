// They are compiled once without a record: to know what they look at, and to refuse them before any work is done.
#include "epochs/conditions.h"

#include <cstdlib>
#include <utility>

#include "dbhelper.h"
#include "epochs/record_view.h"
#include "fatal_failure.h"
#include "platform/record_expression.h"

namespace triglub {

namespace {

constexpr std::uint32_t bit_of(RecordTable table) { return 1U << table; }

constexpr std::uint32_t kOfChannels = bit_of(kSitechan) | bit_of(kSchanloc) | bit_of(kSensor) | bit_of(kInstrument) |
                                      bit_of(kCalibration) | bit_of(kStage) | bit_of(kEpoch) | bit_of(kChain);

std::vector<std::string> texts_of(rbtree* array) {
  std::vector<std::string> texts;
  if (cntarr(array) == 0) return texts;
  Tbl* list = arr2expr(array);
  for (long i = 0; i < maxtbl(list); ++i) texts.emplace_back(static_cast<const char*>(gettbl(list, i)));
  freetbl(list, std::free);
  return texts;
}

std::uint32_t tables_of(const std::string& text, Dbptr names, std::string* fault) {
  std::uint32_t tables = 0;
  const auto expression = RecordExpression::compile(names, text, fault);
  if (expression == nullptr) return tables;
  for (const std::size_t table : expression->all_tables()) tables |= 1U << table;
  return tables;
}

}  // namespace

Conditions::Conditions(rbtree* array, Dbptr db) {
  std::vector<std::string> texts = texts_of(array);
  if (texts.empty()) return;
  const Dbptr names = make_empty_record_view(db);
  std::string fault;
  for (std::string& text : texts) {
    const std::uint32_t tables = tables_of(text, names, &fault);
    if (!fault.empty()) break;
    all_.push_back({std::move(text), tables});
  }
  release_view(names);
  if (!fault.empty()) throw FatalFailure("a condition cannot be used: " + fault);
}

bool Conditions::ask_for_channels() const { return (tables() & kOfChannels) != 0; }

bool Conditions::ask_beyond_networks() const { return (tables() & ~bit_of(kNetwork)) != 0; }

std::uint32_t Conditions::tables() const {
  std::uint32_t tables = 0;
  for (const Condition& one : all_) tables |= one.tables;
  return tables;
}

Dbptr subset_and_release(Dbptr view, const Condition& condition) {
  const Dbptr chosen = dbsubset(view, condition.text.c_str(), nullptr);
  release_view(view);
  if (chosen.table < 0) throw FatalFailure("a condition cannot be used: " + condition.text);
  return chosen;
}

}  // namespace triglub
