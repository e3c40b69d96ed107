// The records at which a condition holds, in order.
#ifndef TRIGLUB_ENGINE_OPERATIONS_SUBSET_H
#define TRIGLUB_ENGINE_OPERATIONS_SUBSET_H

#include <memory>

#include "engine/view/view.h"

namespace triglub {

// Null after a complaint when the condition does not compile. A record at which it fails to evaluate is not taken.
// `is_kept`: the view stays, so it is worth having it find the runs of a field's texts: later conditions on the field
// use them too.
std::unique_ptr<const View> subset_view(const View& view, const char* condition, bool is_kept);

}  // namespace triglub

#endif
