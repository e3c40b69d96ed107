// Findings are printed as they are made: a document may be larger than memory.
#include "tool/check.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <fstream>
#include <iostream>

#include "document_checks.h"
#include "platform/elog.h"

namespace triglub::tool {

namespace {

// "NET.STA" of a path; "NET" of a network's own; empty of the document's.
std::string station_of(const std::string& path) {
  std::string codes = path.substr(0, path.find(' '));
  const std::size_t network_end = codes.find('.');
  if (network_end == std::string::npos) return codes;
  return codes.substr(0, codes.find('.', network_end + 1));
}

class Printer {
 public:
  explicit Printer(std::ostream& out) : out_(out) {}

  void print(const DocumentFinding& finding) {
    print_heading(station_of(finding.path));
    out_ << "  " << (finding.rank == CheckRank::error ? "error" : "warning") << ": line " << finding.line << ": ";
    if (!finding.path.empty()) out_ << finding.path << ": ";
    out_ << finding.code << ": " << finding.text << '\n';
  }

 private:
  void print_heading(const std::string& station) {
    if (has_heading_ && station == heading_) return;
    out_ << (station.empty() ? "document" : station) << '\n';
    heading_ = station;
    has_heading_ = true;
  }

  std::ostream& out_;
  std::string heading_;
  bool has_heading_ = false;
};

std::string count_of(std::uint64_t count, const std::string& what) {
  return std::to_string(count) + ' ' + what + (count == 1 ? "" : "s");
}

void print_summary(const std::string& name, const DocumentCounts& counts) {
  std::cout << name << ": " << count_of(counts.errors, "error") << ", " << count_of(counts.warnings, "warning")
            << " in " << count_of(counts.networks, "network") << ", " << count_of(counts.stations, "station epoch")
            << ", " << count_of(counts.channels, "channel epoch") << std::endl;
}

DocumentCounts check_stream(std::istream& document) {
  Printer printer(std::cout);
  return check_document(document, [&printer](const DocumentFinding& finding) { printer.print(finding); });
}

DocumentCounts check_file(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) elog_die(0, "%s: cannot be opened: %s", path.c_str(), std::strerror(errno));
  return check_stream(file);
}

bool is_standard_input(const CheckOptions& options) { return options.document == "-"; }

int run(const CheckOptions& options) {
  const DocumentCounts counts = is_standard_input(options) ? check_stream(std::cin) : check_file(options.document);
  print_summary(is_standard_input(options) ? "standard input" : options.document, counts);
  if (!std::cout) elog_die(0, "standard output: cannot be written");
  return counts.errors > 0 || (options.strict && counts.warnings > 0) ? EXIT_FAILURE : EXIT_SUCCESS;
}

}  // namespace

int check(const CheckOptions& options) {
  try {
    return run(options);
  } catch (const std::exception& e) {
    elog_die(0, "%s: %s", options.document.c_str(), e.what());
  }
}

}  // namespace triglub::tool
