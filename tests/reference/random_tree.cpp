#include "reference/random_case.h"

namespace triglub_reference {

namespace {

constexpr int kDeepestNesting = 9;
constexpr std::size_t kMostDefinitions = 30;

constexpr const char* kCategories[] = {"snetsta.snet",
                                       "snet",
                                       "sitechan.sta",
                                       "sta",
                                       "sitechan.chan",
                                       "chan",
                                       "schanloc.loc",
                                       "schanloc.fchan",
                                       "stage.stageid",
                                       "stageid",
                                       "sitechan.ondate",
                                       "sitechan.offdate",
                                       "sensor.inid",
                                       "instrument.inid",
                                       "stage.ounits",
                                       "network.commid",
                                       "calibration.samprate",
                                       "site.lat",
                                       "snetsta.fsta",
                                       "sensor.time",
                                       "sensor.endtime",
                                       "stage.gnom",
                                       "statype",
                                       "stage.decifac"};
constexpr const char* kNumericCategories[] = {
    "stage.stageid", "sitechan.ondate", "sitechan.offdate", "sensor.inid",    "stage.decifac", "sitechan.chanid",
    "sensor.time",   "stage.samprate",  "instrument.inid",  "network.commid", "stage.izero"};
constexpr const char* kTextFields[] = {"snetsta.snet", "sitechan.sta",   "sta",          "chan",         "schanloc.loc",
                                       "fchan",        "netname",        "staname",      "site.statype", "descrip",
                                       "insname",      "sitechan.ctype", "stage.iunits", "stage.dfile",  "band"};
constexpr const char* kNumberFields[] = {"lat",
                                         "site.lon",
                                         "elev",
                                         "edepth",
                                         "hang",
                                         "sitechan.vang",
                                         "samprate",
                                         "calib",
                                         "stage.gnom",
                                         "stageid",
                                         "chanid",
                                         "sensor.chanid",
                                         "calibration.samprate",
                                         "fc",
                                         "commid",
                                         "tshift",
                                         "ondate",
                                         "site.ondate",
                                         "site.offdate",
                                         "instrument.samprate",
                                         "inid",
                                         "calibration.fc",
                                         "stage.decifac",
                                         "dnorth"};
constexpr const char* kTimeFields[] = {"time", "endtime", "stage.time", "stage.endtime"};

class TreeMaker {
 public:
  TreeMaker(Random& random, int faults) : random_(random), faults_(faults) {}

  Tree any_tree() {
    tree_.root = new_name();
    make_group(tree_.root, any_tag(), 1);
    return tree_;
  }

  Tree document_tree() {
    tree_.root = "document";
    const std::string channel_field = random_.pick({"sitechan.chan", "chan", "schanloc.fchan"});
    define("document", "FDSNStationXML", {{"network", "-", "CATEGORIZED_GROUP", "snetsta.snet"}});
    define("network", "Network",
           {{"Selected", "-", "count", "sitechan.sta"},
            {"station", "-", "CATEGORIZED_GROUP", random_.pick({"sitechan.sta", "snetsta.fsta"})}});
    define("station", "Station",
           {{"CreationDate", "-", "julian", "site.ondate"}, {"channels", "-", "CATEGORIZED_GROUP", channel_field}});
    define("channels", "-",
           {{"channel", "-", random_.pick({"CATEGORIZED_GROUP", "CATEGORIZED_BY_NUMBER"}), "sitechan.ondate"}});
    std::vector<Line> channel = {{"response_group", "-", "GROUP", ""}};
    if (random_.percent(80)) {
      const std::string rate = random_.pick({"calibration.samprate", "instrument.samprate", "stage.samprate"});
      channel.insert(channel.begin(), {"SampleRate", random_.pick({"-", "r", "-", "x"}),
                                       random_.pick({"float", "integer", "string"}), rate});
    }
    define("channel", "Channel", channel);
    define("response_group", "Response", {{"stage", "-", "CATEGORIZED_BY_NUMBER", "stage.stageid"}});
    define("stage", "Stage", {{"response", "-", "STAGE", "stage"}});
    return tree_;
  }

  Tree deep_tree() {
    const int levels = random_.between(12, 18);
    for (int level = 1; level <= levels; ++level) {
      std::vector<Line> children;
      if (level < levels) children.push_back(child_line("g" + std::to_string(level + 1)));
      if (level == levels && random_.percent(20)) children.push_back({"g1", "-", "GROUP", ""});
      define("g" + std::to_string(level), random_.pick({"-", "Tag", "Network", "Response"}), children);
    }
    tree_.root = "g1";
    return tree_;
  }

 private:
  bool fault() { return random_.below(10000) < faults_; }

  std::string new_name() { return "g" + std::to_string(++names_); }

  std::string any_tag() {
    if (fault()) return "Not.ATag";
    if (random_.percent(1)) return "";
    return random_.pick(
        {"Network", "Station", "Channel", "Channel", "Stage", "Response", "-", "-", "Comment", "fdsn:Extra", "a_b-c"});
  }

