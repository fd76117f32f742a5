#pragma once

#include <cstdint>

#include "Alpha.h"
#include "Colors.h"
#include "Document.h"
#include "Draw.h"
#include "Effects.h"
#include "Image.h"
#include "Surface.h"
#include "Writer.h"
#include "base/Object.h"

namespace kestrel {

/// The sub-objects that a view and a free-standing picture share. A member behaves the same through either of
/// them. All are owned by this object and live as long.
class ImagingFace {
 public:
  virtual ~ImagingFace() = default;

  /// Null while there is no picture.
  virtual kestrel::Image* Image() = 0;
  virtual kestrel::Document& Document() = 0;
  virtual kestrel::Draw& Draw() = 0;
  virtual kestrel::Effects& Effects() = 0;
  virtual kestrel::Writer& Writer() = 0;
  virtual kestrel::Alpha& Alpha() = 0;
  virtual const kestrel::Colors& Colors() const = 0;

  /// Quality of the next JPEG write; clamped to 1 to 100.
  virtual void JPEGQuality(std::int32_t value) = 0;
  virtual std::int32_t JPEGQuality() const = 0;
};

/// A picture without a view. A new one holds no picture.
///
/// An object returned by a view works on the view's own picture: its effects and drawing change the view,
/// with undo step and `Changed`, and its settings are the view's. A member of its `Document` puts another
/// picture into this object alone; from then on it has a picture and settings of its own.
class ImgX : public Object, public ImagingFace {
 public:
  virtual kestrel::Surface& Surface() = 0;

  /// The color that `Document::NewImage` fills with if it is given none; -1 is transparent.
  virtual OLE_COLOR BackColor() const = 0;
  virtual void BackColor(OLE_COLOR value) = 0;
};

}  // namespace kestrel
