// Reads a response file's text line by line, without looking ahead further than the current line. Each step gives true,
// or false after it has noted the fault, which ends the reading.
#include "response/parse.h"

#include <algorithm>
#include <array>
#include <climits>
#include <complex>
#include <cstdint>
#include <utility>
#include <vector>

#include "base/characters.h"
#include "base/number.h"
#include "base/words.h"
#include "platform/limits.h"
#include "response/lines.h"

namespace triglub {
namespace {

// The most numbers that a line of any kind holds.
constexpr int kMostNumbers = 5;
using Numbers = std::array<double, kMostNumbers>;

// A kind of line that holds numbers: `required` ones, or `complete` ones with those that may be left out.
struct LineKind {
  const char* name;
  int required;
  int complete;
};

// A kind of entry that comes with a count before it.
struct EntryKind {
  const char* plural;
  LineKind line;
};

constexpr LineKind kNormalization = {"the normalization factor", 1, 2};
constexpr LineKind kFirRate = {"the input sample rate", 1, 2};
constexpr LineKind kIirRate = {"the input sample rate", 1, 1};
constexpr EntryKind kPoles = {"poles", {"a pole", 2, 4}};
constexpr EntryKind kZeros = {"zeros", {"a zero", 2, 4}};
constexpr EntryKind kNumerators = {"numerators", {"a numerator", 1, 2}};
constexpr EntryKind kDenominators = {"denominators", {"a denominator", 1, 2}};
constexpr EntryKind kRows = {"rows", {"a row of frequency, amplitude and phase", 3, 5}};

// The text in quotes as messages show it, cut to what is of use there.
std::string quoted(std::string_view text) {
  constexpr std::size_t kLongest = 40;
  const bool is_cut = text.size() > kLongest;
  return "\"" + std::string(is_cut ? utf8_prefix(text, kLongest) : text) + (is_cut ? "...\"" : "\"");
}

bool is_whole_number(std::string_view word) {
  if (word.starts_with('+') || word.starts_with('-')) word.remove_prefix(1);
  return !word.empty() && std::all_of(word.begin(), word.end(), is_digit);
}

// The words of a line that begins a group.
struct Header {
  std::string_view source, sequence, description, type, author;
};

// True when the line begins a group. Asked of every line, so what is not is told by its first letter.
bool read_header(std::string_view line, Header* header) {
  if (line.empty() || (line[0] != 't' && line[0] != 'm')) return false;
  header->source = take_word(&line, kWhiteSpace);
  if (header->source != "theoretical" && header->source != "measured") return false;
  header->sequence = take_word(&line, kWhiteSpace);
  if (!is_whole_number(header->sequence)) return false;
  header->description = take_word(&line, kWhiteSpace);
  header->type = take_word(&line, kWhiteSpace);
  header->author = line;
  return !header->type.empty();
}

bool is_header(std::string_view line) {
  Header header;
  return read_header(line, &header);
}

// Nothing depends on the number, so one beyond the range of int is no reason to refuse the file.
int sequence_number(std::string_view word) {
  std::int64_t number = 0;
  if (!parse_integer(word, &number)) return word[0] == '-' ? INT_MIN : INT_MAX;
  return static_cast<int>(std::clamp<std::int64_t>(number, INT_MIN, INT_MAX));
}

int type_code(std::string_view name) {
  if (name == "paz") return RESPONSE_PAZ;
  if (name == "iir") return RESPONSE_IIR;
  if (name == "fir") return RESPONSE_FIR;
  if (name == "fap") return RESPONSE_FAP;
  if (name == "fap2") return RESPONSE_FAP2;
  return RESPONSE_OTHER;
}

class ResponseParser {
 public:
  ResponseParser(std::string_view text, ResponseFault* fault) : lines_(text), fault_(fault) {}

  ResponsePointer parse() {
    ResponsePointer response(new Response);
    do {
      if (!read_group(*response)) return nullptr;
    } while (!lines_.at_end());
    return response;
  }

 private:
  bool fail(std::string text) {
    fault_->line = std::max(lines_.number(), 1L);
    fault_->text = std::move(text);
    return false;
  }

  std::string found() const { return ", found " + (lines_.at_end() ? "the end of the file" : quoted(lines_.line())); }

  bool read_group(Response& response) {
    Header header;
    if (!read_header(lines_.line(), &header)) {
      const char* const expected =
          response.groups.empty() ? "the first group" : "a further group or the end of the file";
      return fail(std::string("expected ") + expected +
                  " (a group begins with \"theoretical\" or \"measured\", a whole number, a description and a type)" +
                  found());
    }
    if (response.groups.size() >= limit(Limit::response_groups)) return fail(beyond(Limit::response_groups));
    ResponseGroup& group = response.groups.emplace_back();  // where its filter is freed, whatever happens
    group.type = type_code(header.type);
    group.type_name = header.type;
    group.source = header.source;
    group.sequence = sequence_number(header.sequence);
    group.description = header.description;
    group.author = header.author;
    lines_.advance();
    if (!read_filter(group)) return false;
    ++response.group_count;
    return true;
  }

  bool read_filter(ResponseGroup& group) {
    switch (group.type) {
      case RESPONSE_PAZ:
        return read_as<Paz>(group, &ResponseParser::read_paz);
      case RESPONSE_IIR:
        return read_as<Iir>(group, &ResponseParser::read_iir);
      case RESPONSE_FIR:
        return read_as<Fir>(group, &ResponseParser::read_fir);
      case RESPONSE_FAP:
        return read_as<Fap>(group, &ResponseParser::read_fap);
      case RESPONSE_FAP2:
        return read_as<Fap2>(group, &ResponseParser::read_fap);
      default:
        while (!lines_.at_end() && !is_header(lines_.line())) lines_.advance();
        return true;
    }
  }

