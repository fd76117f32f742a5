#pragma once

#include <optional>

#include "PsdChannels.h"
#include "engine/codecs/common/ByteWriter.h"

namespace kestrel::engine::psd {

/// Reads the only layer of a file, if it covers the whole picture and has no mask, blending or effects. Its
/// colors are then exact, while those of the merged picture are composited over white. `layers` is the layer
/// and mask section. Nothing for other or damaged files.
std::optional<Channels> readOnlyLayer(Bytes layers, const ChannelForm& form);

/// Writes the layer and mask section with the picture as the only layer.
void writeOnlyLayer(ByteWriter& writer, const ConstPixels& pixels);

}  // namespace kestrel::engine::psd
