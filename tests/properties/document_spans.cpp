#include "properties/document_spans.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <limits>
#include <numeric>
#include <optional>
#include <stdexcept>
#include <string>

namespace triglub_properties {

namespace {

using namespace triglub_reference::edition2;

bool is_leap(int year) { return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0); }

Instant midnight(int year, int month, int day) {
  const int lengths[] = {31, is_leap(year) ? 29 : 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  const long of_year = std::accumulate(lengths, lengths + month - 1, static_cast<long>(day));
  return static_cast<double>(day_of_yearday(year * 1000L + of_year).value()) * kDay;
}

Instant instant_in(const std::optional<std::string>& text, Instant otherwise) {
  if (!text) return otherwise;
  int year = 0;
  int month = 0;
  int day = 0;
  int hour = 0;
  int minute = 0;
  double second = 0;
  const int read = std::sscanf(text->c_str(), "%d-%d-%dT%d:%d:%lfZ", &year, &month, &day, &hour, &minute, &second);
  if (read != 6 || month < 1 || month > 12) throw std::runtime_error("no time: " + *text);
  return midnight(year, month, day) + std::round((hour * 60 + minute) * 60000 + second * 1000);
}

void expect_within(const Element& inner, const Element& outer) {
  const Span in = span_of(inner);
  const Span out = span_of(outer);
  EXPECT_LT(in.begin, in.end) << inner.name << " " << *inner.attribute("code");
  EXPECT_TRUE(out.begin <= in.begin && in.end <= out.end)
      << inner.name << " " << *inner.attribute("code") << " reaches out of " << outer.name;
}

long number_in(const Element& element, const char* child) {
  const auto text = element.text_at({child});
  return text ? std::stol(*text) : 0;
}

void expect_some_of_all(const Element& element, const char* some, const char* all) {
  EXPECT_LE(number_in(element, some), number_in(element, all)) << element.name << " " << *element.attribute("code");
}

void expect_stages_in_order(const Element& channel) {
  const Element* response = channel.child("Response");
  if (response == nullptr) return;
  long last = std::numeric_limits<long>::min();
  for (const Element* stage : response->all("Stage")) {
    const long number = std::stol(*stage->attribute("number"));
    EXPECT_LT(last, number) << "stages of channel " << *channel.attribute("code");
    last = number;
  }
}

void expect_consistent_station(const Element& station) {
  expect_some_of_all(station, "SelectedNumberChannels", "TotalNumberChannels");
  for (const Element* channel : station.all("Channel")) {
    expect_within(*channel, station);
    expect_stages_in_order(*channel);
  }
}

}  // namespace

Span span_of(const Element& element) {
  return {instant_in(element.attribute("startDate"), -kForever), instant_in(element.attribute("endDate"), kForever)};
}

void expect_consistent(const Element& document) {
  for (const Element* network : document.all("Network")) {
    expect_some_of_all(*network, "SelectedNumberStations", "TotalNumberStations");
    for (const Element* station : network->all("Station")) {
      expect_within(*station, *network);
      expect_consistent_station(*station);
    }
  }
}

}  // namespace triglub_properties
