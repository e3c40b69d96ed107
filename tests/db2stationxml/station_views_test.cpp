// The steps of the master view, as programs take them that look for what a document leaves out.
#include "station_views.h"

#include <gtest/gtest.h>

#include "conversion.h"
#include "dbhelper.h"
#include "support/collected_log.h"

namespace triglub_test {
namespace {

using triglub::coded_channels;
using triglub::Partners;
using triglub::with_networks;
using triglub::with_station_tables;

class StationViews : public Conversion {
 protected:
  Dbptr whole() {
    const Dbptr db = stations_.database();
    return {db.database, dbALL, dbALL, dbALL};
  }
  Dbptr sitechan() { return dblookup(whole(), nullptr, "sitechan", nullptr, nullptr); }
  Dbptr with_everything(Dbptr start, Partners partners) {
    const Dbptr coded = coded_channels(start, partners, subset_, false);
    return with_station_tables(with_networks(coded, partners, nullptr), partners, false);
  }
};

TEST_F(StationViews, KeepAChannelWithoutAnyPartnerOnlyWherePartnersAreOptional) {
  add_two_networks();
  stations_.add_row("sitechan", {{"sta", "ALONE"}, {"chan", "BHZ"}, {"ondate", "2001001"}});
  EXPECT_EQ(db_nrecs(with_everything(whole(), Partners::required)), 3);
  EXPECT_EQ(db_nrecs(with_everything(whole(), Partners::optional)), 4);
}

TEST_F(StationViews, HaveNullsForPartnersThatAreMissing) {
  stations_.add_row("sitechan", {{"sta", "ALONE"}, {"chan", "BHZ"}, {"ondate", "2001001"}});
  Dbptr view = with_everything(whole(), Partners::optional);
  ASSERT_EQ(db_nrecs(view), 1);
  view.record = 0;
  EXPECT_EQ(db_fieldlookup(view, "sitechan.sta"), "ALONE");
  for (const char* field : {"snetsta.snet", "schanloc.fchan", "network.net", "site.sta", "sensor.sta",
                            "instrument.insname", "calibration.sta"}) {
    EXPECT_EQ(db_fieldlookup(view, field), "-") << field;
  }
}

TEST_F(StationViews, StartFromTheRowsGiven) {
  add_two_networks();
  const Dbptr one = dbsubset(sitechan(), "sta == 'ANMO'", nullptr);
  for (const Partners partners : {Partners::required, Partners::optional}) {
    EXPECT_EQ(db_nrecs(coded_channels(one, partners, subset_, false)), 1);
    EXPECT_EQ(db_nrecs(coded_channels(sitechan(), partners, subset_, false)), 3);
  }
}

TEST_F(StationViews, TellTheirStepsWhenTraced) {
  add_two_networks();
  for (const bool traced : {false, true}) {
    const CollectedLog log;
    const Dbptr coded = coded_channels(sitechan(), Partners::required, subset_, traced);
    EXPECT_EQ(log.lines().size(), traced ? 2u : 0u);
    with_station_tables(with_networks(coded, Partners::required, nullptr), Partners::required, traced);
    EXPECT_EQ(log.lines().size(), traced ? 6u : 0u);
  }
}

}  // namespace
}  // namespace triglub_test
