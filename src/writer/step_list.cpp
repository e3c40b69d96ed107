// The list only points to the texts, which live as long as the call.
#include "writer/step_list.h"

#include "platform/containers.h"

namespace triglub {

StepList new_step_list(bool traced) { return traced ? StepList{"verbose"} : StepList(); }

Dbptr process(Dbptr view, const StepList& steps) {
  Tbl* list = newtbl(static_cast<int>(steps.size()));
  for (const std::string& step : steps) pushtbl(list, step.c_str());  // the list only points to the texts
  const Dbptr result = dbprocess(view, list, nullptr);
  freetbl(list, nullptr);
  return result;
}

}  // namespace triglub
