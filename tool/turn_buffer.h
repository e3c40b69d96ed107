// Text and messages of pieces that wait for their turn to be written.
#ifndef TRIGLUB_TOOL_TURN_BUFFER_H
#define TRIGLUB_TOOL_TURN_BUFFER_H

#include <sys/uio.h>

#include <deque>
#include <functional>
#include <memory>
#include <streambuf>
#include <string>
#include <string_view>
#include <vector>

#include "platform/elog.h"
#include "tool/output.h"
#include "tool/repeated_texts.h"
#include "tool/sequencer.h"

namespace triglub::tool {

// Holds piece after piece and writes each when its turn has come, which it looks for whenever a chunk is full: who is
// faster than the others goes on with the next piece, and waits only when there is no room for more. A long text that
// repeats is held once, so that what waits is a fraction of the document.
class TurnBuffer final : public std::streambuf {
 public:
  static constexpr std::size_t kChunk = DescriptorBuffer::kPiece;

  // Holds at most `capacity` bytes, but at least one chunk; memory that nobody writes to is not taken. The descriptor
  // stays the caller's, `name` is what a failure to write is reported under, and `sequencer` is to live as long.
  // `before_text`, unless null, is called in the turn of each piece before text of it is written.
  TurnBuffer(int descriptor, std::string name, std::size_t capacity, Sequencer& sequencer,
             std::function<void()> before_text = nullptr);

  // What is put from now on belongs to this piece, which comes after those before. REQUIRES: the last one has ended.
  void begin(std::size_t piece);
  void end();
  // Waits for the turn of all that is held and writes it.
  void finish();
  // A message of the current piece: shown before the text that follows the piece's turn. A fatal one is shown at once,
  // when all pieces before stand, for the process ends with it.
  void tell(ElogLevel level, const char* text);

 protected:
  int_type overflow(int_type c) override;
  std::streamsize xsputn(const char* text, std::streamsize length) override;
  int sync() override { return 0; }

 private:
  using Chunk = std::unique_ptr<char[]>;
  struct Message {
    ElogLevel level;
    std::string text;
  };
  struct Held {
    std::size_t piece = 0;
    bool has_ended = false;
    std::vector<Chunk> chunks;  // the last one of the current piece is written to
    std::vector<iovec> parts;   // of the chunks and of repeated texts
    std::vector<Message> messages;
  };

  static void show_messages_of(Held& held);
  void close_part();
  bool refer_to(std::string_view text);
  void take_chunk();
  void write_front();
  void wait_and_write_front();
  void write_those_in_turn();

  int descriptor_;
  std::string name_;
  std::size_t chunks_left_;  // that may still be made
  Sequencer& sequencer_;
  std::function<void()> before_text_;
  RepeatedTexts repeated_;
  std::vector<Chunk> free_;
  std::deque<Held> held_;  // the current piece is the last
  bool is_writing_ = false;
};

}  // namespace triglub::tool

#endif
