#pragma once

#include <cstdint>

namespace kestrel::sample {

/// Smooth value noise in 0 to 1, the same on every machine. `seed` picks one of many fields.
float noise(float x, float y, std::uint32_t seed);

/// The sum of `octaves` noises, each twice as fine and half as strong as the one before; 0 to 1.
float fractalNoise(float x, float y, std::uint32_t seed, int octaves);

}  // namespace kestrel::sample
