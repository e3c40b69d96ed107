// Whatever is in a database, the command writes a document that the published schemas accept, or none at all and says
// why.
//
// SPOILT_SEED in the environment repeats one case that failed; SPOILT_CASES sets their number.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

#include "properties/databases.h"
#include "properties/document_spans.h"
#include "properties/spoil.h"
#include "properties/xml_reader.h"
#include "reference/edition2/random_case.h"
#include "support/file_text.h"
#include "support/random_seed.h"
#include "tests/tool/command.h"

namespace triglub_properties {

namespace {

namespace fs = std::filesystem;
using triglub_test::file_text;
using triglub_test::FlatDatabase;

constexpr const char* kSchemas = TRIGLUB_SOURCE_DIR "/../shared/schemas/fdsn-station-";

std::uint64_t setting(const char* variable, std::uint64_t otherwise) {
  const char* text = std::getenv(variable);
  return text == nullptr ? otherwise : std::strtoull(text, nullptr, 10);
}

Database example() { return read_database(TRIGLUB_SOURCE_DIR "/examples/observatory/observatory"); }

// The random tables name no response files; they get the example's.
Database random_database(Random& random) {
  static const Database of_example = example();
  Database database{triglub_reference::edition2::random_tables(random, 5), of_example.files};
  for (Row& stage : database.tables.rows["stage"]) {
    const std::string& path = any_file(random, of_example).first;
    stage["dir"] = path.substr(0, path.rfind('/'));
    stage["dfile"] = path.substr(path.rfind('/') + 1);
    stage["gnom"] = random.pick({"1500", "1", "4.19e+05"});
  }
  return database;
}

Database spoilt_database(Random& random) {
  static const Database of_example = example();
  Database database = random.percent(40) ? of_example : random_database(random);
  spoil(random, database);
  return database;
}

// Runs the command on one database, whose documents go into a folder.
class SpoiltCase {
 public:
  SpoiltCase(std::uint64_t seed, const fs::path& folder) : seed_(seed), folder_(folder) {
    Random random(seed);
    write_database(spoilt_database(random), files_);
    other_level_ = random.pick({"network", "station", "channel"});
    jobs_ = random.pick({"1", "3"});
    output_ = random.pick({" > ", " -o "});
  }

  void convert() {
    convert_at("response");
    convert_at(other_level_);
  }

 private:
  // A sanitizer that finds something ends the command with 99, a hang with 124.
  void convert_at(const std::string& level) {
    const fs::path document = folder_ / (std::to_string(seed_) + "." + level + ".xml");
    const std::string told = files_.folder() + "/told";
    const int status =
        triglub_test::run_shell(
            "ASAN_OPTIONS=exitcode=99 UBSAN_OPTIONS=halt_on_error=1:exitcode=99 timeout 60 $TRIGLUB convert --jobs " +
            jobs_ + " --level " + level + " " + files_.prefix() + output_ + document.string() + " 2> " + told)
            .status;
    if (status == 0) return expect_consistent(read_xml(file_text(document)));
    EXPECT_EQ(status, 1) << file_text(told);
    EXPECT_EQ(file_text(document), "") << "half a document";
    EXPECT_TRUE(file_text(told).find("triglub") != std::string::npos) << "nothing was told: " << file_text(told);
    fs::remove(document);
  }

  std::uint64_t seed_;
  fs::path folder_;
  FlatDatabase files_;
  std::string other_level_;
  std::string jobs_;
  std::string output_;  // how the line names it
};

void name_other_version(const fs::path& document) {
  std::string text = file_text(document);
  const std::string version = "schemaVersion=\"1.2\"";
  const std::size_t at = text.find(version);
  ASSERT_NE(at, std::string::npos) << document;
  text.replace(at, version.size(), "schemaVersion=\"1.1\"");
  std::ofstream(document, std::ios::binary) << text;
}

// What xmllint says of the documents that are not valid; empty when all are.
std::string invalid_documents(const fs::path& folder, const std::string& version) {
  return triglub_test::run_shell("find " + folder.string() + " -name '*.xml' | xargs -n 100 xmllint --noout --schema " +
                                 kSchemas + version + ".xsd 2>&1 | grep -v ' validates$' | head -40")
      .output;
}

// Removes itself with all documents.
struct Folder {
  FlatDatabase files;
  fs::path path() const { return files.folder(); }
};

std::size_t document_count(const fs::path& folder) {
  return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
}

void convert_and_validate(std::uint64_t first, std::uint64_t count, std::size_t* documents) {
  const Folder folder;
  for (std::uint64_t seed = first; seed < first + count; ++seed) {
    SCOPED_TRACE("SPOILT_SEED=" + std::to_string(seed));
    SpoiltCase(seed, folder.path()).convert();
  }
  *documents += document_count(folder.path());
  EXPECT_EQ(invalid_documents(folder.path(), "1.2"), "") << "the number in a file's name is its SPOILT_SEED";
  for (const auto& entry : fs::directory_iterator(folder.path())) name_other_version(entry.path());
  EXPECT_EQ(invalid_documents(folder.path(), "1.1"), "") << "the number in a file's name is its SPOILT_SEED";
}

bool can_validate() {
  return fs::exists(std::string(kSchemas) + "1.2.xsd") && fs::exists(std::string(kSchemas) + "1.1.xsd") &&
         triglub_test::run_shell("command -v xmllint").status == 0;
}

TEST(SpoiltDatabases, GiveDocumentsThatTheSchemasAcceptOrNone) {
  if (!can_validate()) GTEST_SKIP() << "there are no schemas, or no xmllint";
  const bool is_repeated = std::getenv("SPOILT_SEED") != nullptr;
  // Below a million million, so that names of files stay readable.
  std::uint64_t seed = is_repeated ? setting("SPOILT_SEED", 0) : triglub_test::random_seed() % 1000000000000;
  std::uint64_t left = setting("SPOILT_CASES", is_repeated ? 1 : 60);
  const std::uint64_t asked_for = left;
  constexpr std::uint64_t batch = 200;
  std::size_t documents = 0;
  while (left > 0 && !HasFailure()) {
    const std::uint64_t count = std::min(left, batch);
    convert_and_validate(seed, count, &documents);
    seed += count;
    left -= count;
  }
  std::cout << documents << " documents\n";
  // A generator that spoils so much that nothing can be written tests nothing.
  EXPECT_TRUE(is_repeated || documents >= asked_for / 2);
}

}  // namespace

}  // namespace triglub_properties
