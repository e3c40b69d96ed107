// Codes are part of the interface: scripts look for them. A rule keeps its code; a new one gets a new code.
#include "checks/rules.h"

#include <array>
#include <cstddef>

namespace triglub {

namespace {

constexpr CheckRank kError = CheckRank::error;
constexpr CheckRank kWarning = CheckRank::warning;

constexpr auto kRules = std::to_array<DocumentRule>({
    {"not-xml", kError, "mend the document there; what follows has not been checked"},
    {"document-type", kError, "take the declaration out, and put texts in the place of its entities"},
    {"not-stationxml", kError, "check an FDSN StationXML document"},
    {"too-large", kError, "check whether the channel is meant to be so large; the rest of it has not been checked"},
    {"number", kError, "write a finite decimal number"},
    {"totals", kError, "let the total count all there are, selected or not"},
    {"code-format", kError, "use a code that FDSN allows"},
    {"code-length", kWarning,
     "choose a code that fits the fixed fields of miniSEED 2, unless all users read miniSEED 3"},
    {"epoch-overlap", kError, "let one end where the other begins, or give them codes of their own"},
    {"date-format", kError, "write dates as 2001-05-30T00:00:00Z"},
    {"date-zone", kWarning, "put a Z behind it"},
    {"date-order", kError, "put begin and end right"},
    {"date-far", kWarning, "leave the end out as long as it is open"},
    {"begin-missing", kWarning, "say since when it has been so"},
    {"epoch-outside", kError, "widen what is around it, or cut the span"},
    {"place-missing", kError, "say where it is"},
    {"place-range", kError, "put the coordinate right: degrees, metres above the sea, metres below the ground"},
    {"place-far", kWarning, "put the coordinates right, or give the channel a station of its own"},
    {"orientation-missing", kError, "say where the sensor points: Azimuth and Dip, in degrees"},
    {"orientation-range", kError, "give degrees clockwise from north, and degrees down from the horizontal"},
    {"orientation-code", kWarning, "put the angles right, or name the channel 1, 2 or 3"},
    {"rate-missing", kError, "give the rate; for text without one, SampleRate 0 and a band code A or O"},
    {"rate-range", kError, "give the rate in samples a second"},
    {"band-code", kWarning, "put the rate right, or choose the band code for it"},
    {"response-missing", kWarning, "describe the response, or write an empty Response to say that there is none"},
    {"stages-missing", kWarning, "describe the stages between the sensor and the samples"},
    {"stage-order", kError, "number the stages 1, 2, 3 in the order of the signal"},
    {"unit-unknown", kWarning, "use an SI unit as FDSN spells it, such as m/s, Pa, V or count"},
    {"unit-chain", kError, "let each stage take what the one before it gives"},
    {"unit-hidden", kError, "give the stage a filter that says what units it takes and gives"},
    {"unit-sensitivity", kError, "let the sensitivity have the input of the first stage and the output of the last"},
    {"decimation-missing", kError, "add the Decimation, with factor 1 where nothing is decimated"},
    {"decimation-factor", kError, "give a whole number from 1"},
    {"decimation-offset", kError, "give the sample that is kept, a whole number from 0 and below the factor"},
    {"decimation-chain", kError, "let each digital stage take the rate at which the one before it gives"},
    {"decimation-rate", kError, "let the stages end at the rate of the channel"},
    {"delay-negative", kError, "give the delay in seconds, and what corrects it as Correction"},
    {"delay-correction", kWarning,
     "say what the recorder took off its times for the delay; 0 if it did not, which users have to know"},
    {"gain-missing", kError, "give the gain and its frequency"},
    {"gain-zero", kError, "give the gain; 1 where nothing is amplified"},
    {"gain-negative", kWarning,
     "turn the sensor's azimuth or dip instead, unless the polarity is turned by electronics"},
    {"gain-frequency", kError, "say at what frequency, in hertz, it holds"},
    {"sensitivity-missing", kWarning, "add the InstrumentSensitivity, which most programs rely on"},
    {"sensitivity-frequency", kError, "give the sensitivity at a frequency in the pass band"},
    {"sensitivity-gains", kError, "put the gain that is wrong right, or the sensitivity"},
    {"normalization", kError, "work the factor out anew: one over the poles and zeros at that frequency"},
    {"pole-unstable", kWarning, "look for a lost minus sign"},
    {"roots-unpaired", kError, "add the root that is lost, or put its sign right"},
    {"coefficient-sum", kWarning, "look for lost coefficients, a wrong symmetry, or a gain that was worked in"},
    {"fir-symmetry", kError, "write one half of a symmetric filter, or all of it with NONE"},
    {"list-order", kError, "sort the elements by frequency, each frequency once"},
});

}  // namespace

const std::vector<DocumentRule>& document_rules() {
  static const std::vector<DocumentRule> rules(kRules.begin(), kRules.end());
  return rules;
}

namespace checks {

static_assert(kRules.size() == static_cast<std::size_t>(Rule::list_order) + 1);

const DocumentRule& properties_of(Rule rule) { return kRules[static_cast<std::size_t>(rule)]; }

}  // namespace checks

}  // namespace triglub
