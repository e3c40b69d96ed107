// Eight threads, a session each, over one database: each gets what one thread alone gets.
#include <atomic>
#include <barrier>
#include <functional>
#include <thread>

#include "platform/sessions.h"
#include "tables.h"

namespace triglub_test {
namespace {

constexpr int kThreads = 8;

// Runs work(0) to work(7), each in a thread, from the same moment on.
void run_together(const std::function<void(int)>& work) {
  std::barrier start(kThreads);
  std::vector<std::thread> threads;
  for (int i = 0; i < kThreads; ++i) {
    threads.emplace_back([&, i] {
      start.arrive_and_wait();
      work(i);
    });
  }
  for (std::thread& thread : threads) thread.join();
}

// A small network: stations with epochs, channels with epochs, sensors, instruments and codes.
void write_network(FlatDatabase* files) {
  const char* const channels[] = {"BHZ", "BHN", "BHE"};
  for (int i = 0; i < 60; ++i) {
    const std::string sta = "S" + std::to_string(i * 7 % 60);
    files->add_row("site", {{"sta", sta},
                            {"ondate", "1990001"},
                            {"lat", std::to_string(i % 9) + ".5"},
                            {"elev", i % 5 == 0 ? "0" : "0.25"},
                            {"staname", "Station <" + std::to_string(i % 4) + ">"}});
    files->add_row("snetsta", {{"snet", i % 3 == 0 ? "AA" : "BB"}, {"fsta", sta}, {"sta", sta}});
    for (int c = 0; c < 3; ++c) {
      const std::string id = std::to_string(3 * i + c);
      files->add_row("sitechan", {{"sta", sta}, {"chan", channels[c]}, {"ondate", "1990001"}, {"chanid", id}});
      files->add_row("sensor", {{"sta", sta},
                                {"chan", channels[c]},
                                {"time", "631152000.00000"},
                                {"inid", std::to_string(i % 6)},
                                {"chanid", id}});
      files->add_row("schanloc", {{"sta", sta}, {"chan", channels[c]}, {"fchan", channels[c]}, {"loc", "00"}});
    }
  }
  for (int i = 0; i < 5; ++i) {
    files->add_row("instrument", {{"inid", std::to_string(i)}, {"insname", "kind " + std::to_string(i % 2)}});
  }
}

// --- what a thread does ----------------------------------------------------------------------------------------------

Texts all_values(Dbptr view) {
  Texts texts;
  long fields = 0;
  dbquery(view, dbFIELD_COUNT, &fields);
  std::array<char, 1024> buffer{};
  for (view.record = 0; view.record < record_count(view); ++view.record) {
    std::string line;
    for (view.field = 0; view.field < fields; ++view.field) {
      dbget(view, buffer.data());
      line.append(buffer.data()).append("|");
    }
    texts.push_back(line);
  }
  return texts;
}

Texts open_tables(Dbptr db) {
  Texts texts;
  for (const std::string& name : triglub::table_names(db)) {
    const Texts values = all_values(table_of(db, name));
    texts.insert(texts.end(), values.begin(), values.end());
  }
  return texts;
}

Texts run_step_lists(Dbptr db) {
  Texts texts;
  for (const Texts& steps : std::vector<Texts>{
           {"dbopen sitechan", "dbjoin site", "dbjoin -o sensor", "dbjoin -o instrument"},
           {"dbopen sitechan", "dbjoin site", "dbsort sta chan"},
           {"dbopen sitechan", "dbjoin -o snetsta", "dbsubset snet =~ /AA/", "dbsort -u sta"},
           {"dbopen site", "dbsort lat sta", "dbsubset lat > 4 && staname !~ /.*1.*/"},
           {"dbopen site", "dbsubset sta =~ /S1.?/"},
           {"dbopen sensor", "dbjoin instrument inid", "dbjoin sitechan sta chan time::endtime:ondate::offdate"}}) {
    const Dbptr view = process(db, steps);
    const Texts values = all_values(view);
    const char* operations = nullptr;
    dbquery(view, dbVIEW_OPERATIONS, &operations);
    texts.emplace_back(operations);
    texts.insert(texts.end(), values.begin(), values.end());
  }
  return texts;
}

Texts evaluate_expressions(Dbptr db) {
  const Dbptr view = process(db, {"dbopen sitechan", "dbjoin site"});
  Texts texts;
  std::string kept;
  for (const char* text : {"concat(sta, \"-\", upper(staname), \"-\", str(lat * 2))", "xml(staname)", "lat / elev",
                           "format(\"%08.3f\", lat) =~ /.*4.5.*/ ? replace(chan, \"B\", \"H\") : substr(sta, 0, 2)"}) {
    Expression* compiled = nullptr;
    if (dbex_compile(view, text, &compiled, dbSTRING) != 0) throw std::runtime_error(text);
    for (long record = 0; record < record_count(view); ++record) {
      const bool is_good = triglub::evaluate_text(at(view, record), compiled, &kept);
      texts.push_back(is_good ? kept : "fails");
      std::int64_t length = 0;
      dbex_evalstr(at(view, record), "length(concat(sta, chan)) + (staname =~ /.*2.*/)", dbINTEGER, &length);
      texts.push_back(std::to_string(length));
    }
  }
  return texts;
}

Texts find_records(Dbptr db) {
  const Dbptr view = process(db, {"dbopen sitechan", "dbjoin site", "dbsort lat"});
  Texts texts;
  for (const char* text : {"chan =~ /BHN/", "sta =~ /S[0-9]/", "lat > 6 && chan == 'BHE'"}) {
    for (const int direction : {0, 1}) {
      Expression* hook = nullptr;
      Dbptr place = at(view, direction == 0 ? -1 : record_count(view));
      while ((place.record = dbfind(place, text, direction, &hook)) >= 0) texts.push_back(std::to_string(place.record));
      dbfind_release(&hook);
    }
  }
  // Further away than are looked at one by one, so that the runs of the base table, which all sessions share, are
  // asked.
  Expression* hook = nullptr;
  texts.push_back(std::to_string(dbfind(at(table_of(db, "stage"), -1), "sta =~ /S1/", 0, &hook)));
  dbfind_release(&hook);
  return texts;
}

Texts find_text_runs(Dbptr db) {
  Texts texts;
  for (const char* field : {"sta", "chan", "chanid", "ondate"}) {
    const Dbptr place = dblookup(table_of(db, "sitechan"), nullptr, nullptr, field, nullptr);
    std::vector<triglub::TextRun> runs;
    triglub::text_runs(place, 0, 1000, &runs);
    for (const auto& run : runs) texts.push_back(std::string(run.text) + " to " + std::to_string(run.end));
    const auto is_wanted = [](std::string_view text) { return text.ends_with('1'); };
    for (const std::uint32_t record : triglub::records_with_text(place, is_wanted)) {
      texts.push_back(std::to_string(record));
    }
  }
  return texts;
}

Texts query_fields(Dbptr db) {
  Texts texts;
  for (const std::string& name : triglub::table_names(db)) {
    Dbptr table = table_of(db, name);
    long fields = 0;
    dbquery(table, dbFIELD_COUNT, &fields);
    for (table.field = 0; table.field < fields; ++table.field) {
      for (const int code : {dbFIELD_NAME, dbFIELD_DETAIL, dbFIELD_BASE_TABLE, dbNULL_VALUE}) {
        const char* answer = nullptr;
        if (dbquery(table, code, &answer) == 0) texts.emplace_back(answer);
      }
    }
  }
  return texts;
}

Texts do_everything(Dbptr db) {
  Texts all;
  for (const auto& work :
       {open_tables, run_step_lists, evaluate_expressions, find_records, find_text_runs, query_fields}) {
    const Texts texts = work(db);
    all.insert(all.end(), texts.begin(), texts.end());
  }
  return all;
}

// --- the tests -------------------------------------------------------------------------------------------------------

class SessionThreads : public ::testing::Test {
 protected:
  SessionThreads() {
    write_network(&files_);
    for (int i = 0; i < 600; ++i) {
      files_.add_row("stage", {{"sta", i < 500 ? "S0" : "S1"}, {"chan", "BHZ"}, {"stageid", std::to_string(i + 1)}});
    }
    files_.write();
  }

