// Values by key, each made when it is first asked for, once, whichever thread asks first.
#ifndef TRIGLUB_BASE_ONCE_MAP_H
#define TRIGLUB_BASE_ONCE_MAP_H

#include <map>
#include <mutex>

#include "base/once.h"

namespace triglub {

template <class Key, class Value>
class OnceMap {
 public:
  // The value of a key: make() the first time. Threads that ask for the same key meanwhile wait for it; those that ask
  // for another do not, and make() may itself ask for another. What make() throws is passed on, and the next call
  // makes it anew. Valid as long as the map. Safe for concurrent use.
  template <class Make>
  const Value& get(const Key& key, const Make& make) const {
    return entry(key).get(make);
  }

 private:
  const Once<Value>& entry(const Key& key) const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return entries_[key];  // entries of a map stay where they are
  }

  mutable std::mutex mutex_;
  mutable std::map<Key, Once<Value>> entries_;
};

}  // namespace triglub

#endif
