#pragma once

namespace kestrel::engine {

/// For files that count pixels per meter or per centimeter; Metadata counts them per inch.
inline constexpr double kInchesPerMeter = 1 / 0.0254;
inline constexpr double kCentimetersPerInch = 2.54;

}  // namespace kestrel::engine
