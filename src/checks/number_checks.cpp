// Totals are compared where both are there: either may be left out.
#include "checks/number_checks.h"

#include "checks/vocabulary.h"

namespace triglub::checks {

// As deep as the parser lets documents be.
void check_numbers(const Element& element, const Place& place) {
  if (holds_number(element.name) && !finite_number(element.text)) {
    place.tell(Rule::number, element.line,
               std::string(element.name) + " is " + quoted(trimmed(element.text)) + ", expected a finite number");
  }
  for (const Element& part : element.children) check_numbers(part, place);
}

void check_totals(const Element& element, const std::string& what, const Place& place) {
  const Figure total = figure_in(&element, "TotalNumber" + what);
  const Figure selected = figure_in(&element, "SelectedNumber" + what);
  if (!total || !selected || *total >= *selected) return;
  place.tell(Rule::totals, total.element->line,
             "TotalNumber" + what + " is " + text_of(*total) + ", expected at least the " + text_of(*selected) +
                 " of SelectedNumber" + what);
}

}  // namespace triglub::checks