  Dbptr open() const {
    Dbptr db;
    if (dbopen(files_.prefix().c_str(), "r", &db) != 0) throw std::runtime_error("dbopen");
    return db;
  }

  // What one thread gets in a database of its own.
  Texts alone(const std::function<Texts(Dbptr)>& work) const {
    const Dbptr db = open();
    Texts texts = work(db);
    dbclose(db);
    return texts;
  }

  // Has each thread do the work in a session over one database of which nothing was asked before.
  void expect_same(const std::function<Texts(Dbptr)>& work, std::size_t least_texts) const {
    const Texts expected = alone(work);
    EXPECT_GE(expected.size(), least_texts);
    for (int round = 0; round < 3; ++round) {
      const Dbptr db = open();
      std::array<Texts, kThreads> texts;
      run_together([&](int i) {
        Dbptr session;
        if (triglub::open_session(db, &session) != 0) return;
        texts[static_cast<std::size_t>(i)] = work(session);
        dbclose(session);
      });
      for (const Texts& of_thread : texts) EXPECT_TRUE(of_thread == expected);
      dbclose(db);
    }
  }

  FlatDatabase files_;
};

TEST_F(SessionThreads, OpenTablesForTheFirstTime) { expect_same(open_tables, 1265); }
TEST_F(SessionThreads, JoinSortAndSubset) { expect_same(run_step_lists, 500); }
TEST_F(SessionThreads, EvaluateExpressionsWithTextsOnTheWay) { expect_same(evaluate_expressions, 1000); }
TEST_F(SessionThreads, FindRecords) { expect_same(find_records, 200); }
TEST_F(SessionThreads, FindRunsOfTexts) { expect_same(find_text_runs, 300); }
TEST_F(SessionThreads, QueryFields) { expect_same(query_fields, 300); }

TEST_F(SessionThreads, GoFromOpenToCloseEachWithADatabaseOfItsOwn) {
  const Texts expected = alone(do_everything);
  std::array<Texts, kThreads> texts;
  run_together([&](int i) { texts[static_cast<std::size_t>(i)] = alone(do_everything); });
  for (const Texts& of_thread : texts) EXPECT_TRUE(of_thread == expected);
}

TEST_F(SessionThreads, MayHaveHelpersOfTheirOwn) {
  std::string rows;
  for (int i = 0; i < 45000; ++i) {
    rows +=
        flat_row("affiliation", {{"net", "N" + std::to_string(i % 7)}, {"sta", "S" + std::to_string(i % 60)}}) + "\n";
  }
  files_.write_file("db.affiliation", rows);
  const auto work = [](Dbptr db) {
    Texts texts;
    for (const Texts& steps : {Texts{"dbopen affiliation", "dbjoin site"}, Texts{"dbopen affiliation", "dbsort net"}}) {
      for (const std::uint32_t row : triglub::base_rows(process(db, steps), "affiliation")) {
        texts.push_back(std::to_string(row));
      }
    }
    return texts;
  };
  const Texts expected = alone(work);
  EXPECT_EQ(expected.size(), 90000U);
  triglub::set_threads(3);
  const Dbptr db = open();
  std::array<Texts, kThreads> texts;
  run_together([&](int i) {
    Dbptr session;
    if (triglub::open_session(db, &session) != 0) return;
    if (i == 0) triglub::set_threads(2);
    texts[static_cast<std::size_t>(i)] = work(session);
    dbclose(session);
  });
  triglub::set_threads(1);
  for (const Texts& of_thread : texts) EXPECT_TRUE(of_thread == expected);
  dbclose(db);
}

TEST_F(SessionThreads, ComeAndGoWhileOthersWork) {
  const Dbptr db = open();
  const Texts expected = alone(find_text_runs);
  std::atomic<int> good{0};
  run_together([&](int i) {
    for (int round = 0; round < 20; ++round) {
      Dbptr session;
      if (triglub::open_session(db, &session) != 0) return;
      if (i % 2 == 1 || find_text_runs(session) == expected) ++good;
      if (dbclose(session) != 0 || record_count(session) != -1) return;
    }
  });
  EXPECT_EQ(good, kThreads * 20);
  EXPECT_EQ(record_count(table_of(db, "sitechan")), 180);
  dbclose(db);
}

// --- the log ---------------------------------------------------------------------------------------------------------

void collect_text(ElogLevel, const char* text, void* context) { static_cast<Texts*>(context)->emplace_back(text); }

TEST_F(SessionThreads, HaveALogOfTheirOwn) {
  const Dbptr db = open();
  std::array<Texts, kThreads> messages;
  const CollectedLog of_process;
  run_together([&](int i) {
    elog_set_thread_sink(collect_text, &messages[static_cast<std::size_t>(i)]);
    Dbptr session;
    if (triglub::open_session(db, &session) != 0) return;
    for (int round = 0; round < 50; ++round) process(session, {"dbopen site", "dbfly " + std::to_string(i)});
    dbclose(session);
  });
  EXPECT_THAT(of_process.lines(), testing::IsEmpty());
  for (int i = 0; i < kThreads; ++i) {
    const std::string step = "dbfly " + std::to_string(i);
    Texts expected;
    for (int round = 0; round < 50; ++round) {
      expected.push_back("dbprocess: '" + step + "': there is no such operation");
      expected.push_back("dbprocess: the step '" + step + "' failed");
    }
    EXPECT_EQ(messages[static_cast<std::size_t>(i)], expected);
  }
  dbclose(db);
}

TEST_F(SessionThreads, HearOnceOfATableThatRefusesToLoad) {
  files_.write_file("db.network", "cut\n");
  const Dbptr db = open();
  std::array<Texts, kThreads> messages;
  std::atomic<int> refused{0};
  run_together([&](int i) {
    elog_set_thread_sink(collect_text, &messages[static_cast<std::size_t>(i)]);
    Dbptr session;
    if (triglub::open_session(db, &session) != 0) return;
    if (!is_view(table_of(session, "network"))) ++refused;
    dbclose(session);
  });
  EXPECT_EQ(refused, kThreads);
  std::size_t told = 0;
  for (const Texts& of_thread : messages) told += of_thread.empty() ? 0 : 1;
  EXPECT_EQ(told, 1U);
  dbclose(db);
}

}  // namespace
}  // namespace triglub_test
