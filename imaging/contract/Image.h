#pragma once

#include <cstdint>
#include <string>

#include "Colour.h"
#include "Types.h"

namespace kestrel {

/// The pixel format that `Document::NewImage` and `Image::Convert` are asked for: 32-bit colour with alpha,
/// the only one the engine edits in.
inline constexpr std::int32_t kPixelFormatRgba = 5;

/// The picture of a view or of an `ImgX` object, as it stands now: after a change it reads the changed one.
class Image {
 public:
  virtual ~Image() = default;

  virtual std::int32_t Width() const = 0;
  virtual std::int32_t Height() const = 0;

  /// The format code of the file that the picture was loaded from; 0 if it came from no file.
  virtual std::int32_t Format() const = 0;
  /// How many pictures that file held; this was the first of them. 1 if it came from no file.
  virtual std::int32_t Pages() const = 0;
  /// A sentence for the user if that file was damaged and the picture is only what could be read of it, else
  /// empty.
  virtual std::string Damage() const = 0;

  /// The colour of one pixel, its alpha included. Raises RuntimeError 5 outside the picture.
  virtual Colour GetPixel(std::int32_t x, std::int32_t y) const = 0;

  /// Readies the picture for resampling. The only format is `kPixelFormatRgba`, in which every picture of
  /// this engine stands already; any other raises RuntimeError 5.
  virtual void Convert(const Colour* background = nullptr, std::int32_t pixelFormat = kPixelFormatRgba) = 0;

  /// All pixels, to read until the next change.
  virtual PixelRows Pixels() const = 0;
};

}  // namespace kestrel
