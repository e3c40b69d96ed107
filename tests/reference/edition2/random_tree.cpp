#include <algorithm>
#include <iterator>
#include <set>
#include <string>
#include <vector>

#include "reference/edition2/random_case.h"
#include "reference/edition2/random_expression.h"
#include "reference/edition2/random_stages.h"

namespace triglub_reference::edition2 {

namespace {

constexpr int kDeepest = 6;
constexpr std::size_t kMostGroups = 14;
constexpr int kExpressionDepth = 3;

constexpr const char* kCategories[] = {"snetsta.snet",
                                       "snetsta.fsta",
                                       "sitechan.sta",
                                       "site.ondate",
                                       "site.offdate",
                                       "sitechan.chan",
                                       "chan",
                                       "epoch.time",
                                       "epoch.endtime",
                                       "stage.stageid",
                                       "stageid",
                                       "schanloc.loc",
                                       "site.statype",
                                       "network.commid",
                                       "sitechan.chanid",
                                       "sensor.inid",
                                       "calibration.samprate",
                                       "site.lat",
                                       "stage.decifac",
                                       "stage.gnom",
                                       "refsta",
                                       "station_epoch.channels",
                                       "chain.number",
                                       "number"};

class TreeMaker {
 public:
  TreeMaker(Random& random, Level level) : random_(random), level_(level) {}

  Tree make() {
    tree_.root = "root";
    make_group("root", "FDSNStationXML", 1);
    require_nothing(tree_.groups["root"]);
    tree_.groups["root"].attributes.push_back({"xmlns:ns", "-", "text", "urn:extra"});
    return tree_;
  }

 private:
  std::string any_flag() {
    if (random_.percent(4)) return "r";
    return random_.percent(6) ? "x" : "-";
  }

  std::string any_tag() {
    return random_.pick({"Network", "Station", "Channel", "Stage", "Response", "Comment", "-", "-", "ns:Extra"});
  }

  // So that there is a document.
  static void require_nothing(Group& group) {
    for (std::vector<Line>* lines : {&group.attributes, &group.elements}) {
      for (Line& line : *lines) {
        if (line.flag == "r") line.flag = "-";
      }
    }
  }

  std::string expression(bool is_text) {
    ExpressionMaker maker(random_, true);
    return is_text ? maker.text(random_.below(kExpressionDepth)) : maker.number(random_.below(kExpressionDepth));
  }

  std::string value_for(const std::string& type) {
    if (type == "text") return random_.pick({"1.2", "two  blanks", "R &amp; D", "http://www.fdsn.org/xml/station/1"});
    if (type == "other_pf:site") return random_.pick({"country", "town"});
    if (type == "string" || type == "lookup") return expression(random_.percent(60));
    if (type == "unit" && random_.percent(80)) return random_.pick({"stage.iunits", "calibration.units", "ounits"});
    if (type == "unit") return expression(true);
    if (type == "count") return ExpressionMaker(random_, false).any(random_.below(kExpressionDepth));
    if (random_.percent(4)) return expression(true);
    if (type == "epoch" && random_.percent(80)) {
      return random_.pick({"time", "epoch.time", "epoch.endtime", "station_epoch.time", "station_epoch.endtime",
                           "network_epoch.time", "network_epoch.endtime", "earliest(epoch.time)",
                           "latest(epoch.endtime)", "calibration.time", "stage.endtime", "-70000000000",
                           "253402300799.9994", "253402300799.9996", "-62135596800", "epoch.time + 0.0005"});
    }
    if (type == "julian" && random_.percent(80)) {
      return random_.pick({"ondate", "site.ondate", "site.offdate", "sitechan.offdate", "izero", "1964366.9",
                           "10000001", "1001", "\"2000366\"", "latest(sitechan.offdate)"});
    }
    if (type.starts_with("d") && random_.percent(60)) {
      return random_.pick({"lat", "site.lon", "hang", "vang", "lat * 2.1", "lon - 777.7", "hang / 3", "site.statype"});
    }
    return expression(false);
  }

