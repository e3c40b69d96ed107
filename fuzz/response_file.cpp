// Response files: what is read is whole, and every part of it can be asked for.
#include <cmath>
#include <string_view>

#include "platform/response.h"
#include "response/parse.h"
#include "support/expect.h"

namespace {

using triglub_fuzz::expect;

void expect_finite(const std::vector<double>& numbers) {
  for (const double number : numbers) expect(std::isfinite(number), "a number is finite");
}

void expect_finite(const std::vector<std::complex<double>>& numbers) {
  for (const auto& number : numbers) {
    expect(std::isfinite(number.real()) && std::isfinite(number.imag()), "a root is finite");
  }
}

void look_at(const Paz& paz) {
  expect(paz.poles.size() == paz.pole_errors.size(), "poles have errors");
  expect(paz.zeros.size() == paz.zero_errors.size(), "zeros have errors");
  expect_finite(std::vector{paz.normalization, paz.normalization_frequency});
  for (const auto* roots : {&paz.poles, &paz.pole_errors, &paz.zeros, &paz.zero_errors}) expect_finite(*roots);
}

void look_at(const Fir& fir) {
  expect(fir.numerators.size() == fir.numerator_errors.size(), "numerators have errors");
  expect(fir.denominators.size() == fir.denominator_errors.size(), "denominators have errors");
  expect_finite(std::vector{fir.samprate, fir.delay});
  for (const auto* numbers : {&fir.numerators, &fir.numerator_errors, &fir.denominators, &fir.denominator_errors}) {
    expect_finite(*numbers);
  }
}

void look_at(const Fap& fap) {
  for (const auto* column : {&fap.amplitudes, &fap.phases, &fap.amplitude_errors, &fap.phase_errors}) {
    expect(column->size() == fap.frequencies.size(), "columns are of one length");
    expect_finite(*column);
  }
  expect_finite(fap.frequencies);
}

void look_at(const ResponseGroup& group) {
  expect((group.filter == nullptr) == (group.type == RESPONSE_OTHER), "a known group has a filter");
  if (group.type == RESPONSE_PAZ) look_at(*static_cast<const Paz*>(group.filter));
  if (group.type == RESPONSE_FIR) look_at(*static_cast<const Fir*>(group.filter));
  if (group.type == RESPONSE_IIR) look_at(*static_cast<const Iir*>(group.filter));
  if (group.type == RESPONSE_FAP) look_at(*static_cast<const Fap*>(group.filter));
  if (group.type == RESPONSE_FAP2) look_at(*static_cast<const Fap2*>(group.filter));
}

void look_at(Response* response) {
  expect(response->group_count > 0, "a response has groups");
  expect(static_cast<std::size_t>(response->group_count) == response->groups.size(), "groups are counted");
  for (int i = -1; i <= response->group_count; ++i) {
    constexpr std::size_t kRoom = 64;
    char type[kRoom];
    const bool is_group = i >= 0 && i < response->group_count;
    expect((get_response_stage_type(response, i, type) == 0) == is_group, "the type of a group, and of no other");
    if (is_group) expect(response->groups[static_cast<std::size_t>(i)].type_name.starts_with(type), "its type", type);
  }
  for (const ResponseGroup& group : response->groups) look_at(group);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  triglub::ResponseFault fault;
  const auto response = triglub::parse_response({reinterpret_cast<const char*>(data), size}, &fault);
  if (response == nullptr) {
    expect(fault.line > 0 && !fault.text.empty(), "a fault has its place and text", fault.text);
    return 0;
  }
  look_at(response.get());
  return 0;
}
