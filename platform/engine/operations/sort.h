// A view in the order of some of its fields.
//
// It is fast because a view that is in order already is not sorted, and because the keys of a record are worked out
// once, packed into one integer where they fit. The order is that of the plain form, std::stable_sort of the records by
// their values.
#ifndef TRIGLUB_ENGINE_OPERATIONS_SORT_H
#define TRIGLUB_ENGINE_OPERATIONS_SORT_H

#include <memory>
#include <string>
#include <vector>

#include "engine/view/view.h"

namespace triglub {

// What happens to records whose keys are equal: they stay in their order, or only the first stays.
enum class EqualRecords { all, first };

// Sorts by the fields named, the first foremost; stable, by type, texts by bytes. Null after a complaint when the view
// lacks a field.
std::unique_ptr<const View> sort_view(const View& view, const std::vector<std::string>& keys, EqualRecords equal);

}  // namespace triglub

#endif
