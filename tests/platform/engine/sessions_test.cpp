// Sessions over one database: what is theirs, what they share, and who outlives whom.
#include "platform/sessions.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

#include "engine/session/registry.h"
#include "engine/source/source.h"
#include "tables.h"

namespace triglub_test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

Dbptr further_session(Dbptr db) {
  Dbptr session;
  if (triglub::open_session(db, &session) != 0) throw std::runtime_error("open_session");
  return session;
}

class Sessions : public ::testing::Test {
 protected:
  Sessions() {
    files_.add_row("site", {{"sta", "B"}, {"lat", "2"}});
    files_.add_row("site", {{"sta", "A"}, {"lat", "1"}});
    if (dbopen(files_.write().c_str(), "r", &db_) != 0) throw std::runtime_error("dbopen");
  }
  ~Sessions() override { dbclose(db_); }

  FlatDatabase files_;
  Dbptr db_;
};

TEST_F(Sessions, SeeTheSameTables) {
  const Dbptr other = further_session(db_);
  EXPECT_NE(other.database, db_.database);
  EXPECT_THAT(texts_of(table_of(other, "site"), "sta"), ElementsAre("B", "A"));
  EXPECT_THAT(texts_of(table_of(db_, "site"), "sta"), ElementsAre("B", "A"));
  EXPECT_EQ(dbclose(other), 0);
}

TEST_F(Sessions, BeginAsANewHandleDoes) {
  const Dbptr other = further_session(table_of(db_, "site"));
  EXPECT_EQ(other, (Dbptr{other.database, dbALL, dbALL, dbALL}));
  EXPECT_EQ(dbclose(other), 0);
}

TEST_F(Sessions, ReadTheFilesOnce) {
  EXPECT_EQ(record_count(table_of(db_, "site")), 2);
  files_.write_file("db.site", "");
  const Dbptr other = further_session(db_);
  EXPECT_EQ(record_count(table_of(other, "site")), 2);
  files_.write_file("db.network", flat_row("network", {{"net", "XX"}}) + "\n");
  EXPECT_EQ(record_count(table_of(other, "network")), 1) << "not asked for before";
  files_.write_file("db.network", "");
  EXPECT_EQ(record_count(table_of(db_, "network")), 1);
  EXPECT_EQ(dbclose(other), 0);
}

TEST_F(Sessions, KeepAHundredThousandExpressionsCompiled) {
  const Dbptr site = table_of(db_, "site");
  Expression* compiled = nullptr;
  for (int i = 0; i < 100'000; ++i) {
    ASSERT_EQ(dbex_compile(site, ("lat + " + std::to_string(i)).c_str(), &compiled, dbREAL), 0) << i;
  }
  EXPECT_EQ(dbex_compile(site, "lat + 7", &compiled, dbREAL), 0) << "which is known";
  const CollectedLog log;
  EXPECT_NE(dbex_compile(site, "lat + 100000", &compiled, dbREAL), 0);
  EXPECT_THAT(log.lines(), ElementsAre("warning: more than 100000 expressions of one session"));
  const Dbptr other = further_session(db_);
  EXPECT_EQ(dbex_compile(table_of(other, "site"), "lat + 100000", &compiled, dbREAL), 0);
  EXPECT_EQ(dbclose(other), 0);
}

TEST_F(Sessions, HaveViewsAndNamesOfTheirOwn) {
  const Dbptr other = further_session(db_);
  const Dbptr sorted = dbsort(table_of(db_, "site"), TextTbl({"sta"}).get(), 0, "mine");
  EXPECT_FALSE(is_view(table_of(other, "mine")));
  EXPECT_EQ(record_count({other.database, sorted.table, dbALL, dbALL}), -1);
  const Dbptr own = dbsubset(table_of(other, "site"), "lat > 1", "mine");
  EXPECT_THAT(texts_of(table_of(other, "mine"), "sta"), ElementsAre("B"));
  EXPECT_THAT(texts_of(table_of(db_, "mine"), "sta"), ElementsAre("A", "B"));
  triglub::release_view(own);
  EXPECT_THAT(texts_of(table_of(db_, "mine"), "sta"), ElementsAre("A", "B"));
  EXPECT_EQ(dbclose(other), 0);
}

TEST_F(Sessions, DoNotJoinWithEachOther) {
  const Dbptr other = further_session(db_);
  CollectedLog log;
  EXPECT_EQ(dbjoin(table_of(db_, "site"), table_of(other, "sitechan"), nullptr, nullptr, 0, nullptr, nullptr), Dbptr());
  EXPECT_THAT(log.lines(), ElementsAre("warning: dbjoin: the views are of different databases"));
  EXPECT_EQ(dbclose(other), 0);
}

