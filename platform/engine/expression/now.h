// The time of now().
#ifndef TRIGLUB_ENGINE_EXPRESSION_NOW_H
#define TRIGLUB_ENGINE_EXPRESSION_NOW_H

namespace triglub::expression {

// Epoch seconds, whole, of the first call in the process; the number in SOURCE_DATE_EPOCH when that is set, so that a
// document can be made again byte by byte.
double now();

}  // namespace triglub::expression

#endif
