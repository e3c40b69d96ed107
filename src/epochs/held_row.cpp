// Time goes from border to border: between two of them the same row stands.
#include "epochs/held_row.h"

#include <algorithm>

namespace triglub {

namespace {

std::vector<Instant> borders_of(const HeldRows& rows) {
  std::vector<Instant> borders;
  for (const HeldRow& row : rows) borders.insert(borders.end(), {row.span.begin, row.span.end});
  std::sort(borders.begin(), borders.end());
  borders.erase(std::unique(borders.begin(), borders.end()), borders.end());
  return borders;
}

void append(const Stretch& stretch, std::vector<Stretch>* stretches) {
  if (!stretches->empty() && stretches->back().row == stretch.row && stretches->back().span.end == stretch.span.begin) {
    stretches->back().span.end = stretch.span.end;
  } else {
    stretches->push_back(stretch);
  }
}

}  // namespace

void find_stretches(const HeldRows& rows, std::vector<Stretch>* stretches) {
  stretches->clear();
  if (rows.size() == 1) return stretches->push_back({rows.front().span, rows.front().row});
  const std::vector<Instant> borders = borders_of(rows);
  Standing standing;
  auto next = rows.begin();
  for (std::size_t i = 0; i + 1 < borders.size(); ++i) {
    for (; next != rows.end() && next->span.begin <= borders[i]; ++next) standing.begin(*next);
    const HeldRow* row = standing.at(borders[i]);
    if (row != nullptr) append({{borders[i], borders[i + 1]}, row->row}, stretches);
  }
}

}  // namespace triglub
