#pragma once

#include "imaging/contract/ImgX.h"

namespace kestrel {

/// Adds the drop shadow of the options to a picture. Raises 6 for a stored opacity beyond a byte, and engine
/// errors.
void AddShadowOfOptions(ImagingFace& image);

}  // namespace kestrel
