#pragma once

#include "frame_clock.h"
#include "machine_probe.h"
#include "panel_items.h"
#include "particles.h"
#include "process_probe.h"

/// Describes to the library what there is to watch: the tree of items, their periods, their limits' keys.
namespace demo {

void watchFrame(const FrameClock& clock);
void watchWork(const Particles& particles);
/// The two that get tables give back the node under which these belong.
unsigned watchProcess(const ProcessProbe& probe);
unsigned watchMachine(const MachineProbe& probe);

/// How often the probes are to be read, in seconds; counters over them have the same period.
constexpr float kProcessPeriod = 0.5f;
constexpr float kMachinePeriod = 1.0f;

} // namespace demo
