#pragma once

#include <cstdint>
#include <string>

#include "Colour.h"
#include "Image.h"
#include "Picture.h"

namespace kestrel {

class ImgX;

/// Replaces the whole picture. Each member raises RuntimeError with a sentence for the user on failure and
/// then keeps the previous picture. `undoName` names the undo step: empty records an unnamed one, "No Undo"
/// none; it has no effect on a free-standing `ImgX`.
class Document {
 public:
  virtual ~Document() = default;

  /// Loads a file; its content decides the format, not its name. Page 0 is the first.
  virtual void FromFile(const std::string& filename, std::int32_t page = 0,
                        const std::string& undoName = {}) = 0;
  virtual void FromPicture(const Picture& picture, const std::string& undoName = {}) = 0;
  /// The clipboard's bitmap; raises 521 if the clipboard holds none.
  virtual void Paste(const std::string& undoName = {}) = 0;
  /// A copy-on-write copy of the source's picture. Mode is 0, the whole picture.
  virtual void CopyFrom(ImgX& source, std::int32_t mode = 0, const std::string& undoName = {}) = 0;
  /// A blank picture of the background color, transparent if that is null.
  virtual void NewImage(std::int32_t width, std::int32_t height, const Colour* background,
                        std::int32_t pixelFormat = kPixelFormatRgba, const std::string& undoName = {}) = 0;
};

}  // namespace kestrel
