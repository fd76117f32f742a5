#pragma once

#include <cstdint>
#include <vector>

#include "engine/codecs/common/Decoded.h"
#include "engine/undo/PictureState.h"
#include "imaging/contract/ImgX.h"
#include "imaging/contract/Picture.h"

namespace kestrel::engine {

/// A decoded picture with the facts about its file.
PictureState stateOf(Decoded decoded);

/// The present state of the object's picture, by reference; nothing is copied. Raises RuntimeError 91 if it
/// has none.
PictureState stateOf(ImgX& picture);

/// The picture of a file in memory. Loading it (`Document::FromPicture`, `ImageView::Picture`) has the same
/// result as `Document::FromFile` of the file. Raises RuntimeError as `decode`.
PicturePtr decodedPicture(Bytes file);

/// The object's picture as `Writer::ToFile` writes it, in memory. `formatCode` must not be 0. Raises
/// RuntimeError 91 if there is no picture, 5 as `encode`.
std::vector<std::uint8_t> encodedPicture(ImgX& picture, std::int32_t formatCode,
                                         const EncodeOptions& options);

}  // namespace kestrel::engine
