#include "EncodedPicture.h"

#include <memory>
#include <string>
#include <utility>

#include "ImgXObject.h"
#include "PictureObject.h"
#include "base/RuntimeError.h"
#include "engine/codecs/Codecs.h"

namespace kestrel::engine {

PictureState stateOf(Decoded decoded) {
  PictureState picture{std::move(decoded.bitmap), decoded.format, decoded.stored.pages};
  if (!decoded.notice.empty()) {
    picture.notice = std::make_shared<const std::string>(std::move(decoded.notice));
  }
  picture.metadata = std::make_shared<const Metadata>(std::move(decoded.metadata));
  return picture;
}

PictureState stateOf(ImgX& picture) {
  if (auto* const own = dynamic_cast<ImgXObject*>(&picture)) return own->loadedPicture().state();
  const kestrel::Image* const image = picture.Image();
  if (image == nullptr) throw RuntimeError(err::kObjectNotSet, "There is no picture.");
  return {bitmapOf(*image), image->Format()};
}

PicturePtr decodedPicture(Bytes file) { return std::make_shared<PictureObject>(stateOf(decode(file))); }

std::vector<std::uint8_t> encodedPicture(ImgX& picture, std::int32_t formatCode,
                                         const EncodeOptions& options) {
  const PictureState state = stateOf(picture);
  const Metadata nothing;
  return encode(state.bitmap, state.metadata ? *state.metadata : nothing, formatCode, options);
}

}  // namespace kestrel::engine
