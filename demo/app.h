#pragma once

#include "frame_clock.h"
#include "machine_probe.h"
#include "mapping_table.h"
#include "measure.h"
#include "notices.h"
#include "options.h"
#include "pacer.h"
#include "panel_items.h"
#include "particles.h"
#include "presets.h"
#include "process_probe.h"
#include "process_table.h"
#include "reader_thread.h"
#include "snapshots.h"
#include "thread_table.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

namespace demo {

/// What the user can set beside the work itself.
struct Settings {
    /// Frames per second. A little above a common display's 60, so that there the display sets the beat.
    float frameRateLimit = 64;
    bool samplingPaused = false;
};

/// The program without its window: it does its work, takes its measurements, and keeps the library's
/// `System`.
class App {
public:
    /// Takes the library up and tells it all there is to watch. Throws `std::runtime_error` with a text for
    /// the user if there is no place for presets.
    explicit App(const Options& options);

    /// Turns snapshots on, below the folder `state`. If that can't be, the user is told and the program goes
    /// on without.
    void keepSnapshots(const std::filesystem::path& state);

    /// Makes a preset active; false if there is none of that name.
    bool choosePreset(const std::string& name) { return m_presets.choose(name); }

    /// Begins a frame: one turn of the work, the readings that are due, and the library's sampling. With
    /// `hold` the rows of tables stay, because a menu is open.
    void work(bool hold);
    /// Ends it: waits until the next one is due.
    void pace();

    FrameClock& clock() { return m_clock; }
    Particles& particles() { return m_particles; }
    Presets& presets() { return m_presets; }
    const Presets& presets() const { return m_presets; }
    /// Null if there are none.
    const Snapshots* snapshots() const { return m_snapshots ? &*m_snapshots : nullptr; }
    ProcessTable& processes() { return *m_processes; }
    Notices& notices() { return m_notices; }
    Settings& settings() { return m_settings; }

private:
    /// Goes last: the functors that the library keeps are not called any more by then.
    struct LibraryLife {
        LibraryLife();
        ~LibraryLife();
        LibraryLife(const LibraryLife&) = delete;
        LibraryLife& operator=(const LibraryLife&) = delete;
    };

    void describe(const std::string& procFolder);
    void probe(float dt, bool hold);

    LibraryLife m_life;
    FrameClock m_clock;
    Particles m_particles;
    ProcessProbe m_process;
    MachineProbe m_machine;
    Period m_processPeriod;
    Period m_machinePeriod;
    Notices m_notices;
    Settings m_settings;
    ReaderThread m_reader;
    std::optional<ThreadTable> m_threads;
    std::optional<MappingTable> m_mappings;
    std::optional<ProcessTable> m_processes;
    Presets m_presets;
    std::optional<Snapshots> m_snapshots;
    Pacer m_pacer;
    std::function<void(float)> m_offerMetrics;
};

} // namespace demo
