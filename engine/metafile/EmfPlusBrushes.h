#pragma once

#include "EmfPlusObjects.h"
#include "MetafileCanvas.h"

namespace kestrel::engine::emf::plus {

/// The pattern of a brush that is not of one colour, in the brush's own coordinates; a hatch's in pixels.
/// Nothing for a brush that does not paint, or if there is no work left for it.
metafile::Pattern patternOf(const Brush& brush, metafile::Work& work);

/// How much more work a pixel of the brush is than one of a single colour.
double weightOf(const Brush& brush);

}  // namespace kestrel::engine::emf::plus
