#pragma once

#include <statistics/value.h>

#include <array>
#include <cstddef>
#include <optional>

namespace demo {

/// The stages of one frame, in their order.
enum class EStage { Events, Simulation, Probes, Sampling, Panel, Rendering, Presenting, Pacing };

constexpr std::size_t kStageCount = 8;
const char* stageName(EStage stage);

/// Measures frames and their stages. The times of stages and of the average frame are means that follow the
/// last half second or so, so that the stages add up to the frame and a person can read them.
class FrameClock {
public:
    /// Times a stage from here to the end of the scope.
    class [[nodiscard]] StageTimer {
    public:
        StageTimer(FrameClock& clock, EStage stage);
        ~StageTimer();
        StageTimer(const StageTimer&) = delete;
        StageTimer& operator=(const StageTimer&) = delete;

    private:
        FrameClock& m_clock;
        EStage m_stage;
        double m_start; ///< seconds
    };

    /// Ends a frame and begins the next. The result is how long the ended one took, in seconds; 0 at the
    /// first call, which only begins.
    float nextFrame();

    StageTimer time(EStage stage) { return {*this, stage}; }

    statistics::CounterValue rate() const;                  ///< frames per second
    statistics::CounterValue lastFrame() const;             ///< milliseconds
    statistics::CounterValue averageFrame() const;          ///< milliseconds
    statistics::CounterValue longestFrame() const;          ///< milliseconds, of the last full second
    statistics::CounterValue stageTime(EStage stage) const; ///< milliseconds; `Empty` if it never ran
    unsigned frames() const { return m_frames; }

private:
    struct Stage {
        double current = 0;         ///< seconds in this frame so far
        std::optional<double> mean; ///< seconds
    };

    void trackLongest(double frame, double now);

    std::array<Stage, kStageCount> m_stages;
    unsigned m_frames = 0;
    double m_total = 0; ///< seconds of all frames, as all times below
    std::optional<double> m_frameStart;
    double m_secondStart = 0; ///< since when `m_longestSoFar` counts
    double m_longestSoFar = 0;
    std::optional<double> m_longest;
    std::optional<double> m_last;
    std::optional<double> m_mean;
};

} // namespace demo
