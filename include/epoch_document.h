// Documents of edition 2: every epoch that the tables tell apart, and nothing that is not so. A parameter file that has
// the key `edition 2` is written by these rules; doc/editions.md says what they are.
//
//     triglub::EpochDocument document(db, pf, nullptr, triglub::DetailLevel::response);
//     if (!document.write(std::cout)) ...                        // there is nothing to write
//     document.findings().report();
//
// db2stationxml and triglub::Conversion write such parameter files too. A document is all that its writing remembers:
// any number can be written side by side, each over a session of its own (platform/sessions.h). Its pieces can be
// written by several threads at once.
#ifndef TRIGLUB_EPOCH_DOCUMENT_H
#define TRIGLUB_EPOCH_DOCUMENT_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <ostream>
#include <string>

#include "conversion.h"
#include "findings.h"
#include "platform/containers.h"
#include "platform/database.h"
#include "platform/export.h"
#include "platform/parfile.h"
#include "platform/response_reading.h"

namespace triglub {

class TRIGLUB_API EpochDocument {
 public:
  // Reads and checks the tree of the parameter file, which need not stay, and makes the records of the database that
  // meet the conditions (expressions to patterns, as for db2stationxml; null: none). Throws FatalFailure, after
  // complaints, for a faulty tree, a table that refuses to load, a condition that does not compile.
  // So does a response file that the machine could not read. Files outside of the reach are told as unreadable ones.
  EpochDocument(Dbptr db, Pf* pf, rbtree* conditions, DetailLevel level);
  EpochDocument(Dbptr db, Pf* pf, rbtree* conditions, DetailLevel level, ResponseReach reach);
  ~EpochDocument();
  EpochDocument(const EpochDocument&) = delete;
  EpochDocument& operator=(const EpochDocument&) = delete;

  // What there is to tell, of the records and of all that was written so far by write() and split().
  const Findings& findings() const;
  // How many records are chosen.
  std::uint32_t record_count() const;
  bool has_records() const { return record_count() > 0; }

  // Writes the document, without an XML declaration; false when nothing was written: no records, or something required
  // is missing for all of them.
  bool write(std::ostream& out);

  // A document in parts, to be put together in this order: head, pieces, tail. One of no piece that holds anything is
  // not to be written at all when they are required.
  struct Parts {
    std::string head;
    std::size_t pieces = 0;
    bool are_required = false;
    std::string tail;
  };
  // False where the document can only be written whole, or there is nothing to write.
  bool split(Parts* parts);

  // Writes pieces. One for each thread.
  class TRIGLUB_API PieceWriter {
   public:
    // The document must outlive it, and have been split.
    explicit PieceWriter(const EpochDocument& document);
    ~PieceWriter();
    PieceWriter(const PieceWriter&) = delete;
    PieceWriter& operator=(const PieceWriter&) = delete;
    // False when the piece holds nothing. What there is to tell goes to *findings.
    bool write(std::size_t piece, std::ostream& out, Findings* findings);

   private:
    friend class EpochDocument;
    struct Inside;
    std::unique_ptr<Inside> inside_;
  };

 private:
  struct Inside;
  std::unique_ptr<Inside> inside_;
};

// Checks the tree of a parameter file of edition 2 against the names of a database, for messages: null, after a
// complaint for each fault, when there is any. *tables (unless null) has a bit for each table that expressions look at,
// by position among those of records and then the database's own.
class ElementTree;
TRIGLUB_API std::unique_ptr<const ElementTree> read_tree(Dbptr db, Pf* pf, std::uint32_t* tables = nullptr);

}  // namespace triglub

#endif
