// Everything that can fail for the tables is looked at before the first byte is written.
#include "tool/convert.h"

#include <cstdlib>

#include "dbhelper.h"
#include "platform/elog.h"
#include "tool/check_channels.h"
#include "tool/check_dates.h"
#include "tool/check_stages.h"
#include "tool/check_tree.h"
#include "tool/findings.h"
#include "tool/messages.h"
#include "tool/networks.h"
#include "tool/output.h"
#include "tool/parameters.h"

namespace triglub::tool {

namespace {

constexpr const char* kDeclaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

// Tells what was left out; true when the document is as good as was asked for.
bool accept(const Findings& findings, bool strict) {
  findings.report();
  if (!strict || !findings.any_left_out()) return true;
  elog_notify(0, "something was left out, which --strict forbids");
  return false;
}

Findings look_for_gaps(const Request& request, DetailLevel level, Dbptr everything) {
  Findings findings;
  check_dates(everything, &findings);
  if (level == DetailLevel::response) check_stages(everything, &findings);
  check_channels(request, everything, &findings);
  return findings;
}

int write(const ConvertOptions& options, const Request& request, Dbptr everything, const Findings& findings) {
  const auto output = Output::open(options.output);
  output->stream() << kDeclaration;
  write_document(*output, request, everything, options.jobs);
  output->finish();
  if (!accept(findings, options.strict)) return EXIT_FAILURE;
  output->commit();
  return EXIT_SUCCESS;
}

int run(const ConvertOptions& options) {
  Conversion conversion;
  Request request;
  request.source = options.source;
  request.conversion = &conversion;
  set_threads(options.jobs);
  if (dbopen(options.source.c_str(), "r", &request.db) != 0) return EXIT_FAILURE;
  const Parameters parameters = read_parameters(options.parameters);
  request.pf = parameters.get();
  if (!check_tree(request.pf)) elog_die(0, "parameter file %s: cannot be used", options.parameters.c_str());
  request.conditions = options.conditions;
  request.flags = flags_for(options.level, options.verbosity);
  const Dbptr everything = master_view(request);
  const Findings findings = look_for_gaps(request, options.level, everything);
  if (findings.any_fault()) elog_die(0, "%s: faults in the tables; nothing is written", options.source.c_str());
  if (is_empty(everything)) {
    findings.report();
    elog_die(0, "%s: no channel epoch is selected and complete; nothing is written", options.source.c_str());
  }
  return write(options, request, everything, findings);
}

}  // namespace

int convert(const ConvertOptions& options) {
  show_messages(options.verbosity);
  int status = EXIT_FAILURE;
  try {
    status = run(options);
  } catch (...) {
    die_of_exception(options.source);
  }
  elog_set_sink(nullptr, nullptr);
  return status;
}

}  // namespace triglub::tool
