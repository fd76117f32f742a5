#pragma once

#include <string>

#include "ImagingSettings.h"
#include "base/RuntimeError.h"
#include "engine/undo/EditablePicture.h"
#include "imaging/contract/Types.h"

namespace kestrel::engine {

/// Owner of the picture that the sub-objects work on: a view or an `ImgX` object.
class PictureOwner {
 public:
  /// The picture that effects and drawing change; empty while there is none.
  virtual EditablePicture& picture() = 0;

  /// Replaces the picture.
  virtual void putPicture(PictureState state, const std::string& undoName) = 0;

  /// Settings of the sub-objects.
  virtual ImagingSettings& settings() = 0;

  /// As `picture`, but raises RuntimeError 91 if there is none.
  EditablePicture& loadedPicture() {
    EditablePicture& result = picture();
    if (result.empty()) throw RuntimeError(err::kObjectNotSet, "There is no picture.");
    return result;
  }

  /// As `loadedPicture`, for changes: rolls back a drawing that a mouse tool has under way.
  EditablePicture& pictureToChange() {
    EditablePicture& result = loadedPicture();
    result.rollBackPainting();
    return result;
  }

 protected:
  ~PictureOwner() = default;
};

}  // namespace kestrel::engine
