#include "DocumentPart.h"

#include <filesystem>
#include <memory>
#include <utility>

#include "Conversions.h"
#include "ImgXObject.h"
#include "PictureObject.h"
#include "engine/codecs/Codecs.h"
#include "platform/os/Paths.h"

namespace kestrel::engine {

void DocumentPart::FromFile(const std::string& filename, std::int32_t page, const std::string& undoName) {
  if (page != 0) {
    throw RuntimeError(err::kInvalidCall, "Only the first picture of a file can be loaded.");
  }
  Decoded decoded = decodeFile(os::pathOf(filename));
  PictureState picture{std::move(decoded.bitmap), decoded.format, decoded.stored.pages};
  if (!decoded.notice.empty()) {
    picture.notice = std::make_shared<const std::string>(std::move(decoded.notice));
  }
  picture.metadata = std::make_shared<const Metadata>(std::move(decoded.metadata));
  owner_.putPicture(std::move(picture), undoName);
}

void DocumentPart::FromPicture(const Picture& picture, const std::string& undoName) {
  owner_.putPicture({bitmapOf(picture)}, undoName);
}

void DocumentPart::Paste(const std::string& undoName) { owner_.putPicture({clipboard_.take()}, undoName); }

void DocumentPart::CopyFrom(ImgX& source, std::int32_t mode, const std::string& undoName) {
  if (mode != 0) throw RuntimeError(err::kInvalidCall, "Only whole pictures can be copied.");
  if (auto* const own = dynamic_cast<ImgXObject*>(&source)) {
    owner_.putPicture(own->loadedPicture().state(), undoName);
    return;
  }
  const kestrel::Image* const image = source.Image();
  if (image == nullptr) throw RuntimeError(err::kObjectNotSet, "There is no picture to copy.");
  owner_.putPicture({bitmapOf(*image), image->Format()}, undoName);
}

void DocumentPart::NewImage(std::int32_t width, std::int32_t height, const Colour* background,
                            std::int32_t pixelFormat, const std::string& undoName) {
  if (pixelFormat != kPixelFormatRgba) {
    throw RuntimeError(err::kInvalidCall, "The pixel format " + std::to_string(pixelFormat) + " is unknown.");
  }
  const Colour fill = background == nullptr ? Colour(owner_.settings().backColor) : *background;
  owner_.putPicture({Bitmap::filled(width, height, pixelOf(fill))}, undoName);
}

}  // namespace kestrel::engine
