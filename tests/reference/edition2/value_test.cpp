// The plain form's expressions and values, held against what is told by hand.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "reference/edition2/expression.h"
#include "reference/edition2/value_text.h"

namespace triglub_reference::edition2 {

namespace {

// Two records of one element; what is not given is null.
const Row kChannel = {{"chan", "BHZ"}, {"vang", "90.0"}, {"hang", "-10"}, {"ondate", "2000060"}, {"chanid", "0100"}};
const Row kOtherChannel = {{"chan", "LHZ"}, {"vang", "180"}};
const Row kPlace = {
    {"lat", "42.6370"}, {"lon", "190"}, {"elev", "1.6450"}, {"staname", "R & <D>"}, {"ondate", "1900366"}};

Record record_of(const Row& channel) {
  Record record = {};
  record[SITECHAN] = &channel;
  record[SITE] = &kPlace;
  return record;
}

RecordList both() {
  static const Record first = record_of(kChannel);
  static const Record second = record_of(kOtherChannel);
  return {&first, &second};
}

struct Expression {
  const char* text;
  const char* value;  // as text; null for a null
};

TEST(PlainExpressions, MeanWhatIsToldByHand) {
  const Expression expressions[] = {
      {"lat", "42.6370"},
      {"lat + 0", "42.637"},
      {"elev * 1000", "1645"},
      {"7 / 2", "3.5"},
      {"7 - 2 - 1", "4"},
      {"2 + 3 * 4", "14"},
      {"-lat", "-42.637"},
      {"edepth", nullptr},
      {"edepth + 1", nullptr},
      {"-edepth", nullptr},
      {"edepth < 1", nullptr},
      {"edepth == edepth", nullptr},
      {"descrip =~ /-/", nullptr},
      {"!(edepth < 1)", "1"},
      {"edepth < 1 && 1", "0"},
      {"edepth < 1 || 1", "1"},
      {"edepth < 1 ? 1 : 2", "2"},
      {"1 ? edepth : 2", nullptr},
      {"chan =~ /BH.*/", "1"},
      {"chan =~ /BH/", "0"},
      {"chan !~ /BH/", "1"},
      {"lat =~ /42.6370/", "1"},
      {"chan < 'BHZZ'", "1"},
      {"is_null(edepth + 1)", "1"},
      {"is_null(lat)", "0"},
      {"assume(edepth, 5)", "5"},
      {"assume(lat, 5)", "42.637"},
      {"assume(descrip, chan)", "BHZ"},
      {"assume(edepth, dnorth)", nullptr},
      {"concat(chan, descrip, '/', lat, edepth)", "BHZ/42.6370"},
      {"concat(descrip)", ""},
      {"xml(staname)", "R & <D>"},
      {"1 / 0", nullptr},
      {"is_null(1 / 0)", nullptr},
      {"1 ? 2 : 1 / 0", "2"},
      {"first(chan)", "BHZ"},
      {"earliest(chan)", "BHZ"},
      {"latest(chan)", "LHZ"},
      {"earliest(hang)", "-10"},
      {"latest(hang)", nullptr},
      {"latest(vang) - 1", "179"},
      {"earliest(edepth)", nullptr},
      {"count(chan)", "2"},
      {"count(hang)", "1"},
      {"count(edepth)", "0"},
      {"count(lat)", "1"},
      {"chanid", "0100"},
      {"chanid * 1", "100"},
      {"last(chan)", "LHZ"},
      {"last(hang)", nullptr},
      {"elev / 3", "0.54833"},
      {"elev * 3", "4.935"},
      {"elev - lat / 1000", "1.602363"},
      {"1 / lon", "0.005263158"},
      {"vang / lon", "0.4736842"},
      {"elev * 1 + 0.1 - 0.1", "1.645"},
      {"lat * 0.1 * 10", "42.637"},
      {"elev - elev * 1000 * 0.001", "0"},
      {"0.1 + 0.2", "0.30000000000000004"},
      {"concat(lat * 0.1, '')", "4.2637"},
      {"agreed(lat, 42.63704)", "42.63704"},
      {"agreed(lat, 42.63706)", "42.637"},
      {"agreed(lat, edepth)", "42.637"},
      {"agreed(edepth, lat)", nullptr},
      {"agreed(edepth, 1 / 0)", nullptr},
      {"agreed(3, 3)", "3"},
      {"100000", "100000"},
      {"100000.0", "1e+05"},
  };
  for (const Expression& expression : expressions) {
    const auto value = text_at(parsed(expression.text), *both().front(), both());
    EXPECT_EQ(value.value_or("(null)"), expression.value == nullptr ? "(null)" : expression.value) << expression.text;
  }
}

struct ValueCase {
  const char* type;
  const char* value;
  const char* text;
};

TEST(PlainValues, AreWrittenAsIsToldByHand) {
  const ValueCase cases[] = {
      {"text", "R &amp; D", "R &amp; D"},
      {"other_pf:site", "town", "A &amp; B"},
      {"string", "staname", "R &amp; &lt;D&gt;"},
      {"string", "' \"a\tb ' ", "\"a b"},
      {"lookup", "lat", "42.6370"},
      {"string", "edepth", ""},
      {"float", "lat", "42.637"},
      {"float", "0 * -1.5", "0"},
      {"float", "'12.50'", "12.5"},
      {"float", "chan", ""},
      {"integer", "0 - lat", "-42"},
      {"integer", "1000000000000.0 * 10000000", ""},
      {"integer", "chanid", "100"},
      {"epoch", "0", "1970-01-01T00:00:00Z"},
      {"epoch", "0 - 0.0004", "1970-01-01T00:00:00Z"},
      {"epoch", "0 - 0.0006", "1969-12-31T23:59:59.999Z"},
      {"epoch", "946684800.0625", "2000-01-01T00:00:00.063Z"},
      {"epoch", "253402300799.9994", "9999-12-31T23:59:59.999Z"},
      {"epoch", "253402300799.9996", ""},
      {"epoch", "0 - 62135596800", "0001-01-01T00:00:00Z"},
      {"epoch", "0 - 62135596801", ""},
      {"julian", "sitechan.ondate", "2000-02-29T00:00:00Z"},
      {"julian", "site.ondate", ""},
      {"julian", "2000366.9", "2000-12-31T00:00:00Z"},
      {"deg_lat", "lat", "42.637"},
      {"deg_lat", "90.1", ""},
      {"deg_lon", "lon", "-170"},
      {"deg_lon", "180", "180"},
      {"deg_lon", "540", "-180"},
      {"deg_lon", "1000000", ""},
      {"deg_az", "hang", "350"},
      {"deg_az", "360", "0"},
      {"deg_az", "359.9", "359.9"},
      {"dip", "vang", "0"},
      {"dip", "90.1", "0.1"},
      {"dip", "180.1", ""},
      {"dip", "0.3", "-89.7"},
      {"meters", "elev", "1645"},
      {"meters", "0.0123", "12.3"},
      {"meters", "elev / 3", "548.33"},
      {"dip", "vang + 0.04", "0"},
      {"deg_lat", "lat * 2", "85.274"},
      {"deg_lat", "vang - 0.01", ""},
      {"deg_az", "hang + 9.99", "0"},
      {"deg_lon", "lon / 10", "19"},
      {"meters", "edepth", ""},
      {"count", "chan", "2"},
      {"count", "edepth", "0"},
  };
  for (const ValueCase& c : cases) {
    EXPECT_EQ(value_text({"x", "-", c.type, c.value}, both(), {{"town", "A &amp; B"}}, false), c.text)
        << c.type << " " << c.value;
  }
}

TEST(PlainValues, HaveNoQuotationMarksInAttributes) {
  EXPECT_EQ(value_text({"x", "-", "string", "'a\"b'"}, both(), {}, true), "a&quot;b");
}

}  // namespace

}  // namespace triglub_reference::edition2
