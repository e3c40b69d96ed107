// Files are told by their device and number, those that are not there yet by their folder's and their name.
#include "tool/own_files.h"

#include <sys/stat.h>

#include <fstream>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "dbhelper.h"
#include "platform/elog.h"
#include "platform/sources.h"
#include "tool/link_target.h"

namespace triglub::tool {

namespace {

struct Identity {
  dev_t device = 0;
  ino_t number = 0;
  std::string name;  // empty when the file is there

  friend bool operator==(const Identity&, const Identity&) = default;
};

std::optional<Identity> identity_of(const std::string& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) == 0) return Identity{status.st_dev, status.st_ino, ""};
  const std::string target = link_target(path);
  const std::size_t name = target.rfind('/') + 1;
  if (stat(name == 0 ? "." : target.substr(0, name).c_str(), &status) != 0) return std::nullopt;
  return Identity{status.st_dev, status.st_ino, target.substr(name)};
}

bool is_regular(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

// No reader takes such a file for a response.
bool begins_as_document(const std::string& path) { return std::ifstream(path).get() == '<'; }

class OutputCheck {
 public:
  OutputCheck(const ConvertOptions& options, Dbptr db, Identity output)
      : options_(options), db_(db), output_(std::move(output)) {}

  void run(Pf* pf) const {
    for (const SourceFile& file : source_files(db_)) refuse(file.path, file.what + of_database());
    refuse(pf_path(pf), "the parameter file of the conversion");
    for (const std::string& path : pf_candidates("site")) refuse(path, "a parameter file 'site'");
    // Most outputs are those of a conversion before: the rows that name response files need not be looked through.
    if (!is_regular(options_.output) || begins_as_document(options_.output)) return;
    for (const char* table : {"stage", "instrument"}) check_responses(table);
  }

 private:
  void refuse(const std::string& path, const std::string& what) const {
    const auto other = identity_of(path);
    if (!other || *other != output_) return;
    elog_die(0, "%s: is %s, expected another file for the document", options_.output.c_str(), what.c_str());
  }

  static std::vector<TextRun> runs_of(Dbptr table, const char* field) {
    std::vector<TextRun> runs;
    text_runs(db_setfield(table, field), 0, static_cast<std::uint64_t>(db_nrecs(table)), &runs);
    return runs;
  }

  void check_responses(const char* name) const {
    if (table_path(db_, name).empty()) return;
    const Dbptr table = dblookup(db_, nullptr, name, nullptr, nullptr);
    const char* base = nullptr;
    if (dbquery(table, dbTABLE_DIRNAME, &base) < 0 || base == nullptr) return;
    for (const auto& [folder, file] : named_files(table)) check_response(base, folder, file);
  }

  using NamedFiles = std::set<std::pair<std::string_view, std::string_view>>;
  static NamedFiles named_files(Dbptr table) {
    NamedFiles files;
    const std::vector<TextRun> folders = runs_of(table, "dir");
    auto folder = folders.begin();
    for (const TextRun& name : runs_of(table, "dfile")) {
      for (std::uint32_t row = name.begin; row < name.end; row = folder->end) {
        while (folder->end <= row) ++folder;
        files.emplace(folder->text, name.text);
      }
    }
    return files;
  }

  void check_response(const std::string& base, std::string_view folder, std::string_view name) const {
    const std::string path = std::string(folder).append("/").append(name);
    refuse(base + "/" + path, "a response file" + of_database());
    if (folder.starts_with('/')) refuse(path, "a response file" + of_database());
  }

  std::string of_database() const { return " of the database " + options_.source; }

  const ConvertOptions& options_;
  Dbptr db_;
  Identity output_;
};

}  // namespace

void check_output(const ConvertOptions& options, Dbptr db, Pf* pf) {
  if (options.output.empty() || options.output == "-") return;
  // Of a folder that is not there, opening tells.
  if (const auto output = identity_of(options.output)) OutputCheck(options, db, *output).run(pf);
}

}  // namespace triglub::tool
