// Random cases of the second edition: databases so small that their rows meet, overlap, double and miss one another,
// and element trees over them.
#ifndef TRIGLUB_TESTS_REFERENCE_EDITION2_RANDOM_CASE_H
#define TRIGLUB_TESTS_REFERENCE_EDITION2_RANDOM_CASE_H

#include "reference/edition2/case.h"
#include "reference/random_case.h"

namespace triglub_reference::edition2 {

// Each row has a number of its own in a field that no key holds: auth, refsta, descrip, tshift, snident, ssident,
// rsptype.
Tables random_tables(Random& random, int most_stations = 3);

// A tree of any shape; at the response level with stages anywhere.
Tree random_tree(Random& random, Level level);
// Networks, stations, channels and stages as documents have them, with dates and optional ends.
Tree document_tree();
// A tree that shows each record by the numbers of its rows and the times of its epochs.
Tree ledger_tree();

Request random_tree_request(Random& random);
Request random_document_request(Random& random);
Request random_ledger_request(Random& random);
// A document with whole stages over chains of stages, at the response level.
Request random_chains_request(Random& random);
// Any tree over many stations, at the response level.
Request many_stations_request(Random& random);

}  // namespace triglub_reference::edition2

#endif
