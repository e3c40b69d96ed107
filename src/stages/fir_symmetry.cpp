// Filters with denominators are not centred, whatever their numerators are.
#include "stages/fir_symmetry.h"

#include <algorithm>

namespace triglub {

Symmetry symmetry_of(const Fir& fir) {
  const std::vector<double>& all = fir.numerators;
  if (all.empty() || !fir.denominators.empty()) return Symmetry::none;
  const auto half = static_cast<std::ptrdiff_t>(all.size() / 2);
  if (!std::equal(all.begin(), all.begin() + half, all.rbegin())) return Symmetry::none;
  return all.size() % 2 == 1 ? Symmetry::odd : Symmetry::even;
}

}  // namespace triglub
