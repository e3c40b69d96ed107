// A relative link is relative to the folder that it stands in.
#include "tool/link_target.h"

#include <unistd.h>

#include <climits>
#include <string_view>

namespace triglub::tool {

namespace {

constexpr int kMostLinks = 40;  // as many as the system follows

// Empty where the path is no link.
std::string text_of_link(const std::string& path) {
  std::string text(PATH_MAX, '\0');
  const ssize_t length = readlink(path.c_str(), text.data(), text.size());
  text.resize(length < 0 ? 0 : static_cast<std::size_t>(length));
  return text;
}

}  // namespace

std::string link_target(std::string path) {
  std::string at = path;
  for (int i = 0; i < kMostLinks; ++i) {
    const std::string text = text_of_link(at);
    if (text.empty()) return at;
    at.resize(text.starts_with('/') ? 0 : at.rfind('/') + 1);
    at += text;
  }
  return path;
}

}  // namespace triglub::tool
