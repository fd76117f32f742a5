#pragma once

#include <cstddef>
#include <span>

namespace kestrel::resources {

/// The stored layout of the editor's docking suite, for `docking::readLayout`.
std::span<const std::byte> dialogLayout();
/// The stored layout of the image browser's docking suite.
std::span<const std::byte> browserLayout();

}  // namespace kestrel::resources
