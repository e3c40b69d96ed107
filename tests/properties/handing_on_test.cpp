// A document goes out while it is written, however much one of its networks holds.
#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>
#include <streambuf>
#include <string>

#include "properties/databases.h"
#include "reference/edition2/made_tables.h"
#include "support/file_text.h"

namespace triglub_properties {

namespace {

using namespace triglub_reference::edition2;

// Keeps nothing but the sizes of what it is given.
class Sizes : public std::streambuf {
 public:
  std::streamsize largest = 0;
  std::streamsize all = 0;

 private:
  std::streamsize xsputn(const char* /*text*/, std::streamsize size) override {
    largest = std::max(largest, size);
    all += size;
    return size;
  }
  int_type overflow(int_type c) override {
    ++all;
    return traits_type::not_eof(c);
  }
};

Tables one_channel_of_many_epochs() {
  TableRows rows = {{SNETSTA, {}}, {SITE, {{"lat", "42"}, {"lon", "74"}, {"elev", "1"}}}, {SITECHAN, {}}};
  for (int hour = 0; hour < 2000; ++hour) {
    rows.push_back({CALIBRATION, {{"time", at_hour(hour)}, {"endtime", at_hour(hour + 1)}, {"samprate", "40"}}});
  }
  return tables_of(rows);
}

TEST(LongNetworks, GoOutInPieces) {
  Sizes sizes;
  std::ostream out(&sizes);
  write_document(triglub_test::file_text(TRIGLUB_SOURCE_DIR "/data/stationxml.pf"), {one_channel_of_many_epochs(), {}},
                 out);
  EXPECT_GT(sizes.all, 500000);
  EXPECT_LT(sizes.largest, 100000);
}

}  // namespace

}  // namespace triglub_properties
