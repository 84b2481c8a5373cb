#include "particles_view.h"

#include <imgui.h>

#include <algorithm>
#include <cmath>

namespace demo {

namespace {

ImU32 colorOf(float speed)
{
    const float t = std::clamp(speed * 0.8f, 0.0f, 1.0f);
    const auto mix = [t](float slow, float fast) { return static_cast<int>(slow + (fast - slow) * t); };
    return IM_COL32(mix(38, 170), mix(74, 205), mix(130, 235), mix(110, 200));
}

} // namespace

void drawParticles(const std::vector<Particles::Particle>& particles, ImDrawList& list, float x, float y,
                   float scale)
{
    const ImVec2 white = ImGui::GetFontTexUvWhitePixel();
    // One reservation for each chunk: a draw list starts a new range of 16-bit indices only at a reservation.
    constexpr std::size_t kChunk = 4096;
    for (std::size_t first = 0; first < particles.size(); first += kChunk) {
        const std::size_t end = std::min(first + kChunk, particles.size());
        const int quads = static_cast<int>(end - first);
        list.PrimReserve(6 * quads, 4 * quads);
        for (std::size_t i = first; i < end; ++i) {
            const Particles::Particle& p = particles[i];
            const ImVec2 corner(x + p.x * scale, y + p.y * scale);
            list.PrimRectUV(corner, ImVec2(corner.x + 1.6f, corner.y + 1.6f), white, white,
                            colorOf(std::sqrt(p.vx * p.vx + p.vy * p.vy)));
        }
    }
}

} // namespace demo