  Line value_line(const std::string& name) {
    const std::string type =
        random_.pick({"text", "other_pf:site", "string", "string", "string", "unit", "lookup", "float", "float",
                      "integer", "epoch", "epoch", "julian", "deg_lat", "deg_lon", "deg_az", "dip", "meters", "count"});
    return {name, any_flag(), type, value_for(type)};
  }

  std::vector<Line> attributes() {
    std::vector<Line> lines;
    for (const char* name : {"code", "xml:lang", "startDate", "endDate", "a.b"}) {
      if (random_.percent(25)) lines.push_back(value_line(name));
    }
    return lines;
  }

  Line child_line(const std::string& group) {
    if (random_.percent(35)) return {group, any_flag(), "GROUP", ""};
    const std::string type = random_.percent(65) ? "CATEGORIZED_GROUP" : "CATEGORIZED_BY_NUMBER";
    ExpressionMaker maker(random_, false);
    return {group, any_flag(), type, random_.percent(70) ? random_.one_of(kCategories) : maker.any(2)};
  }

  void make_group(const std::string& name, const std::string& tag, int depth) {
    Group group;
    group.tag = tag;
    if (tag != "-") group.attributes = attributes();
    for (int n = random_.between(depth == 1 ? 2 : 0, 4); n > 0; --n) {
      while (random_.percent(50)) {
        group.elements.push_back(value_line(random_.pick({"Latitude", "Name", "SampleRate", "ns:Value", "Count"})));
      }
      if (level_ == Level::response && random_.percent(6)) group.elements.push_back({"stage", any_flag(), "STAGE", ""});
      if (depth < kDeepest && groups_ < kMostGroups) add_child(group, depth);
    }
    group.optional = some_names(group);
    tree_.groups[name] = group;
  }

  void add_child(Group& group, int depth) {
    // The first edition leaves a group of that name out where there is no sampling rate.
    const std::string child = groups_++ == 3 ? "response_group" : "g" + std::to_string(groups_);
    make_group(child, any_tag(), depth + 1);
    group.elements.push_back(child_line(child));
    if (random_.percent(10)) group.elements.push_back(child_line(child));
  }

  // Of those that no line requires.
  std::vector<std::string> some_names(const Group& group) {
    std::vector<Line> lines = group.attributes;
    lines.insert(lines.end(), group.elements.begin(), group.elements.end());
    std::set<std::string> names;
    for (const Line& line : lines) {
      if (line.flag == "-" && random_.percent(50)) names.insert(line.name);
    }
    for (const Line& line : lines) {
      if (line.flag != "-") names.erase(line.name);
    }
    return {names.begin(), names.end()};
  }

