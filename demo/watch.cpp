#include "watch.h"

#include <string>

namespace demo {

using statistics::CounterValue;

namespace {

constexpr float kEveryFrame = 0;
constexpr float kReadable = 0.25f; ///< seconds: as often as a person can follow digits
constexpr float kSlow = 5;         ///< seconds

/// A group of values that a probe keeps in one place.
struct Group {
    unsigned node;
    float period;

    void show(const std::string& name, const CounterValue& value, const Look& look) const
    {
        addCounter(
            name, node, period, [&value] { return value; }, look);
    }

    Group label(const std::string& name) const { return {addLabel(name, node), period}; }
    Group sum(const std::string& name, const Look& look) const
    {
        return {addSum(name, node, period, look), period};
    }
};

void watchProcessMemory(const Group& memory, const ProcessReading& reading)
{
    memory.show("Resident", reading.residentMiB, {"%.1f MiB", "%.0f", "process.resident"});
    memory.show("Highest resident", reading.peakMiB, {"%.1f MiB"});
    memory.show("Virtual", reading.virtualMiB, {"%.1f MiB"});
    memory.show("Minor faults", reading.minorFaults, {"%.0f /s"});
    memory.show("Major faults", reading.majorFaults, {"%.1f /s", "%.0f", "process.majorFaults"});
}

void watchLoad(const Group& load, const MachineReading& reading)
{
    load.show("1 minute", reading.load1, {"%.2f tasks", "%.1f", "machine.load"});
    const Group slow{load.node, kSlow};
    slow.show("5 minutes", reading.load5, {"%.2f tasks"});
    slow.show("15 minutes", reading.load15, {"%.2f tasks"});
}

void watchMachineMemory(const Group& memory, const MachineReading& reading)
{
    memory.show("Used", reading.memoryUsedPercent, {"%.1f %%", "%.0f", "machine.memory"});
    memory.show("Available", reading.availableMiB, {"%.0f MiB"});
    memory.show("Cached files", reading.cachedMiB, {"%.0f MiB"});
    memory.show("Swapped out", reading.swapUsedMiB, {"%.0f MiB"});
}

void watchWaiting(const Group& waiting, const MachineReading& reading)
{
    waiting.show("For processors", reading.processorPressure, {"%.1f %%"});
    waiting.show("For memory", reading.memoryPressure, {"%.1f %%"});
    waiting.show("For storage", reading.storagePressure, {"%.1f %%"});
}

} // namespace

void watchFrame(const FrameClock& clock)
{
    const unsigned frame = addLabel("Frame");
    addCounter("Rate", frame, kReadable, [&clock] { return clock.rate(); },
               {"%.1f frames/s", "%.0f", "frame.rate"});
    addCounter("Time", frame, kReadable, [&clock] { return clock.averageFrame(); },
               {"%.2f ms", "%.0f", "frame.time"});
    addCounter("Longest in a second", frame, kReadable, [&clock] { return clock.longestFrame(); },
               {"%.2f ms", "%.0f", "frame.longest"});
    addCounter("Last", frame, kEveryFrame, [&clock] { return clock.lastFrame(); }, {"%.3f ms"});
    addCounter("Count", frame, kEveryFrame, [&clock] { return CounterValue(clock.frames()); }, {"%u"});

    const unsigned stages = addSum("Stages", frame, kReadable, {"%.2f ms"});
    for (std::size_t i = 0; i < kStageCount; ++i) {
        const auto stage = static_cast<EStage>(i);
        addCounter(stageName(stage), stages, kReadable, [&clock, stage] { return clock.stageTime(stage); },
                   {"%.3f ms"});
    }
}

void watchWork(const Particles& particles)
{
    const unsigned work = addLabel("Work");
    addCounter("Particles", work, kReadable, [&particles] { return CounterValue(particles.count()); },
               {"%d", "%.0f", "work.particles"});
    addCounter("Steps in a frame", work, kReadable, [&particles] { return CounterValue(particles.steps()); },
               {"%d"});
    addCounter("Speed", work, kProcessPeriod, [&particles] { return particles.speed(); },
               {"%.2f million steps/s"});
    const unsigned workers = addSum("Workers", work, kProcessPeriod, {"%.0f %% of one processor"});
    for (std::size_t i = 0; i < particles.workers().size(); ++i) {
        addCounter("Worker " + std::to_string(i + 1), workers, kProcessPeriod,
                   [&particles, i] { return particles.workers().busyPercent(i); }, {"%.1f %%"});
    }
}

unsigned watchProcess(const ProcessProbe& probe)
{
    const ProcessReading& reading = probe.reading();
    const Group process{addLabel("Process"), kProcessPeriod};
    process.show("Thread count", reading.threads, {"%u"});

    const Group processor = process.sum("Processor", {"%.0f %%", "%.0f", "process.processor"});
    processor.show("Program", reading.userPercent, {"%.1f %%"});
    processor.show("Kernel", reading.systemPercent, {"%.1f %%"});

    watchProcessMemory(process.label("Memory"), reading);

    const Group switches = process.sum("Switches", {"%.0f /s"});
    switches.show("Voluntary", reading.voluntarySwitches, {"%.0f /s"});
    switches.show("Involuntary", reading.involuntarySwitches, {"%.0f /s"});

    const Group storage = process.label("Storage");
    storage.show("Read", reading.readKiB, {"%.1f KiB/s"});
    storage.show("Written", reading.writtenKiB, {"%.1f KiB/s"});
    storage.show("Open files", reading.openFiles, {"%u", "%.0f", "process.files"});
    return process.node;
}

unsigned watchMachine(const MachineProbe& probe)
{
    const MachineReading& reading = probe.reading();
    const Group machine{addLabel("Machine"), kMachinePeriod};
    machine.show("Context switches", reading.contextSwitches, {"%.0f /s"});
    machine.show("New processes", reading.newProcesses, {"%.1f /s"});
    watchLoad(machine.label("Load"), reading);

    const Group processors = machine.sum("Processors", {"%.0f %%", "%.0f", "machine.processors"});
    for (std::size_t i = 0; i < reading.processors.size(); ++i)
        processors.show("Processor " + std::to_string(i), reading.processors[i], {"%.1f %%"});

    watchMachineMemory(machine.label("Memory"), reading);
    watchWaiting(machine.label("Waiting"), reading);
    return machine.node;
}

} // namespace demo
