// The command: reads its line, and hands over to the subcommand. Exit status 0 done, 1 the data could not be converted,
// 2 wrong usage.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <iostream>
#include <string_view>
#include <thread>

#include "platform/elog.h"
#include "platform/text.h"
#include "tool/check.h"
#include "tool/convert.h"
#include "tool/endings.h"
#include "tool/limit_option.h"
#include "tool/memory_budget.h"
#include "tool/slips.h"
#include "tool/standard_descriptors.h"
#include "tool/tree.h"

namespace {

constexpr int kWrongUsage = 2;
constexpr unsigned int kMaxVerbosity = 3;
constexpr unsigned int kMaxJobs = 1024;

constexpr const char* kExamples = R"(Examples:
  triglub convert examples/observatory/observatory > network.xml
      the whole database, down to the response stages
  triglub convert --level station /net/aak/aak -o stations.xml
      stations only, into a file that is replaced when the new one is whole
  triglub convert --subset snetsta.snet=KR --subset 'sitechan.chan=BH.*' /net/aak/aak
      the broadband channels of one network
  triglub convert --subset schanloc.loc= --subset 'schanloc.fchan=LH.' --subset 'schanloc.fchan=..Z' /net/aak/aak
      the vertical long-period channels without a location code
  triglub convert --strict /net/aak/aak -o aak.xml
      fails where a warning says that the document is not all that the tables are

A database is named by the common beginning of its files: /net/aak/aak for /net/aak/aak.site and so on.
Exit status: 0 done, 1 the data could not be converted, 2 wrong usage.)";

struct NamedLevel {
  std::string_view name;
  triglub::DetailLevel level;
};
constexpr std::array kLevels = {
    NamedLevel{"network", triglub::DetailLevel::network}, NamedLevel{"station", triglub::DetailLevel::station},
    NamedLevel{"channel", triglub::DetailLevel::channel}, NamedLevel{"response", triglub::DetailLevel::response}};

const NamedLevel* level_named(std::string_view name) {
  const auto* const found =
      std::find_if(kLevels.begin(), kLevels.end(), [name](const NamedLevel& known) { return known.name == name; });
  return found == kLevels.end() ? nullptr : found;
}

// Options as the line has them, before they are understood.
struct RawOptions {
  std::string level = "response";
  std::vector<std::string> subsets;
  std::vector<std::string> limits;  // which are set when they are read
  std::string memory;
  int verbose = 0;
};

// Empty when the name is one of a level; else what is wrong with it.
std::string check_level(const std::string& name) {
  if (level_named(name) != nullptr) return "";
  return "expected network, station, channel or response, found " + name;
}

// Empty when the text is a size of memory; else what is wrong with it.
std::string check_memory(const std::string& text) {
  if (triglub::tool::memory_size(text)) return "";
  return "expected a number of bytes, or one of K, M, G or T such as 4G, found " + text;
}

// The options that keep an input from taking the machine.
void add_budgets(CLI::App* command, RawOptions& raw) {
  command->add_option("--memory", raw.memory, "the most memory that is taken, such as 4G (default: what there is)")
      ->type_name("SIZE")
      ->check(check_memory);
  command
      ->add_option("--limit", raw.limits,
                   "the most of a thing that is taken before it is refused, by its name; repeatable")
      ->type_name("NAME=N")
      ->allow_extra_args(false)
      ->check(triglub::tool::take_limit);
}

CLI::App* add_convert(CLI::App& app, triglub::tool::ConvertOptions& options, RawOptions& raw) {
  CLI::App* convert = app.add_subcommand("convert", "Turn a CSS3.0 database into an FDSN StationXML document");
  convert->add_option("SOURCE", options.source, "the database: DIR/NAME for the tables DIR/NAME.site ...")->required();
  convert->add_option("-o,--output", options.output, "write to this file; - is standard output, as is none")
      ->type_name("FILE");
  convert->add_option("-p,--parameters", options.parameters, "the parameter file that describes the element tree")
      ->type_name("FILE")
      ->capture_default_str();
  convert->add_option("--level", raw.level, "how far down: network, station, channel or response (default)")
      ->type_name("LEVEL")
      ->check(check_level);
  convert
      ->add_option("--subset", raw.subsets,
                   "only records whose field matches the regular expression as a whole, or is blank where there is "
                   "none; repeatable")
      ->type_name("FIELD=REGEX")
      ->allow_extra_args(false);
  convert
      ->add_option("--jobs", options.jobs,
                   "how many networks are written side by side (default: as many as processors)")
      ->type_name("N")
      ->check(CLI::Range(1U, kMaxJobs).description(""));
  convert->add_flag("--strict", options.strict, "fail, and write nothing, when there are warnings");
  convert->add_flag("--follow-outside", options.follow_outside,
                    "read response files outside of the stage table's folder, too");
  add_budgets(convert, raw);
  convert->add_flag("-v", raw.verbose, "tell what is done; up to three times");
  convert->footer(kExamples + ("\n\n" + triglub::tool::list_of_limits()));
  return convert;
}

// The first option of the line that there is not, without its value; empty when there is none.
std::string unknown_option(const std::vector<std::string>& arguments, const std::vector<std::string>& known) {
  for (const std::string& argument : arguments) {
    std::string option = argument.substr(0, argument.find('='));
    if (option.starts_with("--") && std::find(known.begin(), known.end(), option) == known.end()) return option;
  }
  return "";
}

std::vector<std::string> option_names(const CLI::App& app) {
  std::vector<std::string> names;
  for (const CLI::Option* option : app.get_options()) {
    for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
  }
  return names;
}

