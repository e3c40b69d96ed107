// A file's lines, some at a time.
#include "engine/source/flat/file_parts.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "support/flat_database.h"
#include "support/random_seed.h"

namespace triglub_test {
namespace {

using triglub::kMaxLineBytes;
using triglub::SteadyFile;

// The lines that come, one by one, without their ends; of long ones the length only.
std::vector<std::string> lines_of(const std::string& bytes, triglub::FileRange range) {
  const FlatDatabase files;
  std::string fault;
  const auto file = SteadyFile::open(files.write_file("file", bytes), &fault);
  std::vector<std::string> lines;
  EXPECT_TRUE(triglub::for_each_part(*file, range, [&](std::string_view part) {
    while (!part.empty()) {
      const std::size_t end = std::min(part.find('\n'), part.size());
      lines.push_back(end > kMaxLineBytes ? "too long" : std::string(part.substr(0, end)));
      part.remove_prefix(std::min(end + 1, part.size()));
    }
    return true;
  }));
  return lines;
}

TEST(FileParts, AreAllLinesInTheirOrder) {
  std::mt19937_64 random(random_seed());
  for (int round = 0; round < 10; ++round) {
    std::vector<std::string> lines;
    std::string bytes;
    for (auto count = random() % 3000; count > 0; --count) {
      const std::size_t most = random() % 100 == 0 ? 400000 : 300;
      lines.emplace_back(1 + random() % most, static_cast<char>('a' + random() % 26));
      bytes += lines.back() + "\n";
    }
    if (random() % 2 == 0 && !bytes.empty()) bytes.pop_back();
    ASSERT_EQ(lines_of(bytes, {0, bytes.size()}), lines);
  }
}

TEST(FileParts, AreOfTheRangeOnly) {
  EXPECT_EQ(lines_of("ab\ncd\nef\n", {3, 6}), std::vector<std::string>({"cd"}));
  EXPECT_EQ(lines_of("ab\ncd\nef\n", {3, 9}), std::vector<std::string>({"cd", "ef"}));
  EXPECT_EQ(lines_of("ab\ncd\nef\n", {3, 3}), std::vector<std::string>());
}

TEST(FileParts, HaveTheBeginningOfALineThatIsTooLong) {
  using Lines = std::vector<std::string>;
  const auto line = [](std::size_t size) { return std::string(size, 'x'); };
  for (const std::size_t size : {kMaxLineBytes + 1, kMaxLineBytes + 5, 2 * kMaxLineBytes, 5 * kMaxLineBytes + 7}) {
    SCOPED_TRACE(size);
    EXPECT_EQ(lines_of("a\n" + line(size) + "\nb\nc", {0, size + 6}), Lines({"a", "too long", "b", "c"}));
    EXPECT_EQ(lines_of(line(size) + "\n" + line(size) + "\nb", {0, 2 * size + 3}),
              Lines({"too long", "too long", "b"}));
    EXPECT_EQ(lines_of("a\n" + line(size), {0, size + 2}), Lines({"a", "too long"}));
  }
  EXPECT_EQ(lines_of(line(kMaxLineBytes) + "\nb", {0, kMaxLineBytes + 2}), Lines({line(kMaxLineBytes), "b"}));
  EXPECT_EQ(lines_of(line(kMaxLineBytes - 1) + "\nb", {0, kMaxLineBytes + 1}), Lines({line(kMaxLineBytes - 1), "b"}));
}

TEST(FileParts, EndWhenAskedTo) {
  const FlatDatabase files;
  std::string fault;
  const auto file = SteadyFile::open(files.write_file("file", std::string(2000000, '\n')), &fault);
  int parts = 0;
  EXPECT_FALSE(triglub::for_each_part(*file, {0, file->size()}, [&](std::string_view) { return ++parts < 2; }));
  EXPECT_EQ(parts, 2);
}

}  // namespace
}  // namespace triglub_test
