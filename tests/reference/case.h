// What a conversion is given, as plain structures: the tables before they are files, the responses before they are
// texts, the element tree before it is a parameter file. And what comes of a conversion.
//
// The reference writer works on these; the library works on the files that library_run.h makes of them.
#ifndef TRIGLUB_TESTS_REFERENCE_CASE_H
#define TRIGLUB_TESTS_REFERENCE_CASE_H

#include <map>
#include <string>
#include <vector>

namespace triglub_reference {

// Field to value; a field that is not given is null.
using Row = std::map<std::string, std::string>;

// A line of numbers of a response file, as it is written: the value (one number or real and imaginary part), then
// perhaps its errors.
using Numbers = std::vector<std::string>;

// A group of a response file. paz: head is factor and perhaps frequency, first the poles, second the zeros. fir, iir:
// head is the rate and perhaps the delay, first the numerators, second the denominators. fap, fap2: first the rows.
struct Filter {
  std::string type;
  Numbers head;
  std::vector<Numbers> first;
  std::vector<Numbers> second;
};

struct ResponseFile {
  std::vector<Filter> filters;
  bool readable = true;  // false: written with a fault
};

struct Tables {
  std::map<std::string, std::vector<Row>> rows;
  std::map<std::string, ResponseFile> files;  // by name below the tables' folder
};

// A line of the element tree.
struct Line {
  std::string name;
  std::string flag;
  std::string type;
  std::string value;
};

struct Definition {
  std::string tag;
  std::vector<Line> attributes;
  std::vector<Line> elements;
};

struct Tree {
  std::string root;
  std::map<std::string, Definition> definitions;
};

struct Request {
  Tables tables;
  Tree tree;
  std::map<std::string, std::string> subset;
  std::map<std::string, std::string> site;  // the parameter file "site"
  unsigned int flags = 0;
};

struct Outcome {
  std::string document;
  std::vector<std::string> log;  // the library's complaints and category traces
  std::string end;               // "returned", "fatal: TEXT" or "exception: TEXT"
};

}  // namespace triglub_reference

#endif
