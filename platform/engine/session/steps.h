// Carries out the steps of a step list over a session.
#ifndef TRIGLUB_ENGINE_SESSION_STEPS_H
#define TRIGLUB_ENGINE_SESSION_STEPS_H

#include <cstdint>

#include "engine/session/session.h"
#include "engine/session/step.h"

namespace triglub {

// Applies one step to a view (dbINVALID or another unknown number: there is no view yet). The number of the view that
// results, which may be one that was there before; dbINVALID when the step fails, which the log is told unless the
// fault is a table's that refuses to load a second time.
std::int64_t apply_step(Session& session, std::int64_t view, const Step& step);

}  // namespace triglub

#endif
