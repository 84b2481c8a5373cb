#include "app.h"

#include "metrics.h"
#include "user_folders.h"
#include "watch.h"

#include <statistics/statistics.h>

#include <cstdio>

namespace demo {

using statistics::System;

App::LibraryLife::LibraryLife()
{
    // A report is a mistake of this program: it belongs where its author looks.
    statistics::setReportHandler([](const char* text) { std::fprintf(stderr, "statistics_demo: %s", text); });
    System::initialize();
}

App::LibraryLife::~LibraryLife()
{
    System::shutdown();
    statistics::setReportHandler({});
}

App::App(const Options& options)
    : m_machine(options.procFolder),
      m_processPeriod(kProcessPeriod),
      m_machinePeriod(kMachinePeriod),
      m_presets(configFolder(options.configFolder))
{
    if (options.particles)
        m_particles.setCount(*options.particles);
    describe(options.procFolder);
    m_presets.create();
    m_offerMetrics = offerMetrics(options);
}

void App::describe(const std::string& procFolder)
{
    watchFrame(m_clock);
    watchWork(m_particles);
    const unsigned process = watchProcess(m_process);
    m_threads.emplace(process, m_reader, m_notices);
    m_mappings.emplace(process, m_reader, m_notices);
    const unsigned machine = watchMachine(m_machine);
    m_processes.emplace(machine, procFolder, m_reader, m_notices);
}

void App::keepSnapshots(const std::filesystem::path& state)
{
    m_snapshots.emplace(state, m_notices);
    const std::string problem = m_snapshots->create();
    if (problem.empty())
        return;
    m_snapshots.reset();
    m_notices.message = "No snapshots: " + problem;
    std::fprintf(stderr, "statistics_demo: no snapshots: %s\n", problem.c_str());
}

void App::work(bool hold)
{
    const float dt = m_clock.nextFrame();
    {
        const auto timer = m_clock.time(EStage::Simulation);
        m_particles.advance(dt);
    }
    if (!m_settings.samplingPaused) {
        const auto timer = m_clock.time(EStage::Probes);
        probe(dt, hold);
    }
    const auto timer = m_clock.time(EStage::Sampling);
    System::instance()->update(dt, !m_settings.samplingPaused);
    if (m_offerMetrics)
        m_offerMetrics(dt);
}

void App::probe(float dt, bool hold)
{
    if (m_processPeriod.due(dt)) {
        m_process.read();
        m_particles.measure();
    }
    if (m_machinePeriod.due(dt))
        m_machine.read();
    m_threads->refresh(dt, hold);
    m_mappings->refresh(dt, hold);
    m_processes->refresh(dt, hold);
}

void App::pace()
{
    const auto timer = m_clock.time(EStage::Pacing);
    m_pacer.wait(m_settings.frameRateLimit);
}

} // namespace demo
