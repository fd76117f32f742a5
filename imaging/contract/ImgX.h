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

/// The sub-objects that a view and a free-standing picture share. The same member behaves alike whichever
/// face it is reached from. All are lent and live as long as the face.
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

  /// Quality of the next JPEG write, 1 to 100; values outside are brought to the nearer end.
  virtual void JPEGQuality(std::int32_t value) = 0;
  virtual std::int32_t JPEGQuality() const = 0;
};

/// A picture without a view. A new one holds no picture.
///
/// The one that a view gives out works on the view's own picture: what its effects and drawing do is done to
/// the view, with undo step and `Changed`, and what is set on it is set on the view. A member of its
/// `Document` puts another picture into this object alone, which from then on has picture and settings of its
/// own.
class ImgX : public Object, public ImagingFace {
 public:
  virtual kestrel::Surface& Surface() = 0;

  /// What `Document::NewImage` fills with where it is given no colour: -1 leaves it transparent.
  virtual OLE_COLOR BackColor() const = 0;
  virtual void BackColor(OLE_COLOR value) = 0;
};

}  // namespace kestrel
