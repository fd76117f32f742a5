#pragma once

#include <string>

#include "engine/undo/PictureState.h"
#include "imaging/contract/Image.h"
#include "imaging/contract/Picture.h"

namespace kestrel::engine {

/// `Picture` that shares a bitmap by reference.
class PictureObject final : public Picture {
 public:
  /// The bitmap must not be empty.
  explicit PictureObject(Bitmap bitmap);
  /// With the facts about its file: loading the picture takes them over. The bitmap must not be empty.
  explicit PictureObject(PictureState state);

  std::string TypeName() const override { return "Picture"; }
  std::int32_t Width() const override { return bitmap().width(); }
  std::int32_t Height() const override { return bitmap().height(); }
  PixelRows Pixels() const override;

  const Bitmap& bitmap() const { return state_.bitmap; }
  const PictureState& state() const { return state_; }

 private:
  PictureState state_;
};

/// The pixels of a picture: a reference to those of a `PictureObject`, a copy of any other's. Raises
/// RuntimeError 5 for a picture without pixels.
Bitmap bitmapOf(const Picture& picture);

/// The same with the facts about its file, which only a `PictureObject` has.
PictureState stateOf(const Picture& picture);

/// The pixels of an image: a reference to the engine's own, a copy of any other's.
Bitmap bitmapOf(const kestrel::Image& image);

}  // namespace kestrel::engine
