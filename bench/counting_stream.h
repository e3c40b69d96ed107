// A stream that takes what is written and keeps only its length.
#ifndef TRIGLUB_BENCH_COUNTING_STREAM_H
#define TRIGLUB_BENCH_COUNTING_STREAM_H

#include <cstdint>
#include <ostream>
#include <streambuf>

namespace triglub_bench {

class CountingBuffer : public std::streambuf {
 public:
  std::int64_t bytes() const { return bytes_; }

 protected:
  std::streamsize xsputn(const char* /*text*/, std::streamsize length) override {
    bytes_ += length;
    return length;
  }
  int_type overflow(int_type character) override {
    if (!traits_type::eq_int_type(character, traits_type::eof())) ++bytes_;
    return traits_type::not_eof(character);
  }

 private:
  std::int64_t bytes_ = 0;
};

class CountingStream : private CountingBuffer, public std::ostream {
 public:
  CountingStream() : std::ostream(static_cast<CountingBuffer*>(this)) {}
  std::int64_t bytes() const { return CountingBuffer::bytes(); }
};

}  // namespace triglub_bench

#endif
