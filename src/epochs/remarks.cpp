// One row a remark, in the order of the remarks.
#include "epochs/remarks.h"

#include <array>

namespace triglub {

namespace {

constexpr std::array<RemarkText, kRemarks> kTexts = {{
    {Rank::note, kSitechan, kSite, "times without a sensor under rows of sitechan that have one at others: no epochs"},
    {Rank::note, kSitechan, kSite, "times under rows of sitechan for which no row of site holds: no epochs"},
    {Rank::warning, kSitechan, kSite, "channels that reach out of their row of site: the station is widened"},
    {Rank::warning, kSitechan, kSite, "rows of sitechan left out: no row of site holds at their time"},
    {Rank::warning, kSitechan, kSite, "rows of sitechan left out: others stand, or no sensor does, all the time"},
    {Rank::warning, kSitechan, kSite, "rows of sitechan left out: they name no station or no channel"},
    {Rank::warning, kSitechan, kSite, "rows of sitechan left out: no row of snetsta or affiliation has their station"},
    {Rank::warning, kSite, kSite, "rows of site left out: no row of snetsta or affiliation has their station"},
    {Rank::warning, kSitechan, kSite, "channel epochs left out: no row of affiliation holds at their time"},
    {Rank::warning, kSite, kSite, "rows of site left out: no row of affiliation holds at their time"},
    {Rank::warning, kSitechan, kSite, "rows of sitechan left out: they end before they begin"},
    {Rank::warning, kSite, kSite, "rows of site left out: they end before they begin"},
    {Rank::warning, kSensor, kSensor, "rows of sensor left out: they end before they begin"},
    {Rank::warning, kCalibration, kCalibration, "rows of calibration left out: they end before they begin"},
    {Rank::warning, kStage, kStage, "rows of stage left out: they end before they begin"},
    {Rank::warning, kSitechan, kSitechan, "rows of sitechan that hold at one time: the one that began later stands"},
    {Rank::warning, kSite, kSite, "rows of site that hold at one time: the one that began later stands"},
    {Rank::warning, kSensor, kSensor, "rows of sensor that hold at one time: the one that began later stands"},
    {Rank::warning, kCalibration, kCalibration,
     "rows of calibration that hold at one time: the one that began later stands"},
    {Rank::warning, kStage, kStage, "rows of stage that hold at one time: the one that began later stands"},
    {Rank::warning, kSnetsta, kSnetsta, "rows of snetsta with one key: the later one counts"},
    {Rank::warning, kSchanloc, kSchanloc, "rows of schanloc with one key: the later one counts"},
    {Rank::warning, kNetwork, kNetwork, "rows of network with one key: the later one counts"},
    {Rank::warning, kInstrument, kInstrument, "rows of instrument with one key: the later one counts"},
    {Rank::warning, kSensor, kSensor, "rows of sensor left out: no row of sitechan has their channel"},
    {Rank::warning, kCalibration, kCalibration, "rows of calibration left out: no row of sitechan has their channel"},
    {Rank::warning, kStage, kStage, "rows of stage left out: no row of sitechan has their channel"},
}};

}  // namespace

const RemarkText& text_of(Remark remark) { return kTexts[static_cast<std::size_t>(remark)]; }

}  // namespace triglub
