#pragma once

#include <optional>

#include "PsdChannels.h"
#include "engine/codecs/common/ByteWriter.h"

namespace kestrel::engine::psd {

/// Reads the layer of a file that has only one, if that is the whole picture and nothing is done to it: then
/// its colors are as they were, while those of the merged picture stand mixed with white. `layers` is the
/// file's section of layers and masks. Nothing for any other file, a damaged one too.
std::optional<Channels> readOnlyLayer(Bytes layers, const ChannelForm& form);

/// Writes the section of layers and masks with the picture as the only layer.
void writeOnlyLayer(ByteWriter& writer, const ConstPixels& pixels);

}  // namespace kestrel::engine::psd
