#pragma once

#include "particles.h"

#include <vector>

struct ImDrawList;

namespace demo {

/// Draws particles around `x`, `y`, a radius of their disc being `scale` pixels.
void drawParticles(const std::vector<Particles::Particle>& particles, ImDrawList& list, float x, float y,
                   float scale);

} // namespace demo
