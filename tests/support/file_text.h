// What stands in a file.
#ifndef TRIGLUB_TESTS_SUPPORT_FILE_TEXT_H
#define TRIGLUB_TESTS_SUPPORT_FILE_TEXT_H

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace triglub_test {

// All bytes of the file; empty when it cannot be read.
inline std::string file_text(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

}  // namespace triglub_test

#endif
