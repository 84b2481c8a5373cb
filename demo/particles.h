#pragma once

#include "worker_pool.h"

#include <statistics/value.h>

#include <array>
#include <cstddef>
#include <random>
#include <vector>

namespace demo {

/// The work of this program: a disc of particles that circle a heavy centre and two lighter bodies, drawn in
/// the background. Lengths are in radii of the disc, times in seconds.
class Particles {
public:
    static constexpr int kMinCount = 1000;
    static constexpr int kMaxCount = 60000;
    static constexpr int kMaxSteps = 32;

    struct Particle {
        float x, y, vx, vy;
    };

    Particles();

    /// Moves everything on by `dt`, in `steps` steps on all workers. A long `dt` is cut, so that a pause
    /// doesn't throw the particles apart.
    void advance(float dt);

    /// Takes the workers' load and the speed of the work since the last call.
    void measure();

    /// What makes the work heavy; the setters keep it in its range.
    int count() const { return static_cast<int>(m_particles.size()); }
    int steps() const { return m_steps; }
    bool paused() const { return m_paused; }
    void setCount(int count);
    void setSteps(int steps);
    void setPaused(bool paused) { m_paused = paused; }

    const std::vector<Particle>& all() const { return m_particles; }
    const WorkerPool& workers() const { return m_workers; }
    /// Million particle steps per second, as last measured.
    statistics::CounterValue speed() const { return m_speed; }

private:
    struct Body {
        float x, y, mass;
    };

    using Bodies = std::array<Body, 3>;

    Particle newParticle();
    static Bodies bodiesAt(double time);
    static void move(Particle& particle, const Bodies& bodies, float dt);

    std::vector<Particle> m_particles;
    std::mt19937 m_random;
    WorkerPool m_workers;
    int m_steps = 12;
    bool m_paused = false;
    double m_time = 0;
    double m_done = 0; ///< particle steps so far
    Rate m_doneRate;
    statistics::CounterValue m_speed;
};

} // namespace demo
