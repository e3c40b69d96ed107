// The platform's containers and texts as strings and standard containers.
#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>

#include "dbhelper.h"
#include "platform/elog.h"
#include "platform/text.h"

namespace {

// A key without the blanks around it. The array's own key stays as it is: the array finds its values by it.
std::string trimmed_key(const void* key) { return std::string(triglub::trimmed(static_cast<const char*>(key))); }

// The value filed under a key as keysarr lists it.
std::string value_at(rbtree* a, const void* key) { return as_string(getarr(a, static_cast<const char*>(key)), false); }

}  // namespace

char* str_dup(const char* s) {
  const std::size_t size = std::strlen(s) + 1;
  auto* copy = static_cast<char*>(std::malloc(size));
  if (copy != nullptr) std::memcpy(copy, s, size);
  return copy;
}

char* cpcast(std::string s) { return str_dup(s.c_str()); }

std::string as_string(void* p, bool required) {
  if (p == nullptr) {
    if (required) throw std::domain_error("pointer value must be non-NULL");
    return "";
  }
  auto* text = static_cast<char*>(p);
  const std::string_view kept = triglub::trimmed(text);
  // The container's own text is trimmed too, so that everyone who reads it later sees the same. One that is trim
  // already is not written to: programs fill arrays with literals.
  if (kept.size() != std::strlen(text)) return strtrim(text);
  return std::string(kept);
}

std::string gettbl_string(Tbl* t, unsigned long i) {
  const long count = maxtbl(t);
  if (i >= static_cast<unsigned long>(count)) {
    throw std::range_error("Index [" + std::to_string(i) + "] out of range. Tbl has " + std::to_string(count) +
                           " elements");
  }
  return as_string(gettbl(t, static_cast<long>(i)), false);
}

std::string getarr_string(rbtree* a, std::string key) { return value_at(a, key.c_str()); }

std::map<std::string, std::string> arr2map(rbtree* a) {
  std::map<std::string, std::string> entries;
  Tbl* keys = keysarr(a);
  if (keys == nullptr) {
    elog_complain(0, "tried to convert an empty array to a map");
    return entries;
  }
  for (long i = 0; i < maxtbl(keys); ++i) {
    const void* key = gettbl(keys, i);
    entries[trimmed_key(key)] = value_at(a, key);
  }
  freetbl(keys, nullptr);
  return entries;
}

Tbl* arr2expr(rbtree* a) {
  Tbl* keys = keysarr(a);
  Tbl* expressions = newtbl(static_cast<int>(maxtbl(keys)));
  while (maxtbl(keys) > 0) {  // NOLINT(clang-analyzer-unix.Malloc): the list keeps the texts
    const void* key = poptbl(keys);
    char* expression = cpcast(trimmed_key(key) + "=~" + value_at(a, key));
    if (expression == nullptr) throw std::bad_alloc();
    pushtbl(expressions, expression);
  }
  freetbl(keys, nullptr);
  return expressions;
}

std::string pfget_string(Pf* pf, std::string key) {
  char* text = pfget_string(pf, key.c_str());
  if (text == nullptr) elog_complain(0, "%s", ("pfget_string: [" + key + "] not found").c_str());
  return as_string(text, false);
}

std::string as_string(std::map<std::string, std::string> m, std::string name) {
  std::string line;
  for (const auto& [key, value] : m)
    line.append(name).append("[").append(key).append("] = \"").append(value).append("\" | ");
  return line.append("\n");
}

std::string as_string(std::vector<std::string> v, std::string name) {
  // No blank before "contains:": the labels in use end in a colon of their own, and logs are searched for the whole.
  std::string line = " vector " + name + "contains:";
  for (const std::string& element : v) line += " | " + element;
  return line;
}

std::string as_string(Tbl* t) {
  if (t == nullptr) return "NULL table";
  std::string line = "Tbl contains: ";
  for (long i = 0; i < maxtbl(t); ++i) line += " | " + gettbl_string(t, static_cast<unsigned long>(i));
  return line;
}

std::string as_string(Dbptr db) {
  return "db(" + std::to_string(db.database) + "." + std::to_string(db.table) + "." + std::to_string(db.field) + "." +
         std::to_string(db.record) + ")";
}
