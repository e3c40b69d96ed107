// Everything that can fail for the tables is looked at before the first byte is written.
#include "tool/convert.h"

#include <cstdint>
#include <cstdlib>
#include <memory>

#include "dbhelper.h"
#include "element_tree.h"
#include "platform/elog.h"
#include "tool/check_categories.h"
#include "tool/check_channels.h"
#include "tool/check_clock.h"
#include "tool/check_dates.h"
#include "tool/check_numbers.h"
#include "tool/check_site.h"
#include "tool/check_stages.h"
#include "tool/check_texts.h"
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
#include "tool/well_formed.h"

namespace triglub::tool {

namespace {

// False after messages.
bool open_database(const std::string& source, Dbptr* db) {
  if (dbopen(source.c_str(), "r", db) == 0) return has_tables(*db, source);
  suggest_database(source);
  return false;
}

// What --strict asks for: tells what was left out; true when nothing was.
bool is_complete(const Gaps& gaps) {
  gaps.report();
  if (!gaps.any_left_out()) return true;
  elog_notify(0, "something was left out, which --strict forbids");
  return false;
}

// `responses`: null where the document has none.
Gaps look_for_gaps(const Request& request, const ResponseCache* responses, const WrittenTree& tree, Dbptr everything) {
  Gaps gaps;
  check_dates(everything, &gaps);
  check_numbers(everything, tree, &gaps);
  check_categories(everything, tree, &gaps);
  if (responses != nullptr) check_stages(everything, *responses, &gaps);
  check_channels(request, everything, &gaps);
  return gaps;
}

[[noreturn]] void die_of_faults(const Gaps& gaps, const std::string& source) {
  if (gaps.untold_faults() > 0) elog_complain(0, "and %ju faults more", std::uintmax_t{gaps.untold_faults()});
  elog_die(0, "%s: faults in the tables; nothing is written", source.c_str());
}

// Texts that may break XML are mostly harmless where they stand; whether they are is seen in the document.
void check_written(const Output& output, const TextCheck& texts, const std::string& source) {
  const std::string fault = texts.are_doubtful() ? xml_fault_of_file(output.descriptor()) : "";
  if (fault.empty()) return;
  texts.tell();
  elog_die(0, "%s: the document would be no XML (%s); nothing is written", source.c_str(), fault.c_str());
}

int write(const ConvertOptions& options, const Request& request, const TextCheck& texts, Dbptr everything,
          const Gaps& gaps) {
  if (options.strict && !is_complete(gaps)) return EXIT_FAILURE;
  const auto output =
      Output::open(options.output, texts.are_doubtful() ? Output::Hold::until_commit : Output::Hold::no);
  output->stream() << kDeclaration;
  write_document(*output, request, everything, options.jobs);
  output->finish();
  check_written(*output, texts, options.source);
  if (!options.strict) gaps.report();
  output->commit();
  return EXIT_SUCCESS;
}

Request request_of(const ConvertOptions& options, Dbptr db, Pf* pf, Conversion* conversion) {
  Request request;
  request.source = options.source;
  request.conversion = conversion;
  request.db = db;
  request.pf = pf;
  request.conditions = options.conditions;
  request.late_conditions = take_late_conditions(db, &request.conditions);
  request.flags = flags_for(options.level, options.verbosity);
  return request;
}

// Null where the document has none. What is checked is what the document is made of.
std::shared_ptr<const ResponseCache> responses_for(const ConvertOptions& options, Dbptr db, Conversion* conversion) {
  if (options.level != DetailLevel::response) return nullptr;
  auto responses = std::make_shared<const ResponseCache>(db, "stage", reach_of(options));
  conversion->use_responses(responses);
  return responses;
}

int convert_view(const ConvertOptions& options, const Request& request, const ResponseCache* responses,
                 const WrittenTree& tree) {
  const Dbptr everything = master_view(request);
  const Gaps gaps = look_for_gaps(request, responses, tree, everything);
  if (gaps.any_fault()) die_of_faults(gaps, options.source);
  if (is_empty(everything)) {
    gaps.report();
    elog_die(0, "%s: no channel epoch is selected and complete; nothing is written", options.source.c_str());
  }
  return write(options, request, TextCheck(everything, tree), everything, gaps);
}

int convert_nodes(const ConvertOptions& options, Dbptr db, Pf* pf) {
  Conversion conversion;
  const auto tree = check_tree(pf);
  if (tree == nullptr) elog_die(0, "parameter file %s: cannot be used", options.parameters.c_str());
  const Parameters site = read_site(pf);
  conversion.use_site(site.get());
  const Request request = request_of(options, db, pf, &conversion);
  const auto responses = responses_for(options, db, &conversion);
  return convert_view(options, request, responses.get(), *tree);
}

int run(const ConvertOptions& options) {
  check_clock();
  set_threads(options.jobs);
  Dbptr db;
  if (!open_database(options.source, &db)) return EXIT_FAILURE;
  const Parameters parameters = read_parameters(options.parameters);
  check_output(options, db, parameters.get());
  const bool is_edition2 = edition_of(parameters.get()) == 2;
  return is_edition2 ? convert_epochs(options, db, parameters.get()) : convert_nodes(options, db, parameters.get());
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