  Random& random_;
  Level level_;
  Tree tree_;
  std::size_t groups_ = 0;
};

// How units and filters are written.
void add_options(Random& random, Tree& tree) {
  for (const char* unit : {"V", "counts", "COUNTS", "<V>", "nm/s", "m/s"}) {
    if (random.percent(15)) tree.unit_spellings[unit] = random.pick({"count", "m/s", "V", "R&D"});
  }
  tree.fir_filters = random.percent(80) ? "FIR" : "Coefficients";
  tree.calib_units = random.pick({"m", "m", "m/s", "Pa"});
}

// A transparent group with one element for each value of an expression.
Group step(const std::string& child, const std::string& expression) {
  return {"-", {}, {{child, "-", "CATEGORIZED_GROUP", expression}}, {}};
}

// A stage with its filter, decimation and gain.
Group whole_stage() {
  return {"Stage", {{"number", "r", "integer", "chain.number"}}, {{"stage", "r", "STAGE", ""}}, {}};
}

Request request_over_random_tables(Random& random, int most_stations = 3) {
  Request request;
  request.tables = random_tables(random, most_stations);
  request.site = {{"country", "Kyrgyzstan"}, {"town", "Ala Archa &amp; around"}};
  constexpr Level levels[] = {Level::response, Level::response, Level::response,
                              Level::network,  Level::station,  Level::channel};
  request.level = random.one_of(levels);
  return request;
}

struct Condition {
  const char* field;
  const char* pattern;
};
constexpr Condition kConditions[] = {{"snetsta.snet", "KR|K"},
                                     {"sta", "A.*"},
                                     {"snetsta.fsta", "F|AAK"},
                                     {"chan", "BHZ"},
                                     {"chan", ".*"},
                                     {"sitechan.chanid", "1|2"},
                                     {"site.statype", "-|ss"},
                                     {"site.lat", "-999.0000|90"},
                                     {"sensor.inid", "1|-1"},
                                     {"stage.stageid", "1"},
                                     {"epoch.time", ".*"},
                                     {"network.net", "K.*|-"},
                                     {"network.commid", "-1|1"},
                                     {"instrument.insname", "-"},
                                     {"site.ondate", "-1|2.*"},
                                     {"schanloc.loc", "-|00"},
                                     {"site.sta", "A.*"},
                                     {"calibration.units", "-|V"}};

void add_conditions(Random& random, Request& request) {
  while (random.percent(30)) {
    const Condition& condition = random.one_of(kConditions);
    request.conditions[condition.field] = condition.pattern;
  }
}

}  // namespace

Tree random_tree(Random& random, Level level) {
  Tree tree = TreeMaker(random, level).make();
  add_options(random, tree);
  return tree;
}

Tree ledger_tree() {
  Tree tree;
  tree.root = "ledger";
  tree.groups["ledger"] = {
      "Ledger",
      {},
      {{"First", "-", "string", "concat(snetsta.auth, '/', refsta, '/', descrip, '/', epoch.time)"},
       {"station", "-", "CATEGORIZED_GROUP", "snetsta.auth"}},
      {}};
  tree.groups["station"] = step("place", "refsta");
  tree.groups["place"] = step("channel", "descrip");
  tree.groups["channel"] = step("epoch", "epoch.time");
  tree.groups["epoch"] = step("stage", "ssident");
  Group& stage = tree.groups["stage"];
  stage.tag = "Record";
  for (const char* field : {"sitechan.descrip", "snetsta.auth", "schanloc.auth", "network.auth", "site.refsta",
                            "sensor.tshift", "instrument.rsptype", "calibration.snident", "stage.ssident"}) {
    const std::string name = field;
    stage.attributes.push_back({name.substr(0, name.find('.')), "-", "string", name});
    stage.optional.push_back(name.substr(0, name.find('.')));
  }
  for (const char* table : {"epoch", "station_epoch", "network_epoch"}) {
    stage.elements.push_back({"Begin", "-", "epoch", std::string(table) + ".time"});
    stage.elements.push_back({"End", "-", "epoch", std::string(table) + ".endtime"});
  }
  stage.elements.push_back({"Channels", "-", "integer", "station_epoch.channels"});
  stage.elements.push_back({"Stations", "-", "integer", "network_epoch.stations"});
  return tree;
}

Tree document_tree() {
  Tree tree;
  tree.root = "document";
  tree.groups["document"] = {"FDSNStationXML",
                             {{"schemaVersion", "-", "text", "1.2"}},
                             {{"Source", "-", "other_pf:site", "country"},
                              {"network", "-", "CATEGORIZED_GROUP", "assume(snetsta.snet, network.net)"}},
                             {}};
  tree.groups["network"] = {"Network",
                            {{"code", "r", "string", "assume(snetsta.snet, network.net)"},
                             {"startDate", "-", "epoch", "network_epoch.time"},
                             {"endDate", "-", "epoch", "network_epoch.endtime"}},
                            {{"Description", "-", "string", "network.netname"},
                             {"TotalNumberStations", "-", "integer", "network_epoch.stations"},
                             {"SelectedNumberStations", "-", "count", "snetsta.fsta"},
                             {"station_code", "-", "CATEGORIZED_GROUP", "snetsta.fsta"}},
                            {"startDate", "endDate", "Description", "station_code"}};
  tree.groups["station_code"] = step("station_name", "assume(sitechan.sta, site.sta)");
  tree.groups["station_name"] = step("station", "site.ondate");
  tree.groups["station"] = {"Station",
                            {{"code", "r", "string", "snetsta.fsta"},
                             {"startDate", "-", "epoch", "station_epoch.time"},
                             {"endDate", "-", "epoch", "station_epoch.endtime"}},
                            {{"Latitude", "r", "deg_lat", "site.lat"},
                             {"Longitude", "r", "deg_lon", "site.lon"},
                             {"Elevation", "r", "meters", "assume(site.elev, 0)"},
                             {"site", "-", "GROUP", ""},
                             {"TotalNumberChannels", "-", "integer", "station_epoch.channels"},
                             {"SelectedNumberChannels", "-", "count", "sitechan.chan"},
                             {"channel_code", "-", "CATEGORIZED_GROUP", "sitechan.chan"}},
                            {"startDate", "endDate", "channel_code"}};
  tree.groups["site"] = {"Site", {}, {{"Name", "-", "string", "assume(site.staname, snetsta.fsta)"}}, {}};
  tree.groups["channel_code"] = step("channel", "epoch.time");
  tree.groups["channel"] = {"Channel",
                            {{"code", "-", "string", "assume(schanloc.fchan, sitechan.chan)"},
                             {"startDate", "-", "epoch", "epoch.time"},
                             {"endDate", "-", "epoch", "epoch.endtime"},
                             {"locationCode", "-", "string", "schanloc.loc =~ /-*/ ? '' : schanloc.loc"}},
                            {{"Depth", "-", "meters", "assume(edepth, 0)"},
                             {"Azimuth", "-", "deg_az", "sitechan.hang"},
                             {"Dip", "-", "dip", "sitechan.vang"},
                             {"SampleRate", "-", "float", "assume(calibration.samprate, instrument.samprate)"},
                             {"sensor", "-", "GROUP", ""},
                             {"response", "-", "GROUP", ""}},
                            {"startDate", "endDate", "Azimuth", "Dip", "SampleRate", "sensor", "response"}};
  tree.groups["sensor"] = {"Sensor", {}, {{"Description", "-", "string", "instrument.insname"}}, {"Description"}};
  tree.groups["response"] = {"Response", {}, {{"stage", "-", "CATEGORIZED_BY_NUMBER", "chain.number"}}, {"stage"}};
  tree.groups["stage"] = {"Stage",
                          {{"number", "r", "integer", "stage.stageid"}},
                          {{"Gain", "-", "float", "stage.gnom"}, {"Unit", "-", "string", "stage.iunits"}},
                          {"Gain", "Unit"}};
  return tree;
}

Request random_tree_request(Random& random) {
  Request request = request_over_random_tables(random);
  request.tree = random_tree(random, request.level);
  add_conditions(random, request);
  return request;
}

Request random_document_request(Random& random) {
  Request request = request_over_random_tables(random);
  request.tree = document_tree();
  if (random.percent(60)) request.tree.groups["stage"] = whole_stage();
  add_options(random, request.tree);
  add_conditions(random, request);
  return request;
}

Request random_ledger_request(Random& random) {
  Request request = request_over_random_tables(random);
  request.tree = ledger_tree();
  add_conditions(random, request);
  return request;
}

Request random_chains_request(Random& random) {
  Request request;
  request.tables = random_chains(random);
  request.site = {{"country", "Kyrgyzstan"}};
  request.tree = document_tree();
  request.tree.groups["stage"] = whole_stage();
  add_options(random, request.tree);
  if (random.percent(10)) add_conditions(random, request);
  return request;
}

Request many_stations_request(Random& random) {
  constexpr int most_stations = 25;
  Request request = request_over_random_tables(random, most_stations);
  request.level = Level::response;
  request.tree = random.percent(50) ? random_tree(random, request.level) : document_tree();
  return request;
}

}  // namespace triglub_reference::edition2
