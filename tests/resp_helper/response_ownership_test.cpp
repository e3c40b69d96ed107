// Who reads and frees the responses of the cache: this program has its own get_response and free_response, which count.
#include <gtest/gtest.h>

#include <csignal>
#include <map>
#include <string>
#include <vector>

#include "resp_helper.h"
#include "stage_database.h"

namespace {

using triglub_test::StageDatabase;

using Texts = std::vector<std::string>;

struct Library {
  std::map<std::string, int> failures;  // the status that a file gives, by its name without folder
  bool gives_null = false;
  std::map<const Response*, std::string> given;
  Texts read;
  Texts freed;
} library;

}  // namespace

int get_response(const char* path, Response** response) {
  const std::string name = std::string(path).substr(std::string(path).rfind('/') + 1);
  library.read.push_back(name);
  const auto failure = library.failures.find(name);
  if (failure != library.failures.end()) return failure->second;
  *response = library.gives_null ? nullptr : new Response;
  library.given[*response] = name;
  return 0;
}

void free_response(Response* response) {
  library.freed.push_back(library.given.at(response));
  delete response;
}

namespace {

// Rows that name the files in an order that is not theirs, some of them twice.
void add_stages(StageDatabase& stages) {
  for (const char* file : {"c", "a", "b", "a", "c"}) stages.add_stage({{"dir", "resp"}, {"dfile", file}});
}

TEST(Ownership, FreesEachResponseOnceInTheOrderOfTheNames) {
  StageDatabase stages;
  add_stages(stages);
  {
    ResponseCache cache(stages.database(), "stage");
    EXPECT_TRUE(cache.add("resp/0"));
    EXPECT_EQ(library.read, (Texts{"a", "b", "c", "0"}));
    EXPECT_TRUE(library.freed.empty());
  }
  EXPECT_EQ(library.freed, (Texts{"0", "a", "b", "c"}));
}

TEST(Ownership, ReadsAFileThatIsThereOnlyOnce) {
  StageDatabase stages;
  add_stages(stages);
  ResponseCache cache(stages.database(), "stage");
  EXPECT_FALSE(cache.add("resp/a"));
  EXPECT_FALSE(cache.add(EMPTYFILENAME));
  EXPECT_EQ(library.read, (Texts{"a", "b", "c"}));
}

TEST(Ownership, KeepsNothingOfAReadThatFailsWithAnyStatus) {
  StageDatabase stages;
  add_stages(stages);
  library.failures = {{"a", -1}, {"b", 1}};
  {
    ResponseCache cache(stages.database(), "stage");
    EXPECT_EQ(cache.get("resp/a"), nullptr);
    EXPECT_EQ(cache.get("resp/b"), nullptr);
    EXPECT_NE(cache.get("resp/c"), nullptr);
    library.failures.clear();
    EXPECT_TRUE(cache.add("resp/a"));
  }
  EXPECT_EQ(library.freed, (Texts{"a", "c"}));
}

TEST(Ownership, LeavesItsViewInTheDatabase) {
  StageDatabase stages;
  add_stages(stages);
  const ResponseCache cache(stages.database(), "stage");
  const Dbptr view = dblookup(stages.database(), nullptr, "unique_responsefiles", nullptr, nullptr);
  long count = 0;
  ASSERT_EQ(dbquery(view, dbRECORD_COUNT, &count), 0);
  EXPECT_EQ(count, 3);
}

TEST(OwnershipDeathTest, StopsAtAResponseThatIsNone) {
  StageDatabase stages;
  add_stages(stages);
  const Dbptr db = stages.database();
  library.gives_null = true;
  EXPECT_EXIT(ResponseCache(db, "stage"), testing::KilledBySignal(SIGABRT), "response != __null");
}

}  // namespace
