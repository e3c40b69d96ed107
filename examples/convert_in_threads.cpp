// Writes networks of a database as StationXML side by side, each by a thread of its own and to a file of its own:
//
//     convert_in_threads examples/observatory/observatory XA XB        # XA.xml and XB.xml in the current folder
//
// What is loaded is shared: tables and responses. A session and a conversion belong to one thread, so each thread has
// its own. A network that cannot be written costs the others nothing.
#include <atomic>
#include <exception>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "conversion.h"
#include "platform/elog.h"
#include "platform/sessions.h"

namespace {

using Responses = std::shared_ptr<const ResponseCache>;

void write_network(Dbptr session, Pf* pf, const Responses& responses, const std::string& network) {
  const std::string pattern = "/" + network + "/";
  const auto free_array = [](rbtree* array) { freearr(array, nullptr); };
  const std::unique_ptr<rbtree, decltype(free_array)> subset(newarr(nullptr), free_array);
  setarr(subset.get(), "snetsta.snet", pattern.c_str());

  std::ofstream out(network + ".xml", std::ios::binary);
  out << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
  triglub::Conversion conversion;
  conversion.use_responses(responses);
  conversion.write(session, pf, subset.get(), out, triglub::flags_for(triglub::DetailLevel::response));
  if (!out.flush()) throw std::runtime_error("the file cannot be written");
}

// What one thread does. False after a message.
bool convert(Dbptr db, const Responses& responses, const std::string& network) {
  Dbptr session;
  Pf* pf = nullptr;
  bool is_written = false;
  try {
    if (triglub::open_session(db, &session) != 0) throw std::runtime_error("the database has no session to go by");
    if (pfread("stationxml", &pf) != 0) throw std::runtime_error("stationxml.pf is not to be had");
    write_network(session, pf, responses, network);
    is_written = true;
  } catch (const std::exception& failure) {
    elog_complain(0, "%s: %s", network.c_str(), failure.what());
  }
  pffree(pf);
  dbclose(session);
  return is_written;
}

bool convert_all(Dbptr db, const std::vector<std::string>& networks) {
  const auto responses = std::make_shared<const ResponseCache>(db, "stage");
  std::atomic<bool> are_written = true;
  std::vector<std::thread> threads;
  threads.reserve(networks.size());
  for (const std::string& network : networks) {
    threads.emplace_back([&, db] {
      if (!convert(db, responses, network)) are_written = false;
    });
  }
  for (std::thread& thread : threads) thread.join();
  return are_written;
}

}  // namespace

int main(int argc, char** argv) {
  elog_init("convert_in_threads");
  if (argc < 3) {
    elog_notify(0, "usage: convert_in_threads DATABASE NETWORK...");
    return 2;
  }
  Dbptr db;
  if (dbopen(argv[1], "r", &db) != 0) return 1;
  bool are_written = false;
  try {
    are_written = convert_all(db, {argv + 2, argv + argc});
  } catch (const std::exception& failure) {
    elog_complain(0, "%s: %s", argv[1], failure.what());
  }
  dbclose(db);
  return are_written ? 0 : 1;
}
