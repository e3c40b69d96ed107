// Text that must wait is held in chunks, and as references to texts that repeat; it is written in one go when its turn
// comes.
#include "tool/turn_buffer.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <utility>

#include "tool/messages.h"
#include "tool/write_parts.h"

namespace triglub::tool {

TurnBuffer::TurnBuffer(int descriptor, std::string name, std::size_t capacity, Sequencer& sequencer,
                       std::function<void()> before_text)
    : descriptor_(descriptor),
      name_(std::move(name)),
      chunks_left_(std::max<std::size_t>(capacity / kChunk, 1)),
      sequencer_(sequencer),
      before_text_(std::move(before_text)) {}

void TurnBuffer::begin(std::size_t piece) { held_.emplace_back().piece = piece; }

void TurnBuffer::end() {
  close_part();
  setp(nullptr, nullptr);
  held_.back().has_ended = true;
  write_those_in_turn();
}

void TurnBuffer::finish() {
  while (!held_.empty()) wait_and_write_front();
}

void TurnBuffer::tell(ElogLevel level, const char* text) {
  if (is_writing_) return show_message(level, text, nullptr);  // that it failed
  Held& current = held_.back();
  current.messages.push_back({level, text});
  if (level == ElogLevel::fatal) {
    while (held_.size() > 1) wait_and_write_front();
    sequencer_.wait_for(current.piece);
  }
  if (sequencer_.is_turn_of(current.piece)) show_messages_of(current);
}

void TurnBuffer::show_messages_of(Held& held) {
  for (const Message& message : held.messages) show_message(message.level, message.text.c_str(), nullptr);
  held.messages.clear();
}

// What was put since the last part becomes one.
void TurnBuffer::close_part() {
  if (pptr() == pbase()) return;
  held_.back().parts.push_back({pbase(), static_cast<std::size_t>(pptr() - pbase())});
  setp(pptr(), epptr());
}

// False when the text is to be copied, as it is when it is written soon: a chunk that is written again and again stays
// nearest to the processor.
bool TurnBuffer::refer_to(std::string_view text) {
  if (sequencer_.is_turn_of(held_.back().piece)) return false;
  const std::string* copy = repeated_.copy_of(text);
  if (copy == nullptr) return false;
  close_part();
  held_.back().parts.push_back({const_cast<char*>(copy->data()), copy->size()});
  return true;
}

void TurnBuffer::take_chunk() {
  close_part();
  write_those_in_turn();
  while (free_.empty() && chunks_left_ == 0) wait_and_write_front();
  if (free_.empty()) {
    free_.push_back(std::make_unique_for_overwrite<char[]>(kChunk));
    --chunks_left_;
  }
  auto& chunks = held_.back().chunks;
  chunks.push_back(std::move(free_.back()));
  free_.pop_back();
  setp(chunks.back().get(), chunks.back().get() + kChunk);
}

// REQUIRES: it is the front's turn, and the last part is closed.
void TurnBuffer::write_front() {
  Held& front = held_.front();
  show_messages_of(front);
  is_writing_ = true;
  if (before_text_ && !front.parts.empty()) before_text_();
  write_parts(descriptor_, name_, std::exchange(front.parts, {}));
  is_writing_ = false;
  std::move(front.chunks.begin(), front.chunks.end(), std::back_inserter(free_));
  front.chunks.clear();
  if (!front.has_ended) return setp(nullptr, nullptr);
  held_.pop_front();
  sequencer_.pass_on();
}

void TurnBuffer::wait_and_write_front() {
  sequencer_.wait_for(held_.front().piece);
  write_front();
}

void TurnBuffer::write_those_in_turn() {
  while (!held_.empty() && sequencer_.is_turn_of(held_.front().piece)) {
    const bool has_ended = held_.front().has_ended;
    write_front();
    if (!has_ended) return;
  }
}

TurnBuffer::int_type TurnBuffer::overflow(int_type c) {
  take_chunk();
  if (traits_type::eq_int_type(c, traits_type::eof())) return traits_type::not_eof(c);
  return sputc(traits_type::to_char_type(c));
}

std::streamsize TurnBuffer::xsputn(const char* text, std::streamsize length) {
  const std::string_view whole(text, static_cast<std::size_t>(length));
  if (whole.size() >= RepeatedTexts::kLeast && refer_to(whole)) return length;  // most texts are short
  for (std::streamsize put = 0; put < length;) {
    if (pptr() == epptr()) take_chunk();
    const std::streamsize count = std::min(length - put, static_cast<std::streamsize>(epptr() - pptr()));
    std::memcpy(pptr(), text + put, static_cast<std::size_t>(count));
    pbump(static_cast<int>(count));
    put += count;
  }
  return length;
}

}  // namespace triglub::tool
