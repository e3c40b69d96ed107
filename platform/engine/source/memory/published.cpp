// One map behind one lock: names are looked up only when a database is opened.
#include "engine/source/memory/published.h"

#include <map>
#include <mutex>

namespace triglub {

namespace {

struct Published {
  std::mutex mutex;
  std::map<std::string, std::shared_ptr<const Source>> sources;
};

Published& published() {
  static Published all;
  return all;
}

}  // namespace

void publish(const std::string& name, std::shared_ptr<const Source> source) {
  Published& all = published();
  const std::lock_guard<std::mutex> lock(all.mutex);
  all.sources[name] = std::move(source);
}

void withdraw(const std::string& name) {
  Published& all = published();
  const std::lock_guard<std::mutex> lock(all.mutex);
  all.sources.erase(name);
}

std::shared_ptr<const Source> find_published(const std::string& name) {
  Published& all = published();
  const std::lock_guard<std::mutex> lock(all.mutex);
  const auto found = all.sources.find(name);
  return found == all.sources.end() ? nullptr : found->second;
}

}  // namespace triglub