  std::string any_flag() { return random_.pick({"-", "-", "-", "-", "r", "x", "rx"}); }

  // The lines given with random ones before, between and behind them.
  void define(const std::string& name, const std::string& tag, const std::vector<Line>& lines) {
    Definition definition = {tag, attributes(), {}};
    for (const Line& line : lines) {
      add_values(definition.elements);
      definition.elements.push_back(line);
    }
    add_values(definition.elements);
    tree_.definitions[name] = definition;
  }

  std::vector<Line> attributes() {
    std::vector<Line> lines;
    for (int n = random_.below(4); n > 0; --n) {
      lines.push_back(value_line(random_.pick({"code", "xml:lang", "startDate", "a.b", "_x"})));
      if (fault()) lines.back().name = "no=name";
      if (fault()) lines.back().type = "GROUP";
    }
    return lines;
  }

  void add_values(std::vector<Line>& lines) {
    while (random_.percent(45)) lines.push_back(plain_line());
  }

  Line plain_line() {
    const std::string name =
        random_.pick({"Latitude", "Description", "-", "SampleRate", "ns:Value", "AnElementWithALongName"});
    if (random_.percent(12))
      return {fault() ? "No.Name" : name, any_flag(), "count", fault() ? "no.field" : random_.one_of(kCategories)};
    Line line = value_line(name);
    if (fault()) line.name = "No.Name";
    return line;
  }

  Line value_line(const std::string& name) {
    const std::string type =
        random_.pick({"deg_lat", "deg_lon", "dip", "deg_az", "record_count", "meters", "float", "integer", "lookup",
                      "string", "epoch", "julian", "text", "other_pf:site", "string", "text", "foo"});
    Line line = {name, any_flag(), type, random_.percent(3) ? "" : value_for(type)};
    if (fault()) line.type = "force_lookup";
    if (fault()) line.value = "no.field";
    return line;
  }

  std::string value_for(const std::string& type) {
    if (type == "text") {
      if (random_.percent(40)) return std::string(static_cast<std::size_t>(random_.between(24, 76)), 'w');
      return random_.pick({"1.1", "a <b> & 'c' \"d\"", "http://www.fdsn.org/xml/station/1", "two  blanks"});
    }
    if (type == "other_pf:site") return random_.pick({"country", "town", "nothing"});
    if (type == "float" || type == "integer") return number_value();
    if (type == "lookup" || type == "string") return random_.percent(50) ? text_value() : number_value();
    if (type == "epoch") {
      if (random_.percent(10)) return random_.pick({"sta", "\"x\"", "no.field", "sta * 2", "lat / 0"});
      return random_.pick({"time", "endtime", "sensor.time", "stage.endtime", "calibration.time", "\"0\"", "\"-0.001\"",
                           "time + 0.25", "chanid * 1000000"});
    }
    if (type == "julian") {
      if (random_.percent(10)) return random_.pick({"sta", "\"x\"", "no.field", "sta * 2", "lat / 0"});
      return random_.pick({"ondate", "sitechan.offdate", "site.ondate", "site.offdate", "\"1970001\"", "\"2001366\"",
                           "\"2000366\"", "chanid", "ondate + 1"});
    }
    return random_.one_of(kNumberFields);
  }

  std::string text_value() {
    if (random_.percent(60)) return random_.one_of(kTextFields);
    if (random_.percent(50)) return "\"  a literal <text>  \"";
    return std::string(random_.one_of(kTextFields)) + " =~ " + random_.pick({"/AAK/", "/AAK|-/", "/A..|00/", "/BH./"});
  }

  std::string number_value() {
    const std::string field = random_.percent(10) ? random_.one_of(kTimeFields) : random_.one_of(kNumberFields);
    if (random_.percent(50)) return field;
    if (random_.percent(8)) return random_.pick({"sta", "schanloc.loc", "\"12\"", "\"1e3\"", "sta + 1"});
    if (random_.percent(12)) return field + " =~ " + random_.pick({"/-1/", "/1|2|3/", "/...6/"});
    if (fault()) return field + " / 0";
    return field + " " + random_.pick({"*", "/", "+", "-", "<", ">"}) + " " + random_.pick({"1000", "2", "0.5", "3"});
  }

  Line child_line(const std::string& group) {
    if (random_.percent(45)) return {group, random_.percent(5) ? "x" : "-", "GROUP", ""};
    if (random_.percent(30)) {
      const bool odd = fault();  // texts that are not all numbers, or hold what a condition cannot
      return {group, "-", "CATEGORIZED_BY_NUMBER", odd ? "schanloc.loc" : random_.one_of(kNumericCategories)};
    }
    return {group, any_flag(), "CATEGORIZED_GROUP", fault() ? "calibration.units" : random_.one_of(kCategories)};
  }

