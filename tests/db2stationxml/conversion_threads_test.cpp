// Conversions in threads: each thread has a conversion, a session and a parameter file of its own, and all share the
// tables and the responses. What they write is what one after the other writes.
#include <gmock/gmock.h>

#include <memory>
#include <thread>
#include <vector>

#include "conversion.h"
#include "platform/sessions.h"
#include "resp_helper.h"

namespace triglub_test {
namespace {

constexpr std::size_t kThreads = 8;

class ConversionThreads : public testing::Test {
 protected:
  ConversionThreads() {
    for (const char* net : {"KR", "IU", "II"}) stations_.add_network(net);
    for (int i = 0; i < 12; ++i) add_station(i);
    db_ = stations_.database();
  }

  void add_station(int i) {
    const std::string sta = "S" + std::to_string(i);
    stations_.add_station(i % 3 == 0 ? "KR" : i % 3 == 1 ? "IU" : "II", sta, std::to_string(i) + ".5");
    for (const char* chan : {"BHE", "BHN", "BHZ"}) {
      stations_.add_channel(sta, chan);
      stations_.add_stage(sta, chan, 1, {{"dir", "resp"}, {"dfile", "a" + std::to_string(i % 4) + ".paz"}});
      stations_.add_stage(sta, chan, 2, {{"iunits", "-"}, {"ounits", "-"}});
      stations_.write_response("resp/a" + std::to_string(i % 4) + ".paz");
    }
  }

  // The document that thread i writes: each its level and its network.
  static std::string write(std::size_t i, Dbptr session, std::shared_ptr<const ResponseCache> responses) {
    constexpr const char* kNetworks[] = {"/KR/", "/IU/", "/.*/"};
    Pf* pf = nullptr;
    if (pfparse(whole_tree(), "test", &pf) != 0) throw std::runtime_error("pfparse");
    rbtree* subset = newarr(nullptr);
    setarr(subset, "snetsta.snet", kNetworks[i % 3]);
    std::ostringstream out;
    triglub::Conversion conversion;
    conversion.use_responses(std::move(responses));
    const auto level = i % 2 == 0 ? triglub::DetailLevel::response : triglub::DetailLevel::channel;
    conversion.write(session, pf, subset, out, triglub::flags_for(level));
    freearr(subset, nullptr);
    pffree(pf);
    return out.str();
  }

  std::vector<std::string> write_side_by_side(const std::shared_ptr<const ResponseCache>& responses) {
    std::vector<std::string> documents(kThreads);
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < kThreads; ++i) {
      Dbptr session;
      if (triglub::open_session(db_, &session) != 0) throw std::runtime_error("open_session");
      threads.emplace_back([&documents, &responses, i, session] {
        documents[i] = write(i, session, responses);
        dbclose(session);
      });
    }
    for (std::thread& thread : threads) thread.join();
    return documents;
  }

  Stations stations_;
  Dbptr db_;
};

// Tables, dictionaries and indexes are made by whichever thread comes first.
TEST_F(ConversionThreads, WriteWhatOneAfterTheOtherWrites) {
  const auto responses = std::make_shared<const ResponseCache>(db_, "stage");
  const std::vector<std::string> documents = write_side_by_side(responses);
  for (std::size_t i = 0; i < kThreads; ++i) {
    EXPECT_THAT(documents[i], testing::HasSubstr("<Channel code=")) << i;
    EXPECT_EQ(documents[i], write(i, db_, responses)) << i;
  }
}

}  // namespace
}  // namespace triglub_test
