// Pieces wait for their turn, and who is faster goes on meanwhile.
#include "tool/turn_buffer.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <future>
#include <ostream>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "support/file_text.h"
#include "support/random_seed.h"

namespace {

using namespace std::chrono_literals;
using triglub::tool::Sequencer;
using triglub::tool::TurnBuffer;

constexpr std::size_t kManyChunks = 8 * TurnBuffer::kChunk;

class TurnBufferThreads : public testing::Test {
 protected:
  TurnBufferThreads() : path_((std::filesystem::temp_directory_path() / "triglub_turns_XXXXXX").string()) {
    descriptor_ = mkstemp(path_.data());
  }
  ~TurnBufferThreads() override {
    close(descriptor_);
    std::filesystem::remove(path_);
    Sequencer::release(sequencer_);
  }

  std::string written() const { return triglub_test::file_text(path_); }

  std::string path_;
  int descriptor_;
  Sequencer& sequencer_ = Sequencer::make();
};

void put(TurnBuffer& buffer, std::size_t piece, const std::string& text) {
  buffer.begin(piece);
  std::ostream(&buffer) << text;
  buffer.end();
}

TEST_F(TurnBufferThreads, HoldPiecesUntilTheirTurnHasCome) {
  TurnBuffer fast(descriptor_, "a file", kManyChunks, sequencer_);
  TurnBuffer slow(descriptor_, "a file", kManyChunks, sequencer_);
  put(fast, 1, "[1]");
  put(fast, 3, "[3]");
  EXPECT_EQ(written(), "");
  put(slow, 0, "[0]");
  EXPECT_EQ(written(), "[0]");
  put(fast, 4, "[4]");  // sees that its first has its turn
  EXPECT_EQ(written(), "[0][1]");
  put(slow, 2, "[2]");
  EXPECT_EQ(written(), "[0][1][2]");
  fast.finish();
  EXPECT_EQ(written(), "[0][1][2][3][4]");
  EXPECT_TRUE(sequencer_.is_turn_of(5));
}

// A reader should not wait for the whole piece.
TEST_F(TurnBufferThreads, WriteThePieceThatHasItsTurnChunkByChunk) {
  TurnBuffer buffer(descriptor_, "a file", kManyChunks, sequencer_);
  std::ostream out(&buffer);
  buffer.begin(0);
  const std::string text(1024, 'a');
  for (std::size_t i = 0; i <= TurnBuffer::kChunk; i += text.size()) out << text;
  EXPECT_EQ(written().size(), TurnBuffer::kChunk);
  const std::string repeated(TurnBuffer::kChunk, 'c');
  out << repeated;
  EXPECT_EQ(written().size(), 2 * TurnBuffer::kChunk);
  EXPECT_TRUE(sequencer_.is_turn_of(0));
  buffer.end();
  EXPECT_TRUE(sequencer_.is_turn_of(1));
}

// Runs it beside the test and passes the turn on after a while, if it has not ended before; true when it has.
template <class Work>
bool ends_before_its_turn(Sequencer& sequencer, std::chrono::milliseconds patience, Work work) {
  const std::future<void> end = std::async(std::launch::async, work);
  const bool has_ended = end.wait_for(patience) == std::future_status::ready;
  sequencer.pass_on();
  return has_ended;
}

TEST_F(TurnBufferThreads, HoldOneOfTextsThatRepeat) {
  TurnBuffer buffer(descriptor_, "a file", TurnBuffer::kChunk, sequencer_);
  const std::string text(4096, 'a');
  std::string expected;
  EXPECT_TRUE(ends_before_its_turn(sequencer_, 20s, [&] {
    buffer.begin(1);
    std::ostream out(&buffer);
    for (int i = 0; i < 3000; ++i) {  // many times what there is room for
      out << text << i;
      expected += text + std::to_string(i);
    }
    buffer.end();
  }));
  EXPECT_EQ(written(), "");
  buffer.finish();
  EXPECT_TRUE(written() == expected);
}

TEST_F(TurnBufferThreads, HoldAsManyChunksAsThereIsRoomFor) {
  TurnBuffer buffer(descriptor_, "a file", 3 * TurnBuffer::kChunk, sequencer_);
  const std::string text(1024, 'a');  // too short to be held once
  EXPECT_TRUE(ends_before_its_turn(sequencer_, 20s, [&] {
    buffer.begin(1);
    std::ostream out(&buffer);
    for (std::size_t i = 0; i < 2 * TurnBuffer::kChunk; i += text.size()) out << text;
    buffer.end();
    put(buffer, 2, text);
  }));
  EXPECT_EQ(written(), "");
  buffer.finish();
  EXPECT_EQ(written().size(), 2 * TurnBuffer::kChunk + text.size());
}

TEST_F(TurnBufferThreads, WaitWhenThereIsNoRoomForMore) {
  TurnBuffer buffer(descriptor_, "a file", 3 * TurnBuffer::kChunk, sequencer_);
  EXPECT_FALSE(ends_before_its_turn(sequencer_, 100ms, [&] {
    for (std::size_t piece = 1; piece < 5; ++piece) put(buffer, piece, "[" + std::to_string(piece) + "]");
  }));
  EXPECT_EQ(written(), "[1][2][3][4]");  // the others have their turns right after
}

using Texts = std::vector<std::string>;

// One letter many times, in many sizes.
Texts letters() {
  Texts texts = {std::string(TurnBuffer::kChunk + 1, 'z')};
  for (int i = 0; i < 8; ++i) texts.emplace_back(std::size_t{1} << (6 + i), static_cast<char>('a' + i));
  return texts;
}

// Writes some of the texts, changing some where they are, and returns what it wrote.
std::string write_at_random(std::uint64_t seed, Texts& texts, std::ostream& out) {
  std::mt19937 random(seed);
  std::string written;
  for (std::size_t i = random() % 150; i > 0; --i) {
    std::string& text = texts[random() % texts.size()];
    if (random() % 50 == 0) text[random() % text.size()] = '!';
    out << text << std::flush;
    written += text;
    if (random() % 4 != 0) continue;
    out.put('\n');
    written += '\n';
  }
  return written;
}

// By as many threads as there are buffers. Who writes a piece is chance, what stands in it is not.
TEST_F(TurnBufferThreads, WriteRandomTextsInOrder) {
  constexpr std::size_t kPieces = 60;
  const std::uint64_t seed = triglub_test::random_seed();
  Texts expected(kPieces);
  const auto work = [&](std::size_t capacity) {
    const Texts unchanged = letters();
    Texts texts = unchanged;
    TurnBuffer buffer(descriptor_, "a file", capacity, sequencer_);
    std::ostream out(&buffer);
    for (std::size_t piece = sequencer_.take(); piece < kPieces; piece = sequencer_.take()) {
      texts = unchanged;  // where they are
      buffer.begin(piece);
      expected[piece] = write_at_random(seed + piece, texts, out);
      buffer.end();
    }
    buffer.finish();
  };
  {
    std::vector<std::jthread> threads;
    for (const std::size_t capacity : {std::size_t{0}, 3 * TurnBuffer::kChunk, 64 * TurnBuffer::kChunk}) {
      threads.emplace_back(work, capacity);
    }
  }
  std::string whole;
  for (const std::string& text : expected) whole += text;
  EXPECT_TRUE(written() == whole);
}

}  // namespace
