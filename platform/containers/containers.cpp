// Lists and arrays of what callers own, in the standard containers.
#include "platform/containers.h"

#include <cassert>
#include <map>
#include <memory>
#include <string>
#include <vector>

struct Tbl {
  std::vector<void*> values;
};

struct rbtree {
  std::map<std::string, void*, std::less<>> values;
};

namespace {

// The containers hand out what they were given, so the constness of the caller's pointer is its own business.
void* stored(const void* value) { return const_cast<void*>(value); }

bool holds(const Tbl* list, long i) {
  return list != nullptr && i >= 0 && static_cast<std::size_t>(i) < list->values.size();
}

}  // namespace

Tbl* newtbl(int size_hint) {
  auto list = std::make_unique<Tbl>();
  if (size_hint > 0) list->values.reserve(static_cast<std::size_t>(size_hint));
  return list.release();
}

void* gettbl(Tbl* list, long i) { return holds(list, i) ? list->values[static_cast<std::size_t>(i)] : nullptr; }

int settbl(Tbl* list, long i, const void* value) {
  if (list == nullptr || i < 0) return -1;
  const auto at = static_cast<std::size_t>(i);
  if (at >= list->values.size()) list->values.resize(at + 1, nullptr);
  list->values[at] = stored(value);
  return 0;
}

long pushtbl(Tbl* list, const void* value) {
  if (list == nullptr) return -1;
  list->values.push_back(stored(value));
  return static_cast<long>(list->values.size()) - 1;
}

void* poptbl(Tbl* list) {
  if (list == nullptr || list->values.empty()) return nullptr;
  void* last = list->values.back();
  list->values.pop_back();
  return last;
}

long maxtbl(Tbl* list) { return list == nullptr ? 0 : static_cast<long>(list->values.size()); }

void clrtbl(Tbl* list, FreeValue free_value) {
  if (list == nullptr) return;
  if (free_value != nullptr) {
    for (void* value : list->values) {
      if (value != nullptr) free_value(value);
    }
  }
  list->values.clear();
}

void freetbl(Tbl* list, FreeValue free_value) {
  clrtbl(list, free_value);
  delete list;
}

rbtree* newarr(int (*compare)(const char*, const char*)) {
  assert(compare == nullptr);
  (void)compare;
  return new rbtree;
}

void* setarr(rbtree* array, const char* key, const void* value) {
  if (array == nullptr || key == nullptr) return nullptr;
  const auto [entry, added] = array->values.try_emplace(key, stored(value));
  if (added) return nullptr;
  void* old = entry->second;
  entry->second = stored(value);
  return old;
}

void* getarr(rbtree* array, const char* key) {
  if (array == nullptr || key == nullptr) return nullptr;
  const auto entry = array->values.find(key);
  return entry == array->values.end() ? nullptr : entry->second;
}

void* delarr(rbtree* array, const char* key) {
  if (array == nullptr || key == nullptr) return nullptr;
  const auto entry = array->values.find(key);
  if (entry == array->values.end()) return nullptr;
  void* old = entry->second;
  array->values.erase(entry);
  return old;
}

long cntarr(rbtree* array) { return array == nullptr ? 0 : static_cast<long>(array->values.size()); }

Tbl* keysarr(rbtree* array) {
  if (array == nullptr) return nullptr;
  Tbl* keys = newtbl(static_cast<int>(array->values.size()));
  for (const auto& [key, value] : array->values) pushtbl(keys, key.c_str());
  return keys;
}

void freearr(rbtree* array, FreeValue free_value) {
  if (array == nullptr) return;
  if (free_value != nullptr) {
    for (const auto& [key, value] : array->values) {
      if (value != nullptr) free_value(value);
    }
  }
  delete array;
}
