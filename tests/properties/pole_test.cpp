// Documents may name every latitude but 90 itself.
#include <gtest/gtest.h>

#include <string>

#include "properties/databases.h"
#include "properties/xml_reader.h"
#include "reference/edition2/made_tables.h"

namespace triglub_properties {

namespace {

using namespace triglub_reference::edition2;

Element station_at(const std::string& latitude) {
  const Tables tables =
      tables_of({{SNETSTA, {}}, {SITE, {{"lat", latitude}, {"lon", "0"}, {"elev", "0"}}}, {SITECHAN, {}}});
  const Element document = read_xml(shipped_document({tables, {}}));
  return *document.child("Network")->child("Station");
}

TEST(StationsAtThePoles, AreInTheDocument) {
  const struct {
    const char* latitude;
    const char* written;
  } cases[] = {{"90.0", "89.99999"}, {"-90.0", "-90"}, {"89.9999", "89.9999"}};
  for (const auto& [latitude, written] : cases) {
    const Element station = station_at(latitude);
    EXPECT_EQ(station.text_at({"Latitude"}), written);
    EXPECT_EQ(station.text_at({"Channel", "Latitude"}), written);
  }
}

}  // namespace

}  // namespace triglub_properties
