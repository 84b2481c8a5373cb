#include "particles.h"

#include <algorithm>
#include <cmath>

namespace demo {

namespace {

constexpr int kFirstCount = 8000;
constexpr double kPi = 3.14159265358979;
constexpr float kCentreMass = 0.35f; ///< a particle at radius 1 circles in about ten seconds
constexpr float kSoftening = 0.004f; ///< squared length; keeps close encounters from exploding
constexpr float kLongestStep = 0.05f;
constexpr float kFarthest = 2.2f; ///< what flies farther starts anew near the centre

unsigned workerCount()
{
    // One processor is the caller's, and a machine shall stay usable beside a demo.
    const unsigned processors = std::thread::hardware_concurrency();
    return std::clamp(processors, 2u, 5u) - 1;
}

} // namespace

Particles::Particles() : m_random(7), m_workers(workerCount())
{
    setCount(kFirstCount);
}

Particles::Particle Particles::newParticle()
{
    std::uniform_real_distribution<float> share(0, 1);
    const float radius = 0.15f + 0.85f * std::sqrt(share(m_random));
    const float angle = 2 * static_cast<float>(kPi) * share(m_random);
    const float speed = std::sqrt(kCentreMass / radius) * (0.97f + 0.06f * share(m_random));
    const float x = std::cos(angle);
    const float y = std::sin(angle);
    return {radius * x, radius * y, -speed * y, speed * x};
}

void Particles::setCount(int count)
{
    const auto wanted = static_cast<std::size_t>(std::clamp(count, kMinCount, kMaxCount));
    m_particles.reserve(wanted);
    while (m_particles.size() < wanted)
        m_particles.push_back(newParticle());
    m_particles.resize(wanted);
}

void Particles::setSteps(int steps)
{
    m_steps = std::clamp(steps, 1, kMaxSteps);
}

/// After hours a float would stand still between two steps.
Particles::Bodies Particles::bodiesAt(double time)
{
    const auto circling = [time](double radius, float mass, double phase) {
        const double turns = time * std::sqrt(kCentreMass / (radius * radius * radius)) + phase;
        const auto angle = static_cast<float>(std::fmod(turns, 2 * kPi));
        const auto r = static_cast<float>(radius);
        return Body{r * std::cos(angle), r * std::sin(angle), mass};
    };
    return {Body{0, 0, kCentreMass}, circling(0.62, 0.006f, 0), circling(0.95, 0.009f, 2)};
}

void Particles::move(Particle& particle, const Bodies& bodies, float dt)
{
    for (const Body& body : bodies) {
        const float dx = body.x - particle.x;
        const float dy = body.y - particle.y;
        const float squared = dx * dx + dy * dy + kSoftening;
        const float pull = body.mass * dt / (squared * std::sqrt(squared));
        particle.vx += pull * dx;
        particle.vy += pull * dy;
    }
    particle.x += particle.vx * dt;
    particle.y += particle.vy * dt;
}

void Particles::advance(float dt)
{
    if (m_paused)
        return;
    const float step = std::min(dt, kLongestStep) / static_cast<float>(m_steps);
    for (int i = 0; i < m_steps; ++i) {
        m_time += step;
        const Bodies bodies = bodiesAt(m_time);
        m_workers.run(m_particles.size(), [&](std::size_t begin, std::size_t end) {
            for (std::size_t p = begin; p < end; ++p)
                move(m_particles[p], bodies, step);
        });
    }
    m_done += static_cast<double>(m_steps) * static_cast<double>(m_particles.size());
    for (Particle& particle : m_particles)
        if (particle.x * particle.x + particle.y * particle.y > kFarthest * kFarthest)
            particle = newParticle();
}

void Particles::measure()
{
    m_workers.measure();
    m_speed = toValue(m_doneRate.perSecond(m_done, clockSeconds()), 1e-6);
}

} // namespace demo
