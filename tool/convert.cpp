// Everything that can fail for the tables is looked at before the first byte is written.
#include "tool/convert.h"

#include <cstdlib>
#include <memory>

#include "dbhelper.h"
#include "element_tree.h"
#include "platform/elog.h"
#include "tool/check_channels.h"
#include "tool/check_dates.h"
#include "tool/check_stages.h"
#include "tool/check_tree.h"
#include "tool/convert_epochs.h"
#include "tool/gaps.h"
#include "tool/late_conditions.h"
#include "tool/messages.h"
#include "tool/networks.h"
#include "tool/output.h"
#include "tool/own_files.h"
#include "tool/parameters.h"
#include "tool/slips.h"

namespace triglub::tool {

namespace {

// False after messages.
bool open_database(const std::string& source, Dbptr* db) {
  if (dbopen(source.c_str(), "r", db) == 0) return has_tables(*db, source);
  suggest_database(source);
  return false;
}

// Tells what was left out; true when the document is as good as was asked for.
bool accept(const Gaps& gaps, bool strict) {
  gaps.report();
  if (!strict || !gaps.any_left_out()) return true;
  elog_notify(0, "something was left out, which --strict forbids");
  return false;
}

// `responses`: null where the document has none.
Gaps look_for_gaps(const Request& request, const ResponseCache* responses, Dbptr everything) {
  Gaps gaps;
  check_dates(everything, &gaps);
  if (responses != nullptr) check_stages(everything, *responses, &gaps);
  check_channels(request, everything, &gaps);
  return gaps;
}

int write(const ConvertOptions& options, const Request& request, Dbptr everything, const Gaps& gaps) {
  const auto output = Output::open(options.output);
  output->stream() << kDeclaration;
  write_document(*output, request, everything, options.jobs);
  output->finish();
  if (!accept(gaps, options.strict)) return EXIT_FAILURE;
  output->commit();
  return EXIT_SUCCESS;
}

int run(const ConvertOptions& options) {
  Conversion conversion;
  Request request;
  request.source = options.source;
  request.conversion = &conversion;
  set_threads(options.jobs);
  if (!open_database(options.source, &request.db)) return EXIT_FAILURE;
  const Parameters parameters = read_parameters(options.parameters);
  request.pf = parameters.get();
  check_output(options, request.db, request.pf);
  if (edition_of(request.pf) == 2) return convert_epochs(options, request.db, request.pf);
  if (!check_tree(request.pf)) elog_die(0, "parameter file %s: cannot be used", options.parameters.c_str());
  request.conditions = options.conditions;
  request.late_conditions = take_late_conditions(request.db, &request.conditions);
  request.flags = flags_for(options.level, options.verbosity);
  std::shared_ptr<const ResponseCache> responses;
  if (options.level == DetailLevel::response) {
    responses = std::make_shared<const ResponseCache>(request.db, "stage", reach_of(options));
    conversion.use_responses(responses);
  }
  const Dbptr everything = master_view(request);
  const Gaps gaps = look_for_gaps(request, responses.get(), everything);
  if (gaps.any_fault()) elog_die(0, "%s: faults in the tables; nothing is written", options.source.c_str());
  if (is_empty(everything)) {
    gaps.report();
    elog_die(0, "%s: no channel epoch is selected and complete; nothing is written", options.source.c_str());
  }
  return write(options, request, everything, gaps);
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
