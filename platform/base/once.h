// A value made when it is first asked for, once, whichever thread asks first.
#ifndef TRIGLUB_BASE_ONCE_H
#define TRIGLUB_BASE_ONCE_H

#include <memory>
#include <mutex>

namespace triglub {

template <class Value>
class Once {
 public:
  // The value: make() the first time. Threads that ask meanwhile wait for it. What make() throws is passed
  // on, and the next call makes it anew. Valid as long as the object. Safe for concurrent use.
  template <class Make>
  const Value& get(const Make& make) const {
    std::call_once(is_made_, [&] { value_ = std::make_unique<const Value>(make()); });
    return *value_;
  }

 private:
  mutable std::once_flag is_made_;
  mutable std::unique_ptr<const Value> value_;
};

}  // namespace triglub

#endif
