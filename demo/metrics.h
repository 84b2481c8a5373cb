#pragma once

#include "options.h"

#include <functional>

namespace demo {

/// Offers the counters to Prometheus, if the user asked for it, and tells the port. Gives what is to be
/// called once a frame with its time in seconds, or nothing. If it can't be, the user is told why and the
/// program goes on without.
std::function<void(float dt)> offerMetrics(const Options& options);

} // namespace demo
