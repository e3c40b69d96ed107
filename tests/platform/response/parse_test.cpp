#include "response/parse.h"

#include <gtest/gtest.h>

#include <fstream>
#include <limits>
#include <random>
#include <sstream>

#include "resp_helper.h"
#include "support/random_seed.h"
#include "support/scoped_limit.h"

namespace {

using triglub::parse_response;
using triglub::ResponseFault;
using triglub::ResponsePointer;

// "LINE: FAULT" of a text that does not hold to the format.
std::string fault_of(std::string_view text) {
  ResponseFault fault;
  const ResponsePointer response = parse_response(text, &fault);
  if (response != nullptr) return "no fault";
  return std::to_string(fault.line) + ": " + fault.text;
}

ResponsePointer parsed(std::string_view text) {
  ResponseFault fault;
  ResponsePointer response = parse_response(text, &fault);
  if (response == nullptr) throw std::runtime_error(std::to_string(fault.line) + ": " + fault.text);
  return response;
}

const Paz& paz_of(const ResponsePointer& response) { return *static_cast<const Paz*>(response->groups.at(0).filter); }
const Fir& fir_of(const ResponsePointer& response) { return *static_cast<const Fir*>(response->groups.at(0).filter); }

using Roots = std::vector<std::complex<double>>;
using Values = std::vector<double>;

const char* const kFir = "theoretical 1 instrument fir author\n100\n3\n0.25\n0.5\n0.25\n0\n";

TEST(ParseResponse, ReadsPolesAndZeros) {
  const ResponsePointer response = parsed(
      "theoretical  1  sts2  paz  a manufacturer, 2001\n"
      "6.0077e7 0.02\n"
      "2\n"
      "-0.037004 0.037016\n"
      "-251.33 0 0.5 0.25\n"
      "1\n"
      "0 0 1 2\n");
  ASSERT_EQ(response->group_count, 1);
  const ResponseGroup& group = response->groups.at(0);
  EXPECT_EQ(group.type, RESPONSE_PAZ);
  EXPECT_EQ(group.type_name, "paz");
  EXPECT_EQ(group.source, "theoretical");
  EXPECT_EQ(group.sequence, 1);
  EXPECT_EQ(group.description, "sts2");
  EXPECT_EQ(group.author, "a manufacturer, 2001");
  const Paz& paz = paz_of(response);
  EXPECT_EQ(paz.normalization, 6.0077e7);
  EXPECT_EQ(paz.normalization_frequency, 0.02);
  EXPECT_EQ(paz.poles, (Roots{{-0.037004, 0.037016}, {-251.33, 0}}));
  EXPECT_EQ(paz.pole_errors, (Roots{{0, 0}, {0.5, 0.25}}));
  EXPECT_EQ(paz.zeros, (Roots{{0, 0}}));
  EXPECT_EQ(paz.zero_errors, (Roots{{1, 2}}));
}

TEST(ParseResponse, TakesOneForANormalizationFrequencyThatIsNotStated) {
  const ResponsePointer response = parsed("theoretical 1 x paz\n2.5\n0\n0\n");
  EXPECT_EQ(paz_of(response).normalization, 2.5);
  EXPECT_EQ(paz_of(response).normalization_frequency, 1.0);
  EXPECT_TRUE(paz_of(response).poles.empty());
  EXPECT_TRUE(paz_of(response).zeros.empty());
}

TEST(ParseResponse, ReadsAFirWithItsDelay) {
  const ResponsePointer response = parsed("measured 2 x fir a\n400 47.5\n2\n0.5 0.01\n-0.5\n1\n1 0.02\n");
  EXPECT_EQ(response->groups.at(0).source, "measured");
  EXPECT_EQ(response->groups.at(0).type, RESPONSE_FIR);
  const Fir& fir = fir_of(response);
  EXPECT_EQ(fir.samprate, 400);
  EXPECT_EQ(fir.delay, 47.5);
  EXPECT_EQ(fir.numerators, (Values{0.5, -0.5}));
  EXPECT_EQ(fir.numerator_errors, (Values{0.01, 0}));
  EXPECT_EQ(fir.denominators, (Values{1}));
  EXPECT_EQ(fir.denominator_errors, (Values{0.02}));
}

TEST(ParseResponse, MarksADelayThatIsNotStated) { EXPECT_EQ(fir_of(parsed(kFir)).delay, -1); }

TEST(ParseResponse, ReadsAnIir) {
  const ResponsePointer response = parsed("theoretical 1 x iir a\n20\n1\n0.5\n2\n1\n-0.5 0.1\n");
  EXPECT_EQ(response->groups.at(0).type, RESPONSE_IIR);
  const auto& iir = *static_cast<const Iir*>(response->groups.at(0).filter);
  EXPECT_EQ(iir.samprate, 20);
  EXPECT_EQ(iir.delay, -1);
  EXPECT_EQ(iir.numerators, (Values{0.5}));
  EXPECT_EQ(iir.denominators, (Values{1, -0.5}));
  EXPECT_EQ(iir.denominator_errors, (Values{0, 0.1}));
}

template <typename Table>
void expect_table(const char* type, int code) {
  const ResponsePointer response =
      parsed(std::string("theoretical 1 x ") + type + " a\n2\n0.01 1.5 90\n10 2 -45.5 0.1 0.2\n");
  EXPECT_EQ(response->groups.at(0).type, code);
  EXPECT_EQ(response->groups.at(0).type_name, type);
  const auto& table = *static_cast<const Table*>(response->groups.at(0).filter);
  EXPECT_EQ(table.frequencies, (Values{0.01, 10}));
  EXPECT_EQ(table.amplitudes, (Values{1.5, 2}));
  EXPECT_EQ(table.phases, (Values{90, -45.5}));
  EXPECT_EQ(table.amplitude_errors, (Values{0, 0.1}));
  EXPECT_EQ(table.phase_errors, (Values{0, 0.2}));
}

TEST(ParseResponse, ReadsTables) {
  expect_table<Fap>("fap", RESPONSE_FAP);
  expect_table<Fap2>("fap2", RESPONSE_FAP2);
}

TEST(ParseResponse, KeepsTheNameOfAnUnknownTypeAndSkipsItsLines) {
  const ResponsePointer response = parsed(
      "theoretical 1 x polynomial a\n"
      "nothing that is known\n"
      "theoretical but no header\n"
      "measured x y z\n"
      "measured 2 y FIR\n"
      "theoretical 3 z fap2\n"
      "0\n");
  ASSERT_EQ(response->group_count, 3);
  EXPECT_EQ(response->groups.at(0).type, RESPONSE_OTHER);
  EXPECT_EQ(response->groups.at(0).type_name, "polynomial");
  EXPECT_EQ(response->groups.at(0).filter, nullptr);
  EXPECT_EQ(response->groups.at(1).type, RESPONSE_OTHER);  // types are spelled in small letters
  EXPECT_EQ(response->groups.at(1).type_name, "FIR");
  EXPECT_EQ(response->groups.at(2).type, RESPONSE_FAP2);
}

TEST(ParseResponse, ReadsGroupsInOrder) {
  const ResponsePointer response = parsed("theoretical 1 a paz\n1\n0\n0\n" + std::string(kFir) + kFir);
  ASSERT_EQ(response->group_count, 3);
  ASSERT_EQ(response->groups.size(), 3);
  EXPECT_EQ(response->groups.at(0).type, RESPONSE_PAZ);
  EXPECT_EQ(response->groups.at(2).type, RESPONSE_FIR);
}

TEST(ParseResponse, SkipsCommentsAndBlankLinesAnywhere) {
  const ResponsePointer response = parsed(
      "# a filter\n"
      "\n"
      "theoretical 1 x fir an author # of renown\n"
      "   # within\n"
      "\t100 # samples per second\n"
      "1#one\n"
      " \t \n"
      "0.5 # 0.1 0.2\n"
      "0\n"
      "# the end");
  EXPECT_EQ(response->groups.at(0).author, "an author");
  EXPECT_EQ(fir_of(response).samprate, 100);
  EXPECT_EQ(fir_of(response).numerators, (Values{0.5}));
  EXPECT_EQ(fir_of(response).numerator_errors, (Values{0}));
}

TEST(ParseResponse, TakesAnyWhiteSpaceAndLineEnd) {
  const ResponsePointer response = parsed("\ttheoretical\t1 \v x\f fir  \r\n  100\t \t3 \r\n1\r\n .5\r\n0");
  EXPECT_EQ(fir_of(response).samprate, 100);
  EXPECT_EQ(fir_of(response).delay, 3);
  EXPECT_EQ(fir_of(response).numerators, (Values{0.5}));
  EXPECT_EQ(response->groups.at(0).author, "");
}

TEST(ParseResponse, DoesNotCheckTheSequenceNumber) {
  const std::pair<const char*, int> cases[] = {
      {"1", 1},
      {"+7", 7},
      {"-3", -3},
      {"007", 7},
      {"2147483647", std::numeric_limits<int>::max()},
      {"2147483648", std::numeric_limits<int>::max()},
      {"-99999999999999999999999", std::numeric_limits<int>::min()},
      {"99999999999999999999999", std::numeric_limits<int>::max()},
  };
  for (const auto& [word, number] : cases) {
    EXPECT_EQ(parsed(std::string("theoretical ") + word + " x other")->groups.at(0).sequence, number) << word;
  }
}

TEST(ParseResponse, ReadsEveryFormOfANumber) {
  const std::pair<const char*, double> cases[] = {
      {"1", 1},
      {"+1", 1},
      {"-1", -1},
      {"1.", 1},
      {".5", 0.5},
      {"-.5", -0.5},
      {"1e3", 1000},
      {"1E+3", 1000},
      {"+1.5e-3", 0.0015},
      {"0", 0},
      {"0.1", 0.1},
      {"1e308", 1e308},
      {"5e-324", 5e-324},
      {"00012", 12},
      {"0e999", 0},
      {"6.0077000000000004e7", 6.0077000000000004e7},
  };
  for (const auto& [word, number] : cases) {
    EXPECT_EQ(fir_of(parsed(std::string("theoretical 1 x fir\n100\n1\n") + word + "\n0\n")).numerators.at(0), number)
        << word;
  }
}

TEST(ParseResponse, RefusesWhatIsNoFiniteNumber) {
  for (const char* word :
       {"x",    "1d5",   "1D5",   "1e", "1e+",      "--1", "++1",  "+-1",  "+",        "-",   ".",   "1,5",
        "0x10", "1.5.2", "1_000", "1;", "\xc2\xbd", "inf", "-inf", "+inf", "infinity", "nan", "NaN", "1e309x"}) {
    EXPECT_EQ(fault_of(std::string("theoretical 1 x fir\n100\n1\n") + word + "\n0\n"),
              std::string("4: expected a numerator: \"") + word + "\" is not a number");
  }
  for (const char* word : {"1e309", "-1e309", "+1e309", "1e99999"}) {
    EXPECT_EQ(fault_of(std::string("theoretical 1 x fir\n100\n1\n") + word + "\n0\n"),
              std::string("4: expected a numerator: \"") + word + "\" is not a number within range");
  }
}

TEST(ParseResponse, ReadsBackEveryNumberExactly) {
  std::mt19937_64 random(triglub_test::random_seed());
  std::uniform_real_distribution<double> mantissas(-1, 1);
  std::uniform_int_distribution<int> exponents(-300, 300);
  Values numbers;
  std::ostringstream text;
  text.precision(17);
  text << "theoretical 1 x fir\n100\n1000\n";
  for (int i = 0; i < 1000; ++i) {
    numbers.push_back(std::ldexp(mantissas(random), exponents(random)));
    text << numbers.back() << '\n';
  }
  text << "0\n";
  EXPECT_EQ(fir_of(parsed(text.str())).numerators, numbers);
}

using Faults = std::initializer_list<std::pair<std::string, std::string>>;

// The faults of texts that follow on the head of a group of the type.
void expect_faults(const std::string& type, const Faults& cases) {
  for (const auto& [text, fault] : cases) {
    EXPECT_EQ(fault_of("theoretical 1 x " + type + "\n" + text), fault) << type << "\n" << text;
  }
}

const std::string A_GROUP =
    " (a group begins with \"theoretical\" or \"measured\", a whole number, a description and a type), found ";

TEST(ParseResponse, NamesLineAndTextWhereNoGroupBegins) {
  const std::string first = "expected the first group" + A_GROUP;
  const Faults cases = {
      {"", "1: " + first + "the end of the file"},
      {"\n\n# nothing\n", "3: " + first + "the end of the file"},
      {"\nparadoxical 1 x paz\n", "2: " + first + "\"paradoxical 1 x paz\""},
      {"Theoretical 1 x paz\n", "1: " + first + "\"Theoretical 1 x paz\""},
      {"theoretical one x paz\n", "1: " + first + "\"theoretical one x paz\""},
      {"theoretical 1.5 x paz\n", "1: " + first + "\"theoretical 1.5 x paz\""},
      {"theoretical 1 paz\n", "1: " + first + "\"theoretical 1 paz\""},
      {"theoretical 1\n", "1: " + first + "\"theoretical 1\""},
      {"theoretical\n", "1: " + first + "\"theoretical\""},
      {"theoretical - x paz\n", "1: " + first + "\"theoretical - x paz\""},
      {"theoreticality 1 x paz which goes on, and on and on\n",
       "1: " + first + "\"theoreticality 1 x paz which goes on, an...\""},
  };
  for (const auto& [text, fault] : cases) EXPECT_EQ(fault_of(text), fault) << text;
}

TEST(ParseResponse, NamesLineAndFaultOfPolesAndZeros) {
  const std::string further = "5: expected a further group or the end of the file" + A_GROUP;
  const Faults of_paz = {
      {"", "1: expected the normalization factor, found the end of the file"},
      {"1 2 3\n0\n0\n", "2: expected the normalization factor (1 or 2 numbers), found 3"},
      {"1\n", "2: expected the number of poles, found the end of the file"},
      {"1\nx\n", "3: expected the number of poles, found \"x\""},
      {"1\n1 1\n1 1\n0\n", "3: expected the number of poles, found \"1 1\""},
      {"1\n1.0\n1 1\n0\n", "3: expected the number of poles, found \"1.0\""},
      {"1\n-1\n0\n", "3: expected the number of poles, found \"-1\""},
      {"1\n2\n1 1\n", "4: expected 2 poles, found 1"},
      {std::string("1\n2\n1 1\n") + kFir, "5: expected 2 poles, found 1"},
      {"1\n2\n1 1\n0\n", "5: expected a pole (2 or 4 numbers), found 1"},
      {"1\n1\n1\n0\n", "4: expected a pole (2 or 4 numbers), found 1"},
      {"1\n1\n1 1 0.1\n0\n", "4: expected a pole (2 or 4 numbers), found 3"},
      {"1\n1\n1 1 0.1 0.1 0.1\n0\n", "4: expected a pole (2 or 4 numbers), found 5"},
      {"1\n1\n1 1 1 1 1 1 1\n0\n", "4: expected a pole (2 or 4 numbers), found 7"},
      {"1\n1\n1 1\n2 2\n0\n", "5: expected the number of zeros, found \"2 2\""},
      {"1\n1\n1 1\n", "4: expected the number of zeros, found the end of the file"},
      {"1\n0\n1\n1 x\n", "5: expected a zero: \"x\" is not a number"},
      {"1\n0\n2\n1 1\n\n\n", "7: expected 2 zeros, found 1"},
      {"1\n0\n0\n1 1\n", further + "\"1 1\""},
      {"1\n0\n0\n0\n", further + "\"0\""},
  };
  expect_faults("paz", of_paz);
}

TEST(ParseResponse, NamesLineAndFaultOfCoefficients) {
  const Faults of_fir = {
      {"x\n", "2: expected the input sample rate: \"x\" is not a number"},
      {"100 1 2\n0\n0\n", "2: expected the input sample rate (1 or 2 numbers), found 3"},
      {"100\n3\n1\n2\n", "5: expected 3 numerators, found 2"},
      {"100\n1\n1\n", "4: expected the number of denominators, found the end of the file"},
      {"100\n1\n1 2 3\n0\n", "4: expected a numerator (1 or 2 numbers), found 3"},
      {"100\n0\n1\n1 2 3\n", "5: expected a denominator (1 or 2 numbers), found 3"},
      {"100\n0\n2\n1\ntheoretical 1 x paz\n", "6: expected 2 denominators, found 1"},
  };
  expect_faults("fir", of_fir);
  const Faults of_iir = {
      {"100 3\n0\n0\n", "2: expected the input sample rate (1 number), found 2"},
  };
  expect_faults("iir", of_iir);
}

TEST(ParseResponse, NamesLineAndFaultOfRows) {
  const Faults of_fap = {
      {"", "1: expected the number of rows, found the end of the file"},
      {"1\n1 2\n", "3: expected a row of frequency, amplitude and phase (3 or 5 numbers), found 2"},
  };
  expect_faults("fap", of_fap);
  const Faults of_fap2 = {
      {"1\n1 2 3 4\n", "3: expected a row of frequency, amplitude and phase (3 or 5 numbers), found 4"},
      {"1\n1 2 3 4 5 6\n", "3: expected a row of frequency, amplitude and phase (3 or 5 numbers), found 6"},
      {"2\n1 2 3\n", "3: expected 2 rows, found 1"},
  };
  expect_faults("fap2", of_fap2);
}

TEST(ParseResponse, LimitsTheEntriesOfACount) {
  const auto fir = [](long count) {
    std::string text = "theoretical 1 x fir\n100\n" + std::to_string(count) + "\n";
    for (long i = 0; i < count; ++i) text += "1\n";
    return text + "0\n";
  };
  const std::string beyond = ", more than 100000 numbers of one kind in a filter (the limit response-entries)";
  EXPECT_EQ(fir_of(parsed(fir(MAX_RESPONSE_ENTRIES))).numerators.size(), MAX_RESPONSE_ENTRIES);
  EXPECT_EQ(fault_of(fir(MAX_RESPONSE_ENTRIES + 1)), "3: \"100001\" numerators" + beyond);
  EXPECT_EQ(fault_of("theoretical 1 x paz\n1\n99999999999999999999999999\n"),
            "3: \"99999999999999999999999999\" poles" + beyond);
  const triglub::ScopedLimit limit(triglub::Limit::response_entries, 7);
  for (const long count : {6, 7}) EXPECT_EQ(fir_of(parsed(fir(count))).numerators.size(), count);
  EXPECT_EQ(fault_of(fir(8)),
            "3: \"8\" numerators, more than 7 numbers of one kind in a filter (the limit response-entries)");
}

TEST(ParseResponse, LimitsTheGroupsOfAFile) {
  EXPECT_EQ(triglub::limit(triglub::Limit::response_groups), 1000u);
  const triglub::ScopedLimit limit(triglub::Limit::response_groups, 3);
  std::string text;
  for (int groups = 1; groups <= 3; ++groups) {
    text += "theoretical 1 x other\n";
    EXPECT_EQ(parsed(text)->group_count, groups);
  }
  EXPECT_EQ(fault_of(text + "theoretical 1 x other\n"),
            "4: more than 3 groups of a response file (the limit response-groups)");
}

// The last number counts the denominators, so nothing shorter than the whole is complete, except the first group by
// itself and a file cut within a header, which leaves a type that is not known ("fi").
TEST(ParseResponse, NoticesWhereverTheFileIsCutOff) {
  const std::string first_group = "theoretical 1 x paz a\n1 1\n1\n-1 1 0 0\n1\n0 0\n";
  const std::string whole = first_group + kFir;
  int noticed = 0;
  for (std::size_t size = 0; size <= whole.find_last_of('0'); ++size) {
    const std::string cut = whole.substr(0, size);
    const bool ends_in_header = cut.substr(cut.find_last_of('\n') + 1).rfind("theoretical 1 ", 0) == 0;
    if (ends_in_header || cut == first_group || cut + '\n' == first_group) continue;
    EXPECT_NE(fault_of(cut), "no fault") << cut;
    ++noticed;
  }
  EXPECT_GT(noticed, 60);
  EXPECT_EQ(fault_of(whole), "no fault");
}

TEST(ParseResponse, SurvivesDamage) {
  std::mt19937 random(triglub_test::random_seed());
  const std::string whole = "theoretical 1 x paz a\n1 1\n1\n-1 1 0 0\n1\n0 0\n" + std::string(kFir) +
                            "measured 1 x fap2\n1\n1 2 3\ntheoretical 1 x other\n\n";
  const std::string bytes = std::string("0123456789 \n\n#.-+eEtheormad\t\r\xff") + '\0';
  for (int i = 0; i < 20000; ++i) {
    std::string text = whole;
    for (unsigned n = random() % 4 + 1; n > 0; --n) text[random() % text.size()] = bytes[random() % bytes.size()];
    ResponseFault fault;
    const ResponsePointer response = parse_response(text, &fault);
    if (response == nullptr) {
      ASSERT_GE(fault.line, 1) << text;
      ASSERT_NE(fault.text, "") << text;
    } else {
      ASSERT_EQ(response->group_count, static_cast<int>(response->groups.size())) << text;
      ASSERT_GE(response->group_count, 1) << text;
    }
  }
}

// The blocks of the format's description that hold a header, comments and all.
std::vector<std::string> documented_examples() {
  std::ifstream file(TRIGLUB_SOURCE_DIR "/doc/response-files.md");
  std::vector<std::string> blocks = {""};
  for (std::string line; std::getline(file, line);) {
    if (line == "```") {
      blocks.emplace_back();
    } else {
      blocks.back() += line + '\n';
    }
  }
  std::erase_if(blocks, [](const std::string& block) { return block.find("theoretical  1") == std::string::npos; });
  return blocks;
}

TEST(ParseResponse, ReadsTheDocumentedExamples) {
  const std::vector<std::string> examples = documented_examples();
  ASSERT_EQ(examples.size(), 2);
  const ResponsePointer paz = parsed(examples[0]);
  EXPECT_EQ(paz->group_count, 1);
  EXPECT_EQ(paz_of(paz).poles.size(), 4);
  EXPECT_EQ(paz_of(paz).pole_errors.at(3), std::complex<double>(0.5, 0.5));
  EXPECT_EQ(paz_of(paz).zeros.size(), 2);
  const ResponsePointer fir = parsed(examples[1]);
  EXPECT_EQ(fir->group_count, 1);
  EXPECT_EQ(get_fir_delay(static_cast<Fir*>(fir->groups.at(0).filter)), 0.01);
}

}  // namespace