// Tells what may have been meant by a line that is none, if that can be guessed.
void suggest_line(const CLI::App& app, const CLI::App& convert, const std::vector<std::string>& arguments) {
  const std::vector<CLI::App*> given = app.get_subcommands();
  if (given.empty() && !arguments.empty() && !arguments.front().starts_with("-")) {
    elog_notify(0, "there is no subcommand '%s': try '%s'", arguments.front().c_str(),
                triglub::tool::convert_line(arguments).c_str());
    return;
  }
  const std::vector<std::string> known = option_names(given.empty() ? app : *given.front());
  const auto meant = triglub::nearest(unknown_option(arguments, known), known);
  if (meant) return elog_notify(0, "did you mean %s?", meant->c_str());
  if (!convert.parsed()) return;
  // All files of a database, say, as a shell lists them; the subcommand stands before them.
  const auto word = std::find_if(arguments.begin() + 1, arguments.end(),
                                 [](const std::string& argument) { return !argument.starts_with("-"); });
  if (word != arguments.end()) triglub::tool::suggest_database(*word);
}

constexpr const char* kTreeExamples = R"(Examples:
  triglub tree
      the tree that a conversion writes when it is told nothing else
  triglub tree network.pf
      that of a parameter file of your own, or every fault that it has

An element has its tag, an attribute its name behind an @. What stands in parentheses has no element of its own: what is
in it stands in its place.
Exit status: 0 done, 1 the parameter file has faults, 2 wrong usage.)";

void add_tree(CLI::App& app, triglub::tool::TreeOptions& options, RawOptions& raw) {
  CLI::App* tree = app.add_subcommand("tree", "Show what a document holds by a parameter file, and check that file");
  tree->add_option("PF", options.parameters, "the parameter file")->capture_default_str();
  add_budgets(tree, raw);
  tree->footer(kTreeExamples + ("\n\n" + triglub::tool::list_of_limits()));
}

constexpr const char* kCheckExamples = R"(Examples:
  triglub check network.xml
      every finding, station by station
  triglub convert examples/observatory/observatory | triglub check --strict -
      fails where anything is odd about the document of a conversion

Each finding has its rank, line, place, and the code of the rule; doc/checks.md explains the rules.
Exit status: 0 nothing wrong, 1 the document has errors or cannot be read (with --strict: or warnings), 2 wrong usage.)";

CLI::App* add_check(CLI::App& app, triglub::tool::CheckOptions& options) {
  CLI::App* check = app.add_subcommand("check", "Hold an FDSN StationXML document against the rules of data centres");
  check->add_option("DOCUMENT", options.document, "the document; - is standard input")->required();
  check->add_flag("--strict", options.strict, "fail when there are warnings, too");
  check->footer(kCheckExamples);
  return check;
}

// False after a message when a --subset is none.
bool read_subsets(const std::vector<std::string>& arguments, triglub::tool::Conditions* conditions) {
  return std::all_of(arguments.begin(), arguments.end(), [conditions](const std::string& argument) {
    if (triglub::tool::add_condition(argument, conditions)) return true;
    elog_notify(0, "--subset %s: expected FIELD=REGEX, such as snetsta.snet=KR", argument.c_str());
    return false;
  });
}

int finish_standard_output() {
  if (std::cout.flush()) return EXIT_SUCCESS;
  elog_die(0, "standard output: cannot be written");
}

// `given`: what the line has; empty for nothing.
void limit_memory(const std::string& given) {
  using triglub::tool::memory_size, triglub::tool::memory_there_is;
  triglub::tool::limit_memory(given.empty() ? memory_there_is() : *memory_size(given));
}

int end_at_line(const CLI::App& app, const CLI::ParseError& end, const CLI::App& convert,
                const std::vector<std::string>& arguments) {
  if (app.exit(end) == 0) return finish_standard_output();
  suggest_line(app, convert, arguments);
  return kWrongUsage;
}

int run_convert(const RawOptions& raw, triglub::tool::ConvertOptions& options) {
  if (!read_subsets(raw.subsets, &options.conditions)) return kWrongUsage;
  options.level = level_named(raw.level)->level;
  options.verbosity = std::min(static_cast<unsigned int>(raw.verbose), kMaxVerbosity);
  return triglub::tool::convert(options);
}

}  // namespace

// Libraries take memory before main begins, for what they hold for the whole program.
__attribute__((section(".preinit_array"), used)) void (*const before_all)() = triglub::tool::prepare_for_no_memory;

int main(int argc, char** argv) {
  triglub::tool::open_standard_descriptors();
  triglub::tool::prepare_endings();
  elog_init("triglub");
  CLI::App app("CSS3.0 station metadata to FDSN StationXML", "triglub");
  app.set_version_flag("--version", "triglub " TRIGLUB_VERSION);
  app.require_subcommand(1);
  app.footer(kExamples);
  triglub::tool::ConvertOptions options;
  options.jobs = std::clamp(std::thread::hardware_concurrency(), 1U, kMaxJobs);
  RawOptions raw;
  const CLI::App* convert = add_convert(app, options, raw);
  triglub::tool::TreeOptions tree_options;
  add_tree(app, tree_options, raw);
  triglub::tool::CheckOptions check_options;
  const CLI::App* check = add_check(app, check_options);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& e) {
    return end_at_line(app, e, *convert, {argv + 1, argv + argc});
  }
  limit_memory(raw.memory);
  if (convert->parsed()) return run_convert(raw, options);
  triglub::tool::set_fate(triglub::tool::Fate::untold);
  return check->parsed() ? triglub::tool::check(check_options) : triglub::tool::tree(tree_options);
}
