// A small conversion that is to come out well, or fail well, whatever the machine does.
#ifndef TRIGLUB_TESTS_FAULTS_CONVERSION_H
#define TRIGLUB_TESTS_FAULTS_CONVERSION_H

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "faults/run.h"

namespace triglub_test {

// Where its document goes.
enum class Target { new_file, old_file, standard_output, held_standard_output };

struct Kind {
  int edition = 2;
  int jobs = 1;
  Target target = Target::new_file;

  std::string text() const;  // "edition 1, jobs 2, old file"
};

// All kinds there are.
std::vector<Kind> all_kinds();

class TrackedConversion {
 public:
  // With a folder of its own, or in one that is given, which stays.
  explicit TrackedConversion(const Kind& kind, const std::string& folder = "");
  ~TrackedConversion();
  TrackedConversion(const TrackedConversion&) = delete;
  TrackedConversion& operator=(const TrackedConversion&) = delete;

  // The folder as it was before, and how the command is to be started.
  Start start();
  // What is wrong with how it ended, by what it has left; empty for nothing. Counts the outcome. `is_signal_sent`: the
  // process may have been ended by this signal; `are_messages_lost`: what it had to tell may not have been written.
  std::string fault_of(const Ending& ending, int is_signal_sent = 0, bool are_messages_lost = false);
  // How many documents, messages and ends by a signal there were: "42 documents, 311 failures with a message".
  std::string tally() const;
  // Of the last run.
  std::string messages() const;

 private:
  std::string output_path() const;
  std::string fault_of_failure(bool are_messages_lost) const;
  std::string fault_of_signal() const;
  std::string left_behind() const;
  bool is_excused(const std::filesystem::path& left) const;
  bool is_file() const { return kind_.target == Target::new_file || kind_.target == Target::old_file; }
  bool is_as_before() const;
  // What is missing from a document then is a failure.
  bool is_strict() const { return kind_.target != Target::standard_output; }

  Kind kind_;
  bool is_own_folder_;
  std::filesystem::path folder_;   // the output's
  std::filesystem::path records_;  // of what it writes elsewhere
  std::string document_;
  bool is_killed_ = false;
  std::map<std::string, int> counts_;
};

}  // namespace triglub_test

#endif
