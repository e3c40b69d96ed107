// A program of somebody else's: counts the channel epochs of a database's document.
#include <db2stationxml.h>
#include <smartindex.h>

#include <cstdio>
#include <sstream>

int main(int argc, char** argv) {
  Dbptr db;
  Pf* pf = nullptr;
  if (argc != 2 || dbopen(argv[1], "r", &db) != 0 || pfread("stationxml", &pf) != 0) return 1;
  rbtree* subset = newarr(nullptr);
  std::ostringstream out;
  db2stationxml(db, pf, subset, out, 0x20);
  freearr(subset, nullptr);
  pffree(pf);
  dbclose(db);
  const std::string document = out.str();
  long count = 0;
  for (std::size_t at = 0; (at = document.find("<Channel ", at)) != std::string::npos; ++at) ++count;
  std::printf("%ld channel epochs\n", count);
  return 0;
}
