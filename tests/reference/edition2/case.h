// What a conversion by the second edition of the writing rules is given, as plain structures. Tables are those of the
// first edition's cases.
#ifndef TRIGLUB_TESTS_REFERENCE_EDITION2_CASE_H
#define TRIGLUB_TESTS_REFERENCE_EDITION2_CASE_H

#include <map>
#include <string>
#include <vector>

#include "reference/case.h"

namespace triglub_reference::edition2 {

struct Group {
  std::string tag;
  std::vector<Line> attributes;
  std::vector<Line> elements;
  std::vector<std::string> optional;  // names of lines
};

struct Tree {
  std::string root;
  std::map<std::string, Group> groups;
  std::map<std::string, std::string> unit_spellings = {};  // by the unit that the tables have
  std::string fir_filters = "FIR";                         // or Coefficients
  std::string calib_units = "m";
};

enum class Level { network, station, channel, response };

// Field to regular expression, without slashes.
using Conditions = std::map<std::string, std::string>;

struct Request {
  Tables tables;
  Tree tree;
  Conditions conditions;
  std::map<std::string, std::string> site;  // the parameter file "site"
  Level level = Level::response;
};

struct Outcome {
  std::string document;
  std::string failure;  // why there is none; empty when there is one
};

}  // namespace triglub_reference::edition2

#endif
