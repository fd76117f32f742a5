#pragma once

#include <cstdint>
#include <string>

#include "Colour.h"
#include "Types.h"

namespace kestrel {

/// The pixel format to pass to `Document::NewImage` and `Image::Convert`: 32-bit RGBA, the only one the
/// engine edits in.
inline constexpr std::int32_t kPixelFormatRgba = 5;

/// The current picture of a view or of an `ImgX` object; after a change it reads the changed picture.
class Image {
 public:
  virtual ~Image() = default;

  virtual std::int32_t Width() const = 0;
  virtual std::int32_t Height() const = 0;

  /// The format code of the file that the picture was loaded from; 0 if it came from no file.
  virtual std::int32_t Format() const = 0;
  /// The number of pages in that file; this picture is the first. 1 if it came from no file.
  virtual std::int32_t Pages() const = 0;
  /// A sentence for the user if that file had decode errors and the picture is incomplete; else empty.
  virtual std::string DecodeErrors() const = 0;

  /// The color of one pixel, its alpha included. Raises RuntimeError 5 outside the picture.
  virtual Colour GetPixel(std::int32_t x, std::int32_t y) const = 0;

  /// Prepares the picture for resampling. The only format is `kPixelFormatRgba`, which every picture of this
  /// engine already has; any other raises RuntimeError 5.
  virtual void Convert(const Colour* background = nullptr, std::int32_t pixelFormat = kPixelFormatRgba) = 0;

  /// All pixels; valid until the next change.
  virtual PixelRows Pixels() const = 0;
};

}  // namespace kestrel
