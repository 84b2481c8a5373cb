#pragma once

#include <statistics/system.h>

namespace statistics {

/// The tooltip of the counter that the user points at, and the context menu of the one that was clicked with
/// the right button. Behind the trees, in the panel's window, while the past is kept. Runs no functors.
void drawHistoryView(System::Data& data);

} // namespace statistics
