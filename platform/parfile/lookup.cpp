// Finding entries by key.
#include "parfile/grammar.h"
#include "parfile/table.h"

namespace {

using triglub::parfile::as_table;
using triglub::parfile::Entry;
using triglub::parfile::KeyNames;
using triglub::parfile::Lines;
using triglub::parfile::Table;
using triglub::parfile::Value;

Entry* find_entry(Pf* pf, const char* key) {
  if (pf == nullptr || key == nullptr) return nullptr;
  Table* table = &pf->root;
  for (KeyNames names(key); table != nullptr;) {
    const std::string_view name = names.next();
    Entry* entry = name.empty() ? nullptr : table->find(name);
    if (entry == nullptr || names.at_end()) return entry;
    table = as_table(entry->value);
  }
  return nullptr;
}

Value* find_value(Pf* pf, const char* key) {
  Entry* entry = find_entry(pf, key);
  return entry == nullptr ? nullptr : &entry->value;
}

Table* find_table(Pf* pf, const char* key) {
  if (pf == nullptr || key == nullptr) return nullptr;
  if (*key == '\0') return &pf->root;
  Value* value = find_value(pf, key);
  return value == nullptr ? nullptr : as_table(*value);
}

}  // namespace

char* pfget_string(Pf* pf, const char* key) {
  auto* text = std::get_if<std::string>(find_value(pf, key));
  return text == nullptr ? nullptr : text->data();
}

Tbl* pfget_tbl(Pf* pf, const char* key) {
  auto* lines = std::get_if<std::unique_ptr<Lines>>(find_value(pf, key));
  return lines == nullptr ? nullptr : (*lines)->tbl();
}

long pf_line(Pf* pf, const char* key, long i) {
  auto* lines = std::get_if<std::unique_ptr<Lines>>(find_value(pf, key));
  if (lines == nullptr || i < 0 || static_cast<std::size_t>(i) >= (*lines)->numbers().size()) return 0;
  return static_cast<long>((*lines)->numbers()[static_cast<std::size_t>(i)]);
}

long pf_key_line(Pf* pf, const char* key) {
  const Entry* entry = find_entry(pf, key);
  return entry == nullptr ? 0 : static_cast<long>(entry->line);
}

std::vector<std::string> pf_keys(Pf* pf, const char* key) {
  std::vector<std::string> keys;
  const Table* table = find_table(pf, key);
  if (table == nullptr) return keys;
  keys.reserve(table->in_order().size());
  for (const auto& entry : table->in_order()) keys.push_back(entry->first);
  return keys;
}

const char* pf_path(Pf* pf) { return pf == nullptr ? "" : pf->path.c_str(); }
