// What each remark is about and how it is put.
#ifndef TRIGLUB_SRC_EPOCHS_REMARKS_H
#define TRIGLUB_SRC_EPOCHS_REMARKS_H

#include "epochs/records.h"
#include "epochs/told.h"
#include "findings.h"

namespace triglub {

struct RemarkText {
  Rank rank;
  RecordTable table;  // of Told::row
  RecordTable other;  // of Told::other
  const char* text;   // reads well with a number behind it
};

const RemarkText& text_of(Remark remark);

}  // namespace triglub

#endif
