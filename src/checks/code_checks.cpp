// The forms are those of FDSN's source identifiers, which include all codes of SEED; the lengths that are warned of are
// those of the fixed fields of miniSEED 2.
#include "checks/code_checks.h"

#include <algorithm>

#include "base/characters.h"

namespace triglub::checks {

namespace {

bool is_plain(char c) { return is_upper(c) || is_digit(c); }
bool is_plain_or_dash(char c) { return is_plain(c) || c == '-'; }

// What a kind of code may look like, in code and in words.
struct CodeForm {
  std::string_view name;
  bool (*is_allowed)(char);
  std::size_t least, most;
  std::size_t usual;  // characters at most in miniSEED 2
  std::string_view words;
};
constexpr CodeForm kNetwork{"network code", is_plain, 1, 8, 2, "1 to 8 capital letters and digits"};
constexpr CodeForm kStation{"station code", is_plain_or_dash, 1, 8, 5, "1 to 8 capital letters, digits and dashes"};
constexpr CodeForm kLocation{
    "location code", is_plain_or_dash, 0, 8, 2, "nothing, or up to 8 capital letters, digits and dashes"};

bool fits(const CodeForm& form, std::string_view code) {
  return code.size() >= form.least && code.size() <= form.most &&
         std::all_of(code.begin(), code.end(), form.is_allowed);
}

void tell_form(const CodeForm& form, const std::string& code, int line, const Place& place) {
  place.tell(Rule::code_format, line,
             std::string(form.name) + " is " + quoted(code) + ", expected " + std::string(form.words));
}

void tell_length(const CodeForm& form, const std::string& code, int line, const Place& place) {
  place.tell(Rule::code_length, line,
             std::string(form.name) + ' ' + quoted(code) + " has " + std::to_string(code.size()) +
                 " characters, expected at most " + std::to_string(form.usual));
}

void check(const CodeForm& form, const std::string& code, int line, const Place& place) {
  if (!fits(form, code)) return tell_form(form, code, line, place);
  if (code.size() > form.usual) tell_length(form, code, line, place);
}

// Blanks pad the two characters of miniSEED 2, and mean that there is no location.
void check_location(const std::string& code, int line, const Place& place) {
  const bool is_blank = code.find_first_not_of(' ') == std::string::npos;
  if (is_blank && code.size() <= kLocation.usual) return;
  if (code == "--") return tell_form(kLocation, code, line, place);
  check(kLocation, code, line, place);
}

// Band, source and position of a longer code; the first and the last may be empty.
bool are_words(const std::string& code) {
  if (std::count(code.begin(), code.end(), '_') != 2) return false;
  const bool has_source = code.find("__") == std::string::npos;
  return has_source && std::all_of(code.begin(), code.end(), [](char c) { return is_plain(c) || c == '_'; });
}

bool is_channel_code(const std::string& code) {
  return (code.size() == 3 && std::all_of(code.begin(), code.end(), is_plain)) || are_words(code);
}

}  // namespace

void check_network_code(const Element& network, const Place& place) {
  check(kNetwork, attribute_text(network, "code"), network.line, place);
}

void check_station_code(const Element& station, const Place& place) {
  check(kStation, attribute_text(station, "code"), station.line, place);
}

void check_channel_codes(const Element& channel, const Place& place) {
  check_location(attribute_text(channel, "locationCode"), channel.line, place);
  const std::string code = attribute_text(channel, "code");
  if (is_channel_code(code)) return;
  place.tell(Rule::code_format, channel.line,
             "channel code is " + quoted(code) +
                 ", expected 3 capital letters or digits, or band, source and position with '_' between them");
}

}  // namespace triglub::checks
