#pragma once

#include <cstdint>

namespace kestrel::sample {

/// Smooth value noise from 0 to 1, the same on every machine. `seed` selects the noise field.
float noise(float x, float y, std::uint32_t seed);

/// The sum of `octaves` noises, each with double frequency and half amplitude of the previous one; 0 to 1.
float fractalNoise(float x, float y, std::uint32_t seed, int octaves);

}  // namespace kestrel::sample
