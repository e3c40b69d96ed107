#include "reference/edition2/random_expression.h"

namespace triglub_reference::edition2 {

namespace {

constexpr const char* kNumberFields[] = {"lat",
                                         "site.lon",
                                         "elev",
                                         "edepth",
                                         "hang",
                                         "sitechan.vang",
                                         "samprate",
                                         "instrument.samprate",
                                         "calibration.samprate",
                                         "calib",
                                         "calper",
                                         "fc",
                                         "gcalib",
                                         "leadfac",
                                         "gnom",
                                         "stageid",
                                         "stage.decifac",
                                         "izero",
                                         "chanid",
                                         "sensor.chanid",
                                         "inid",
                                         "instrument.inid",
                                         "commid",
                                         "network.commid",
                                         "tshift",
                                         "ondate",
                                         "site.ondate",
                                         "sitechan.offdate",
                                         "dnorth",
                                         "time",
                                         "sensor.endtime",
                                         "stage.time",
                                         "epoch.time",
                                         "epoch.endtime",
                                         "station_epoch.time",
                                         "station_epoch.endtime",
                                         "channels",
                                         "station_epoch.channels",
                                         "network_epoch.time",
                                         "network_epoch.endtime",
                                         "network_epoch.stations",
                                         "site.lddate"};
constexpr const char* kTextFields[] = {
    "snet",           "snetsta.fsta", "sta",          "site.sta",     "chan",         "schanloc.loc",  "fchan",
    "netname",        "network.net",  "network.auth", "staname",      "site.statype", "refsta",        "descrip",
    "sitechan.ctype", "insname",      "units",        "stage.iunits", "snetsta.auth", "schanloc.auth", "snident",
    "stage.ssident",  "rsptype"};

}  // namespace

std::string ExpressionMaker::number_field() { return random_.one_of(kNumberFields); }
std::string ExpressionMaker::text_field() { return random_.one_of(kTextFields); }

std::string ExpressionMaker::number_over_records(int depth) {
  const std::string function = random_.pick({"first", "last", "earliest", "latest", "count"});
  return function + "(" + (function == "count" ? inner().any(depth) : inner().number(depth)) + ")";
}

std::string ExpressionMaker::number(int depth) {
  if (depth == 0 || random_.percent(40)) {
    return random_.percent(75) ? number_field()
                               : random_.pick({"0", "1", "2", "2.5", "1000", "0.1", "0.07", "2000060"});
  }
  if (over_records_ && random_.percent(30)) return number_over_records(depth - 1);
  const std::string left = number(depth - 1);
  switch (random_.below(may_fail_ ? 11 : 9)) {
    case 0:
      return "(" + left + random_.pick({" + ", " - "}) + number(depth - 1) + ")";
    case 1:
      return "(" + left + " * " + random_.pick({"1000", "2", "0.5", "-1", "0"}) + ")";
    case 2:
      return "(" + condition(depth - 1) + " ? " + left + " : " + number(depth - 1) + ")";
    case 3:
      return "assume(" + left + ", " + number(depth - 1) + ")";
    case 4:
      return "is_null(" + (random_.percent(50) ? left : text(depth - 1)) + ")";
    case 5:
      return condition(depth - 1);
    case 6:
      return "-" + left;
    case 7:
      return "(" + left + " * " + random_.pick({"lat", "samprate", "calper", "calib", "gcalib"}) + ")";
    case 8:
      return "agreed(" + left + ", " +
             (random_.percent(40) ? number(depth - 1)
                                  : "(" + left + random_.pick({" + 0", " + 0.00004", " * 1.0000001"}) + ")") +
             ")";
    case 9:
      return "(" + left + " % " + random_.pick({"7", "2.5", "0", "decifac"}) + ")";
    default:
      return "(" + left + " / " + random_.pick({"2", "3", "0", "samprate", "calper", "calib", "1000.0"}) + ")";
  }
}

std::string ExpressionMaker::text(int depth) {
  if (depth == 0 || random_.percent(40)) {
    return random_.percent(80) ? text_field() : random_.pick({"\"12.5\"", "'  in blanks '", "\"<&>\"", "\"\"", "'A'"});
  }
  if (over_records_ && random_.percent(20)) {
    return random_.pick({"first", "last", "earliest", "latest"}) + "(" + inner().text(depth - 1) + ")";
  }
  const std::string left = text(depth - 1);
  switch (random_.below(4)) {
    case 0:
      return "concat(" + left + ", " + any(depth - 1) + random_.pick({")", ", \"/\")"});
    case 1:
      return "(" + condition(depth - 1) + " ? " + left + " : " + text(depth - 1) + ")";
    case 2:
      return "assume(" + left + ", " + text(depth - 1) + ")";
    default:
      return "xml(" + left + ")";
  }
}

std::string ExpressionMaker::condition(int depth) {
  const std::string comparison = random_.pick({" < ", " <= ", " > ", " >= ", " == ", " != "});
  const int inside = depth == 0 ? 0 : depth - 1;
  switch (random_.below(depth == 0 ? 4 : 7)) {
    case 0:
      return "(" + number(inside) + comparison + number(inside) + ")";
    case 1:
      return "(" + text(inside) + comparison + text(inside) + ")";
    case 2:
      return "is_null(" + any(inside) + ")";
    case 3:
      return "(" + any(inside) + random_.pick({" =~ ", " !~ "}) +
             random_.pick({"/A.*/", "/-|1|2/", "/.*/", "/BHZ|KR/", "/A\\*/"}) + ")";
    case 4:
      return "(" + condition(inside) + " && " + condition(inside) + ")";
    case 5:
      return "(" + condition(inside) + " || " + condition(inside) + ")";
    default:
      return "!" + condition(inside);
  }
}

}  // namespace triglub_reference::edition2
