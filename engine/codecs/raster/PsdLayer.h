#pragma once

#include <optional>

#include "PsdChannels.h"
#include "engine/codecs/common/ByteWriter.h"

namespace kestrel::engine::psd {

/// The layer info of a file's layer and mask section: layer count, records and channels. 8-bit files store it
/// at the section's start, 16-bit and 32-bit files in a tagged block. Empty for files without layers and for
/// damaged ones.
Bytes layerInfoOf(Bytes section, const ChannelForm& form);

/// Reads the only layer of a file, if it covers the whole picture and has no mask, blending or effects. Its
/// colors are then exact, while those of the merged picture are composited over white. `info` comes from
/// `layerInfoOf`. Nothing for other or damaged files.
std::optional<Channels> readOnlyLayer(Bytes info, const ChannelForm& form);

/// Writes the layer and mask section with the picture as the only layer.
void writeOnlyLayer(ByteWriter& writer, const ConstPixels& pixels);

}  // namespace kestrel::engine::psd
