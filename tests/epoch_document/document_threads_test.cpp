// One document written by several threads, and several documents of one database.
#include <gmock/gmock.h>

#include <atomic>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "document/written.h"
#include "platform/sessions.h"
#include "tree/tree_reading.h"

namespace triglub_test {
namespace {

using testing::IsEmpty;
using testing::Not;
using triglub::DetailLevel;
using triglub::EpochDocument;

constexpr std::size_t kThreads = 6;

const std::string kPaz = "theoretical 1 instrument paz author\n1.0 1.0\n1\n-0.1 0.2 0 0\n1\n0 0 0 0\n";

MadeRows network_rows() {
  MadeRows rows;
  for (int s = 0; s < 40; ++s) {
    const std::string sta = "S" + std::to_string(s);
    rows.push_back({"snetsta", {{"snet", "N" + std::to_string(s % 9)}, {"fsta", sta}, {"sta", sta}}});
    rows.push_back({"site", {{"sta", sta}, {"lat", std::to_string(s)}, {"lon", std::to_string(s * 10)}}});
    for (const std::string chan : {"BHE", "BHZ"}) {
      const FieldTexts channel = {{"sta", sta}, {"chan", chan}};
      FieldTexts stage = channel;
      stage.insert({{"stageid", "1"}, {"gnom", "5"}, {"iunits", "m/s"}, {"dir", "resp"}, {"dfile", "a.paz"}});
      FieldTexts calibration = channel;
      calibration.insert({{"fc", "1"}, {"units", "m/s"}});
      rows.push_back({"sitechan", channel});
      rows.push_back({"calibration", calibration});
      if (s % 5 != 0) rows.push_back({"stage", stage});
    }
  }
  return rows;
}

const std::string kTree =
    document("", "network - CATEGORIZED_GROUP snet\n", "",
             group("network", "Network", "code - string snet\n", "station - CATEGORIZED_GROUP fsta\n") +
                 group("station", "Station", "code - string fsta\n",
                       "Longitude - deg_lon lon\nSelected - count chan\nchannel - CATEGORIZED_GROUP chan\n") +
                 group("channel", "Channel", "code - string chan\n", "stage - CATEGORIZED_BY_NUMBER stageid\n") +
                 group("stage", "Stage", "number - integer stageid\n", "filter - STAGE\n"));

class EpochDocumentThreads : public testing::Test {
 protected:
  MadeDatabase made_{network_rows(), {{"resp/a.paz", kPaz}}};
};

TEST_F(EpochDocumentThreads, PiecesBySeveralThreadsAreTheWhole) {
  const Written whole = write_document(made_, kTree);
  ASSERT_TRUE(whole.is_written);
  EXPECT_THAT(whole.text, testing::HasSubstr("<PolesZeros>"));
  EXPECT_THAT(whole.told, Not(IsEmpty()));
  EpochDocument document(made_.db(), parsed(kTree).get(), nullptr, DetailLevel::response);
  EpochDocument::Parts parts;
  ASSERT_TRUE(document.split(&parts));
  ASSERT_EQ(parts.pieces, 9U);
  std::vector<std::string> texts(parts.pieces);
  std::vector<triglub::Findings> found(parts.pieces);
  std::atomic<std::size_t> next = 0;
  std::vector<std::thread> threads;
  for (std::size_t t = 0; t < kThreads; ++t) {
    threads.emplace_back([&] {
      EpochDocument::PieceWriter writer(document);
      for (std::size_t piece = next++; piece < texts.size(); piece = next++) {
        std::ostringstream out;
        writer.write(piece, out, &found[piece]);
        texts[piece] = out.str();
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  std::string text = parts.head;
  triglub::Findings findings = document.findings();
  for (std::size_t piece = 0; piece < parts.pieces; ++piece) {
    text += texts[piece];
    findings.add(found[piece]);
  }
  EXPECT_EQ(text + parts.tail, whole.text);
  EXPECT_EQ(made_.lines_of(findings), whole.told);
}

TEST_F(EpochDocumentThreads, DocumentsOfOneDatabaseAreWrittenSideBySide) {
  const DetailLevel levels[] = {DetailLevel::network, DetailLevel::station, DetailLevel::channel,
                                DetailLevel::response};
  std::vector<std::string> expected;
  for (const DetailLevel level : levels) expected.push_back(write_document(made_, kTree, level).text);
  std::vector<std::string> texts(8);
  std::vector<std::thread> threads;
  for (std::size_t i = 0; i < texts.size(); ++i) {
    Dbptr session;
    ASSERT_EQ(triglub::open_session(made_.db(), &session), 0);
    threads.emplace_back([&texts, &levels, i, session] {
      {
        EpochDocument document(session, parsed(kTree).get(), nullptr, levels[i % 4]);
        std::ostringstream out;
        document.write(out);
        texts[i] = out.str();
      }
      dbclose(session);
    });
  }
  for (std::thread& thread : threads) thread.join();
  for (std::size_t i = 0; i < texts.size(); ++i) EXPECT_EQ(texts[i], expected[i % 4]) << i;
}

}  // namespace
}  // namespace triglub_test
