#pragma once

#include "EmfPlusObjects.h"
#include "MetafileCanvas.h"

namespace kestrel::engine::emf::plus {

/// The pattern of a brush, in brush coordinates; of a hatch, in pixels. Null for a brush that does not paint,
/// or if the work limit is exhausted.
metafile::Pattern patternOf(const Brush& brush, metafile::Work& work);

/// Cost of a pixel of the brush, relative to a solid color.
double weightOf(const Brush& brush);

}  // namespace kestrel::engine::emf::plus
