// Writes one network of a database as StationXML to standard output:
//
//     convert_network examples/observatory/observatory XA > XA.xml
//
// The library writes a category from the first to the last of its records, which is exact for one network at a time.
// For everything the command `triglub convert` does, down to the telling of what is left out, see tool/.
#include <cstdio>
#include <iostream>
#include <string>

#include "db2stationxml.h"

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: convert_network DATABASE NETWORK\n");
    return 2;
  }
  Dbptr db;
  Pf* pf = nullptr;
  if (dbopen(argv[1], "r", &db) != 0) return 1;
  if (pfread("stationxml", &pf) != 0) {
    std::fprintf(stderr, "convert_network: stationxml.pf is neither here, nor in TRIGLUB_PFPATH, nor installed\n");
    return 1;
  }
  const std::string pattern = "/" + std::string(argv[2]) + "/";
  rbtree* subset = newarr(nullptr);
  setarr(subset, "snetsta.snet", pattern.c_str());

  constexpr unsigned int kResponseLevel = 0x40;
  std::cout << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
  db2stationxml(db, pf, subset, std::cout, kResponseLevel);

  freearr(subset, nullptr);
  pffree(pf);
  dbclose(db);
  return std::cout.good() ? 0 : 1;
}