TEST_F(Sessions, StayWhenTheFirstIsClosed) {
  const Dbptr first = db_;
  const Dbptr other = further_session(first);
  const Dbptr site = table_of(other, "site");
  dbclose(db_);
  EXPECT_EQ(record_count(table_of(first, "site")), -1);
  EXPECT_THAT(texts_of(site, "sta"), ElementsAre("B", "A"));
  EXPECT_THAT(texts_of(process(other, {"dbopen sitechan", "dbjoin -o site"}), "sta"), IsEmpty());
  const Dbptr last = further_session(other);
  EXPECT_EQ(dbclose(other), 0);
  EXPECT_THAT(texts_of(table_of(last, "site"), "sta"), ElementsAre("B", "A"));
  EXPECT_EQ(dbclose(last), 0);
}

TEST_F(Sessions, TellOnceThatATableRefusesToLoad) {
  files_.write_file("db.network", "cut\n");
  const Dbptr other = further_session(db_);
  CollectedLog log;
  EXPECT_FALSE(is_view(table_of(db_, "network")));
  const Texts complaints = log.lines();
  EXPECT_THAT(complaints, testing::Contains(HasSubstr("table network is not loaded")));
  EXPECT_FALSE(is_view(table_of(other, "network")));
  EXPECT_FALSE(is_view(table_of(db_, "network")));
  EXPECT_EQ(log.lines(), complaints);
  EXPECT_EQ(dbclose(other), 0);
}

TEST_F(Sessions, NeedOneThatIsOpen) {
  const Dbptr closed = db_;
  dbclose(db_);
  CollectedLog log;
  for (const Dbptr& none : {closed, Dbptr(), Dbptr{1 << 20, 0, 0, 0}}) {
    Dbptr session{1, 2, 3, 4};
    EXPECT_EQ(triglub::open_session(none, &session), -1);
    EXPECT_EQ(session, Dbptr());
  }
  EXPECT_THAT(log.lines(), IsEmpty());
}

// --- the registry ----------------------------------------------------------------------------------------------------

// A source without a table's rows.
class EmptySource final : public triglub::Source {
 public:
  const std::shared_ptr<const triglub::Schema>& schema() const override { return schema_; }
  std::unique_ptr<const triglub::Table> load(const triglub::TableSchema&,
                                             const triglub::RowConditions&) const override {
    return nullptr;
  }
  std::string table_place(const triglub::TableSchema&) const override { return ""; }
  std::string response_folder(const triglub::TableSchema&) const override { return "."; }

 private:
  std::shared_ptr<const triglub::Schema> schema_ = triglub::Schema::builtin();
};

class RegistryOfSessions : public ::testing::Test {
 protected:
  std::unique_ptr<triglub::Session> session() const { return std::make_unique<triglub::Session>(snapshot_); }

  std::shared_ptr<const triglub::Snapshot> snapshot_ =
      std::make_shared<const triglub::Snapshot>(std::make_shared<const EmptySource>());
  triglub::Registry registry_;
};

TEST_F(RegistryOfSessions, NumbersThemFromNoughtAndNeverTwice) {
  std::vector<triglub::Session*> added;
  for (std::int64_t i = 0; i < 100; ++i) {
    auto next = session();
    added.push_back(next.get());
    EXPECT_EQ(registry_.add(std::move(next)), i);
  }
  EXPECT_TRUE(registry_.remove(99));
  EXPECT_EQ(registry_.add(session()), 100);
  EXPECT_EQ(registry_.find(99), nullptr);
  for (std::int64_t i = 0; i < 99; ++i) EXPECT_EQ(registry_.find(i), added[static_cast<std::size_t>(i)]) << i;
}

TEST_F(RegistryOfSessions, KnowsNoOtherNumber) {
  EXPECT_EQ(registry_.find(0), nullptr);
  registry_.add(session());
  for (const std::int64_t none :
       {std::int64_t{-1}, dbINVALID, dbALL, std::int64_t{1}, std::int64_t{2}, INT64_MAX, INT64_MIN}) {
    EXPECT_EQ(registry_.find(none), nullptr) << none;
    EXPECT_FALSE(registry_.remove(none)) << none;
  }
  EXPECT_NE(registry_.find(0), nullptr);
}

TEST_F(RegistryOfSessions, EndsASessionOnceAndThoseThatAreLeftWithItself) {
  {
    triglub::Registry registry;
    EXPECT_EQ(registry.add(session()), 0);
    EXPECT_EQ(registry.add(session()), 1);
    EXPECT_EQ(snapshot_.use_count(), 3);
    EXPECT_TRUE(registry.remove(0));
    EXPECT_FALSE(registry.remove(0));
    EXPECT_EQ(snapshot_.use_count(), 2);
  }
  EXPECT_EQ(snapshot_.use_count(), 1);
}

}  // namespace
}  // namespace triglub_test
