#include "reference/library_run.h"

#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <memory>
#include <sstream>
#include <stdexcept>

#include "db2stationxml.h"
#include "platform/containers.h"
#include "platform/database.h"
#include "platform/elog.h"
#include "platform/parfile.h"
#include "reference/response_text.h"
#include "support/flat_database.h"

namespace triglub_reference {

namespace {

std::string lines_text(const std::string& list, const std::vector<Line>& lines) {
  std::string text = list + " &Tbl{\n";
  for (const Line& line : lines) text += line.name + " " + line.flag + " " + line.type + " " + line.value + "\n";
  return text + "}\n";
}

// The outcomes on their way from one process to the other: each text behind its length.
class Pipe {
 public:
  Pipe() {
    if (pipe(ends_.data()) != 0) throw std::runtime_error("pipe");
  }

  void write_text(const std::string& text) const {
    const std::uint64_t size = text.size();
    write_bytes(&size, sizeof size);
    write_bytes(text.data(), text.size());
  }
  void write_outcome(const Outcome& outcome) const {
    write_text(outcome.document);
    write_text(std::to_string(outcome.log.size()));
    for (const std::string& line : outcome.log) write_text(line);
    write_text(outcome.end);
  }

  std::vector<Outcome> read_outcomes() {
    close(ends_[1]);
    std::string bytes;
    std::array<char, 65536> buffer;
    for (ssize_t got = 0; (got = read(ends_[0], buffer.data(), buffer.size())) > 0;) {
      bytes.append(buffer.data(), static_cast<std::size_t>(got));
    }
    close(ends_[0]);
    std::vector<Outcome> outcomes;
    for (std::size_t at = 0; at < bytes.size();) {
      Outcome outcome;
      outcome.document = text_at(bytes, at);
      outcome.log.resize(std::stoul(text_at(bytes, at)));
      for (std::string& line : outcome.log) line = text_at(bytes, at);
      outcome.end = text_at(bytes, at);
      outcomes.push_back(outcome);
    }
    return outcomes;
  }

 private:
  void write_bytes(const void* bytes, std::size_t size) const {
    for (const char* at = static_cast<const char*>(bytes); size > 0;) {
      const ssize_t put = write(ends_[1], at, size);
      if (put < 0) _exit(3);
      at += put;
      size -= static_cast<std::size_t>(put);
    }
  }
  static std::string text_at(const std::string& bytes, std::size_t& at) {
    std::uint64_t size = 0;
    std::memcpy(&size, bytes.data() + at, sizeof size);
    at += sizeof size + size;
    return bytes.substr(at - size, size);
  }

  std::array<int, 2> ends_ = {};
};

// The conversion that runs, for the log's collector.
struct Running {
  const Pipe* pipe;
  Outcome outcome;
  std::ostringstream out;
};

// The handle at the end of a complaint about a stage, reduced to its record number: the other numbers are the engine's.
std::string without_handle(const std::string& line) {
  const std::size_t handle = line.rfind("[db(");
  const std::size_t point = line.rfind('.');
  if (handle == std::string::npos || !line.ends_with(")]")) return line;
  return line.substr(0, handle) + "[" + line.substr(point + 1, line.size() - point - 3) + "]";
}

// The library's own messages; the engine's say the same in other words.
bool is_compared(const std::string& line) {
  for (const char* start : {"warning: Problem with Response: ", "warning: dbex_evalstr failure [", "warning: failure ",
                            "warning: pfget_string: ", "debug:  vector "}) {
    if (line.starts_with(start)) return true;
  }
  return false;
}

void collect(ElogLevel level, const char* text, void* context) {
  Running& running = *static_cast<Running*>(context);
  if (level == ElogLevel::fatal) {
    running.outcome.document = running.out.str();
    running.outcome.end = std::string("fatal: ") + text;
    running.pipe->write_outcome(running.outcome);
    _exit(1);
  }
  const std::string line = (level == ElogLevel::debug ? "debug: " : "warning: ") + std::string(text);
  if (is_compared(line)) running.outcome.log.push_back(without_handle(line));
}

void convert(const Request& request, const std::string& source, const Pipe& pipe) {
  Running running{&pipe, {}, {}};
  elog_set_sink(collect, &running);
  Dbptr db;
  Pf* pf = nullptr;
  if (dbopen(source.c_str(), "r", &db) != 0) _exit(4);
  if (pfparse(tree_text(request.tree), "tree", &pf) != 0) _exit(5);
  rbtree* subset = newarr(nullptr);
  std::map<std::string, std::string> patterns = request.subset;
  for (auto& [key, pattern] : patterns) setarr(subset, key.c_str(), pattern.data());
  try {
    db2stationxml(db, pf, subset, running.out, request.flags);
    running.outcome.end = "returned";
  } catch (const std::exception& e) {
    running.outcome.end = std::string("exception: ") + e.what();
  }
  running.outcome.document = running.out.str();
  pipe.write_outcome(running.outcome);
  freearr(subset, nullptr);
  pffree(pf);
  dbclose(db);
}

// The files of a case; the folder goes with the object.
std::unique_ptr<triglub_test::FlatDatabase> write_files(const Request& request) {
  auto files = std::make_unique<triglub_test::FlatDatabase>();
  for (const auto& [table, rows] : request.tables.rows) {
    for (const Row& row : rows) files->add_row(table, row);
  }
  for (const auto& [name, file] : request.tables.files) files->write_file(name, response_text(file));
  std::string site;
  for (const auto& [key, value] : request.site) site.append(key).append(" ").append(value).append("\n");
  files->write_file("site.pf", site);
  files->write();
  return files;
}

}  // namespace

std::string tree_text(const Tree& tree) {
  std::string text =
      "epochtime_xmlstring_format %GT%H:%M:%S.%u\njdate_xmlstring_format %G\nroot_node " + tree.root + "\n";
  for (const auto& [group, definition] : tree.definitions) {
    text += group + " &Arr{\nname " + definition.tag + "\n" + lines_text("attributes", definition.attributes) +
            lines_text("elements", definition.elements) + "}\n";
  }
  return text;
}

std::string describe(const Request& request) {
  std::ostringstream text;
  text << "flags " << request.flags << "\n";
  for (const auto& [key, pattern] : request.subset) text << "subset " << key << " " << pattern << "\n";
  for (const auto& [table, rows] : request.tables.rows) {
    for (const Row& row : rows) {
      text << table;
      for (const auto& [field, value] : row) text << " " << field << "=" << value;
      text << "\n";
    }
  }
  for (const auto& [name, file] : request.tables.files) text << "file " << name << "\n" << response_text(file);
  text << tree_text(request.tree);
  return text.str();
}

std::vector<Outcome> library_conversions(const std::vector<Request>& requests) {
  std::vector<std::unique_ptr<triglub_test::FlatDatabase>> databases;
  for (const Request& request : requests) databases.push_back(write_files(request));
  Pipe pipe;
  const pid_t child = fork();
  if (child < 0) throw std::runtime_error("fork");
  if (child == 0) {
    for (std::size_t i = 0; i < requests.size(); ++i) {
      setenv("TRIGLUB_PFPATH", databases[i]->folder().c_str(), 1);
      convert(requests[i], databases[i]->prefix(), pipe);
    }
    _exit(0);
  }
  std::vector<Outcome> outcomes = pipe.read_outcomes();
  int status = 0;
  waitpid(child, &status, 0);
  return outcomes;
}

}  // namespace triglub_reference
