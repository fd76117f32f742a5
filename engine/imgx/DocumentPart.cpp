#include "DocumentPart.h"

#include <string>

#include "Conversions.h"
#include "EncodedPicture.h"
#include "PictureObject.h"
#include "engine/codecs/Codecs.h"
#include "platform/os/Paths.h"

namespace kestrel::engine {

void DocumentPart::FromFile(const std::string& filename, std::int32_t page, const std::string& undoName) {
  if (page != 0) {
    throw RuntimeError(err::kInvalidCall, "Only the first picture of a file can be loaded.");
  }
  owner_.putPicture(stateOf(decodeFile(os::pathOf(filename))), undoName);
}

void DocumentPart::FromPicture(const Picture& picture, const std::string& undoName) {
  owner_.putPicture(stateOf(picture), undoName);
}

void DocumentPart::Paste(const std::string& undoName) { owner_.putPicture({clipboard_.take()}, undoName); }

void DocumentPart::CopyFrom(ImgX& source, std::int32_t mode, const std::string& undoName) {
  if (mode != 0) throw RuntimeError(err::kInvalidCall, "Only whole pictures can be copied.");
  owner_.putPicture(stateOf(source), undoName);
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
