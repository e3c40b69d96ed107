// The document is that of a run that nothing befalls.
#include "faults/conversion.h"

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <stdexcept>

#include "support/file_text.h"

namespace triglub_test {

namespace {

constexpr const char* kSource = TRIGLUB_SOURCE_DIR "/tests/command/units-of-each-network/tiny";
constexpr const char* kBefore = "what was there before\n";

std::filesystem::path new_folder() {
  std::string folder = (std::filesystem::temp_directory_path() / "triglub_faults_XXXXXX").string();
  if (mkdtemp(folder.data()) == nullptr) throw std::runtime_error("no folder can be made");
  return folder;
}

const char* name_of(Target target) {
  switch (target) {
    case Target::new_file:
      return "new file";
    case Target::old_file:
      return "old file";
    case Target::standard_output:
      return "standard output";
    case Target::held_standard_output:
      return "held standard output";
  }
  return "";
}

}  // namespace

std::string Kind::text() const {
  return "edition " + std::to_string(edition) + ", jobs " + std::to_string(jobs) + ", " + name_of(target);
}

std::vector<Kind> all_kinds() {
  std::vector<Kind> kinds;
  for (const int edition : {1, 2}) {
    for (const int jobs : {1, 2}) {
      for (const Target target :
           {Target::new_file, Target::old_file, Target::standard_output, Target::held_standard_output}) {
        kinds.push_back({edition, jobs, target});
      }
    }
  }
  return kinds;
}

TrackedConversion::TrackedConversion(const Kind& kind, const std::string& folder)
    : kind_(kind),
      is_own_folder_(folder.empty()),
      folder_(folder.empty() ? new_folder() : std::filesystem::path(folder)),
      records_(new_folder()) {
  if (run(start()).status != 0) throw std::runtime_error("the conversion fails by itself: " + messages());
  document_ = file_text(output_path());
}

TrackedConversion::~TrackedConversion() {
  if (is_own_folder_) std::filesystem::remove_all(folder_);
  std::filesystem::remove_all(records_);
}

std::string TrackedConversion::output_path() const { return ((is_file() ? folder_ : records_) / "out").string(); }

Start TrackedConversion::start() {
  for (const auto& entry : std::filesystem::directory_iterator(folder_)) std::filesystem::remove_all(entry.path());
  if (kind_.target == Target::old_file) std::ofstream(output_path()) << kBefore;
  const char* parameters = kind_.edition == 1 ? "/data/stationxml-edition1.pf" : "/data/stationxml.pf";
  Start start;
  start.arguments = {
      TRIGLUB_COMMAND,           "convert", kSource, "-p", std::string(TRIGLUB_SOURCE_DIR) + parameters, "--jobs",
      std::to_string(kind_.jobs)};
  if (is_file()) start.arguments.insert(start.arguments.end(), {"-o", output_path()});
  if (is_strict()) start.arguments.emplace_back("--strict");
  start.environment = {"SOURCE_DATE_EPOCH=1700000000", "TRIGLUB_PFPATH=" TRIGLUB_SOURCE_DIR "/data", "LC_ALL=C",
                       "TMPDIR=" + records_.string()};
  start.standard_output = is_file() ? "/dev/null" : output_path();
  start.standard_error = (records_ / "messages").string();
  return start;
}

std::string TrackedConversion::messages() const { return file_text(records_ / "messages"); }

bool TrackedConversion::is_as_before() const {
  if (kind_.target == Target::new_file) return !std::filesystem::exists(output_path());
  return kind_.target != Target::old_file || file_text(output_path()) == kBefore;
}

// What was told to be left, for the system did not let it be removed; and the document where a signal that cannot be
// held came between its first name and its place: that is one call of the system.
bool TrackedConversion::is_excused(const std::filesystem::path& left) const {
  if (messages().find(left.string() + ": is left") != std::string::npos) return true;
  return is_killed_ && kind_.target == Target::old_file && file_text(left) == document_;
}

std::string TrackedConversion::left_behind() const {
  std::string names;
  for (const std::filesystem::path& folder : {folder_, records_}) {
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
      const std::string name = entry.path().filename().string();
      if (name != "out" && name != "messages" && !is_excused(entry.path())) names += " " + name;
    }
  }
  return names;
}

std::string TrackedConversion::fault_of_failure(bool are_messages_lost) const {
  if (messages().find("triglub: ") == std::string::npos && !are_messages_lost) return "fails without a message";
  if (!is_as_before()) return "what was there before is not as it was";
  return "";
}

std::string TrackedConversion::fault_of_signal() const {
  if (is_file() && !is_as_before() && file_text(output_path()) != document_) return "the output is a part";
  return "";
}

std::string TrackedConversion::fault_of(const Ending& ending, int is_signal_sent, bool are_messages_lost) {
  if (ending.has_hung) return "hangs";
  is_killed_ = ending.signal == SIGKILL && is_signal_sent == SIGKILL;
  if (ending.signal != 0 && ending.signal != is_signal_sent) return "ended by " + ending.text() + ": " + messages();
  if (const std::string names = left_behind(); !names.empty()) return "left behind:" + names;
  ++counts_[ending.signal != 0 ? "ends by the signal" : ending.status == 0 ? "documents" : "failures with a message"];
  if (ending.signal != 0) return fault_of_signal();
  if (ending.status == 1) return fault_of_failure(are_messages_lost);
  if (ending.status != 0) return ending.text() + ": " + messages();
  if (file_text(output_path()) == document_) return "";
  if (!is_strict() && messages().find("triglub: warning: ") != std::string::npos) return "";
  return "status 0 with another document; messages: " + messages();
}

std::string TrackedConversion::tally() const {
  std::string text;
  for (const auto& [what, count] : counts_) text += (text.empty() ? "" : ", ") + std::to_string(count) + " " + what;
  return text;
}

}  // namespace triglub_test