  void make_group(const std::string& name, const std::string& tag, int depth) {
    Definition& definition = tree_.definitions[name];
    definition.tag = tag;
    definition.attributes = attributes();
    const int lines = random_.between(depth == 1 ? 2 : 0, 5);
    for (int n = 0; n < lines; ++n) {
      add_values(definition.elements);
      if (random_.percent(12)) definition.elements.push_back({"stages", any_flag(), "STAGE", "stage"});
      if (depth >= kDeepestNesting || tree_.definitions.size() >= kMostDefinitions || !random_.percent(65)) continue;
      add_child(definition, tag, depth);
    }
  }

  void add_child(Definition& definition, const std::string& tag, int depth) {
    std::string child = new_name();
    if (tag == "Channel" && random_.percent(50)) child = "response_group";
    definition.elements.push_back(child_line(child));
    if (!tree_.definitions.contains(child)) make_group(child, any_tag(), depth + 1);
  }

  Random& random_;
  int faults_;
  Tree tree_;
  int names_ = 0;
};

}  // namespace

Tree random_tree(Random& random, int faults) { return TreeMaker(random, faults).any_tree(); }
Tree random_document_tree(Random& random, int faults) { return TreeMaker(random, faults).document_tree(); }
Tree random_deep_tree(Random& random) { return TreeMaker(random, 0).deep_tree(); }

Tree ledger_tree() {
  Tree tree;
  tree.root = "ledger";
  tree.definitions["ledger"] = {"Ledger", {}, {{"station", "-", "CATEGORIZED_GROUP", "sitechan.sta"}}};
  tree.definitions["station"] = {"-", {}, {{"channel", "-", "CATEGORIZED_GROUP", "sitechan.chan"}}};
  tree.definitions["channel"] = {"-", {}, {{"epoch", "-", "CATEGORIZED_GROUP", "sitechan.ondate"}}};
  tree.definitions["epoch"] = {
      "-", {}, {{"FirstStage", "-", "string", "stage.lddate"}, {"stage", "-", "CATEGORIZED_GROUP", "stage.lddate"}}};
  Definition& stage = tree.definitions["stage"];
  stage.tag = "Record";
  for (const char* table :
       {"sitechan", "snetsta", "schanloc", "network", "site", "sensor", "instrument", "calibration", "stage"}) {
    stage.attributes.push_back({table, "-", "string", std::string(table) + ".lddate"});
  }
  return tree;
}

namespace {

Request request_over_random_tables(Random& random, const Extent& extent = {4, 4}) {
  Request request;
  request.tables = random_tables(random, extent);
  request.site = {{"country", "Kyrgyzstan"}, {"town", "Ala Archa & around"}};
  return request;
}

void add_subset(Random& random, Request& request) {
  if (random.percent(15)) request.subset[random.pick({"sitechan.sta", "sta", "snet"})] = "/AAK|KR|IU|AA/";
  if (random.percent(10)) request.subset["chan"] = random.pick({"/BH./", "/BHZ|LHZ/", "/BH/", "/.../"});
}

constexpr int kFewFaults = 5;

}  // namespace

Request random_request(Random& random) {
  Request request = request_over_random_tables(random);
  request.tree = random.percent(50) ? random_tree(random, kFewFaults) : random_document_tree(random, kFewFaults);
  add_subset(random, request);
  if (random.percent(1)) request.subset["site.sta"] = "/AAK/";  // not in the view yet when the subsets run
  const unsigned int levels[] = {0x40, 0x40, 0x40, 0x40, 0x40, 0x40, 0x40, 0x08, 0x10, 0x20, 0x00, 0x48, 0x44};
  request.flags = random.one_of(levels) | static_cast<unsigned int>(random.percent(70) ? 0 : random.below(4));
  return request;
}

Request random_ledger_request(Random& random) {
  Request request = request_over_random_tables(random);
  request.tree = ledger_tree();
  add_subset(random, request);
  return request;
}

Request random_response_request(Random& random) {
  Request request = request_over_random_tables(random);
  request.tree = random_document_tree(random, 0);
  request.flags = 0x40;
  return request;
}

Request random_large_request(Random& random) {
  Request request = request_over_random_tables(random, {7, 70});
  request.tree = random.percent(50) ? random_tree(random, 0) : random_document_tree(random, 0);
  // Patterns that match several texts, whose first records lie far from the first of all at times.
  std::vector<Line>& elements = request.tree.definitions[request.tree.root].elements;
  elements.insert(elements.begin(), {"by_type", "-", "CATEGORIZED_GROUP", "stage.gtype"});
  request.tree.definitions["by_type"] = {
      "Type", {{"first", "-", "string", "stage.lddate"}}, {{"Records", "-", "count", "stage.lddate"}}};
  request.flags = 0x40;
  return request;
}

Request random_deep_request(Random& random) {
  Request request = request_over_random_tables(random);
  request.tree = random_deep_tree(random);
  request.flags = 0x40U | static_cast<unsigned int>(random.below(4));
  return request;
}

}  // namespace triglub_reference