  template <typename Filter, typename Base>
  bool read_as(ResponseGroup& group, bool (ResponseParser::*read)(Base&)) {
    auto filter = std::make_unique<Filter>();
    if (!(this->*read)(*filter)) return false;
    group.filter = filter.release();
    return true;
  }

  bool read_paz(Paz& paz) {
    Numbers numbers = {paz.normalization, paz.normalization_frequency};
    if (!read_numbers(kNormalization, &numbers)) return false;
    paz.normalization = numbers[0];
    paz.normalization_frequency = numbers[1];
    return read_roots(kPoles, paz.poles, paz.pole_errors) && read_roots(kZeros, paz.zeros, paz.zero_errors);
  }

  bool read_roots(const EntryKind& kind, std::vector<std::complex<double>>& roots,
                  std::vector<std::complex<double>>& errors) {
    return read_entries(
        kind,
        [&](std::size_t count) {
          roots.reserve(count);
          errors.reserve(count);
        },
        [&](const Numbers& numbers) {
          roots.emplace_back(numbers[0], numbers[1]);
          errors.emplace_back(numbers[2], numbers[3]);
        });
  }

  bool read_fir(Fir& fir) {
    Numbers numbers = {fir.samprate, fir.delay};
    if (!read_numbers(kFirRate, &numbers)) return false;
    fir.samprate = numbers[0];
    fir.delay = numbers[1];
    return read_ratio(fir);
  }

  bool read_iir(Iir& iir) {
    Numbers numbers{};
    if (!read_numbers(kIirRate, &numbers)) return false;
    iir.samprate = numbers[0];
    return read_ratio(iir);
  }

  bool read_ratio(Fir& filter) {
    return read_coefficients(kNumerators, filter.numerators, filter.numerator_errors) &&
           read_coefficients(kDenominators, filter.denominators, filter.denominator_errors);
  }

  bool read_coefficients(const EntryKind& kind, std::vector<double>& coefficients, std::vector<double>& errors) {
    return read_entries(
        kind,
        [&](std::size_t count) {
          coefficients.reserve(count);
          errors.reserve(count);
        },
        [&](const Numbers& numbers) {
          coefficients.push_back(numbers[0]);
          errors.push_back(numbers[1]);
        });
  }

  bool read_fap(Fap& fap) {
    const std::array columns = {&fap.frequencies, &fap.amplitudes, &fap.phases, &fap.amplitude_errors,
                                &fap.phase_errors};
    return read_entries(
        kRows,
        [&](std::size_t count) {
          for (std::vector<double>* column : columns) column->reserve(count);
        },
        [&](const Numbers& numbers) {
          for (std::size_t i = 0; i < columns.size(); ++i) columns[i]->push_back(numbers[i]);
        });
  }

  // A count and as many lines. `reserve` is told the count, `store` gets the numbers of each line.
  template <typename Reserve, typename Store>
  bool read_entries(const EntryKind& kind, Reserve reserve, Store store) {
    std::int64_t count = 0;
    if (!read_count(kind, &count)) return false;
    reserve(static_cast<std::size_t>(count));
    for (std::int64_t i = 0; i < count; ++i) {
      if (lines_.at_end() || is_header(lines_.line())) {
        return fail("expected " + std::to_string(count) + " " + kind.plural + ", found " + std::to_string(i));
      }
      Numbers numbers{};  // what is not given, an error, is 0
      if (!read_numbers(kind.line, &numbers)) return false;
      store(numbers);
    }
    return true;
  }

  bool read_count(const EntryKind& kind, std::int64_t* count) {
    const std::string_view word = lines_.line();  // a count stands alone on its line
    if (!is_whole_number(word) || word[0] == '-') {
      return fail(std::string("expected the number of ") + kind.plural + found());
    }
    if (!parse_integer(word, count) || static_cast<std::uint64_t>(*count) > limit(Limit::response_entries)) {
      return fail(quoted(word) + " " + kind.plural + ", " + beyond(Limit::response_entries));
    }
    lines_.advance();
    return true;
  }

  // The numbers of the current line, which is then left. Those that are not given keep their value.
  bool read_numbers(const LineKind& kind, Numbers* numbers) {
    if (lines_.at_end()) return fail(std::string("expected ") + kind.name + found());
    std::string_view rest = lines_.line();
    int count = 0;
    for (; !rest.empty() && count < kMostNumbers; ++count) {
      const std::string_view word = take_word(&rest, kWhiteSpace);
      double& number = (*numbers)[static_cast<std::size_t>(count)];
      const NumberReading reading = read_real(word, &number);
      if (reading == NumberReading::number) continue;
      return fail(std::string("expected ") + kind.name + ": " + quoted(word) +
                  (reading == NumberReading::too_large ? " is not a number within range" : " is not a number"));
    }
    if (!rest.empty() || (count != kind.required && count != kind.complete)) return fail_count(kind, rest, count);
    lines_.advance();
    return true;
  }

  bool fail_count(const LineKind& kind, std::string_view rest, int count) {
    for (; !rest.empty(); ++count) take_word(&rest, kWhiteSpace);
    std::string expected = std::to_string(kind.required);
    if (kind.complete != kind.required) expected += " or " + std::to_string(kind.complete);
    expected += kind.complete == 1 ? " number" : " numbers";
    return fail(std::string("expected ") + kind.name + " (" + expected + "), found " + std::to_string(count));
  }

  ResponseLines lines_;
  ResponseFault* fault_;
};

}  // namespace

ResponsePointer parse_response(std::string_view text, ResponseFault* fault) {
  return ResponseParser(text, fault).parse();
}

}  // namespace triglub
