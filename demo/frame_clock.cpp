#include "frame_clock.h"

#include "measure.h"

#include <algorithm>
#include <chrono>
#include <cmath>

namespace demo {

namespace {

constexpr double kMemory = 0.5; ///< seconds until a mean has forgotten most of what was before

statistics::CounterValue milliseconds(std::optional<double> seconds)
{
    return toValue(seconds, 1000);
}

void follow(std::optional<double>& mean, double sample, double weight)
{
    mean = mean ? *mean + weight * (sample - *mean) : sample;
}

} // namespace

double clockSeconds()
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

const char* stageName(EStage stage)
{
    static constexpr std::array<const char*, kStageCount> kNames = {
        "Events", "Simulation", "Probes", "Sampling", "Panel", "Rendering", "Presenting", "Pacing"};
    return kNames[static_cast<std::size_t>(stage)];
}

FrameClock::StageTimer::StageTimer(FrameClock& clock, EStage stage)
    : m_clock(clock), m_stage(stage), m_start(clockSeconds())
{
}

FrameClock::StageTimer::~StageTimer()
{
    m_clock.m_stages[static_cast<std::size_t>(m_stage)].current += clockSeconds() - m_start;
}

float FrameClock::nextFrame()
{
    const double now = clockSeconds();
    if (!m_frameStart) {
        m_frameStart = m_secondStart = now;
        m_stages = {};
        return 0;
    }
    const double frame = now - *m_frameStart;
    m_frameStart = now;
    m_last = frame;
    ++m_frames;

    // At first the means are those of all frames so far.
    m_total += frame;
    const double weight = std::max(1 - std::exp(-frame / kMemory), frame / m_total);
    follow(m_mean, frame, weight);
    for (Stage& stage : m_stages) {
        if (stage.mean || stage.current > 0)
            follow(stage.mean, stage.current, weight);
        stage.current = 0;
    }
    trackLongest(frame, now);
    return static_cast<float>(frame);
}

void FrameClock::trackLongest(double frame, double now)
{
    m_longestSoFar = std::max(m_longestSoFar, frame);
    if (now - m_secondStart < 1)
        return;
    m_longest = m_longestSoFar;
    m_longestSoFar = 0;
    m_secondStart = now;
}

statistics::CounterValue FrameClock::rate() const
{
    return toValue(m_mean && *m_mean > 0 ? std::optional(1 / *m_mean) : std::nullopt);
}

statistics::CounterValue FrameClock::lastFrame() const
{
    return milliseconds(m_last);
}

statistics::CounterValue FrameClock::averageFrame() const
{
    return milliseconds(m_mean);
}

statistics::CounterValue FrameClock::longestFrame() const
{
    return milliseconds(m_longest);
}

statistics::CounterValue FrameClock::stageTime(EStage stage) const
{
    return milliseconds(m_stages[static_cast<std::size_t>(stage)].mean);
}

} // namespace demo
