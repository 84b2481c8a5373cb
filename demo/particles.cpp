#include "particles.h"

#include <imgui.h>

#include <algorithm>
#include <cmath>

namespace demo {

namespace {

constexpr int kFirstCount = 8000;
constexpr float kPi = 3.14159265f;
constexpr float kCentreMass = 0.35f; // a particle at radius 1 circles in about ten seconds
constexpr float kSoftening = 0.004f; // squared length; keeps close encounters from exploding
constexpr float kLongestStep = 0.05f;
constexpr float kFarthest = 2.2f; // what flies farther starts anew near the centre

unsigned workerCount()
{
    // One processor is the caller's, and a machine shall stay usable beside a demo.
    const unsigned processors = std::thread::hardware_concurrency();
    return std::clamp(processors, 2U, 5U) - 1;
}

ImU32 colorOf(float speed)
{
    const float t = std::clamp(speed * 0.8f, 0.0f, 1.0f);
    const auto mix = [t](float slow, float fast) { return static_cast<int>(slow + (fast - slow) * t); };
    return IM_COL32(mix(38, 170), mix(74, 205), mix(130, 235), mix(110, 200));
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
    const float angle = 2 * kPi * share(m_random);
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

Particles::Bodies Particles::bodiesAt(float time)
{
    const auto circling = [time](float radius, float mass, float phase) {
        const float angle = time * std::sqrt(kCentreMass / (radius * radius * radius)) + phase;
        return Body{radius * std::cos(angle), radius * std::sin(angle), mass};
    };
    return {Body{0, 0, kCentreMass}, circling(0.62f, 0.006f, 0), circling(0.95f, 0.009f, 2)};
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
    for (Particle& particle : m_particles) {
        if (particle.x * particle.x + particle.y * particle.y > kFarthest * kFarthest)
            particle = newParticle();
    }
}

void Particles::draw(ImDrawList& list, float x, float y, float scale) const
{
    const ImVec2 white = ImGui::GetFontTexUvWhitePixel();
    // One reservation for each chunk: a draw list starts a new range of 16-bit indices only at a reservation.
    constexpr std::size_t kChunk = 4096;
    for (std::size_t first = 0; first < m_particles.size(); first += kChunk) {
        const std::size_t end = std::min(first + kChunk, m_particles.size());
        const int quads = static_cast<int>(end - first);
        list.PrimReserve(6 * quads, 4 * quads);
        for (std::size_t i = first; i < end; ++i) {
            const Particle& p = m_particles[i];
            const ImVec2 corner(x + p.x * scale, y + p.y * scale);
            list.PrimRectUV(corner, ImVec2(corner.x + 1.6f, corner.y + 1.6f), white, white,
                            colorOf(std::sqrt(p.vx * p.vx + p.vy * p.vy)));
        }
    }
}

void Particles::measure()
{
    m_workers.measure();
    m_speed = toValue(m_doneRate.perSecond(m_done, clockSeconds()), 1e-6);
}

} // namespace demo
