#pragma once

#include <string>

#include "ImagingSettings.h"
#include "base/RuntimeError.h"
#include "engine/undo/EditablePicture.h"
#include "imaging/contract/Types.h"

namespace kestrel::engine {

/// Whose picture the sub-objects work on: a view or a free-standing object.
class PictureOwner {
 public:
  /// The picture that effects and drawing change; empty while there is none.
  virtual EditablePicture& picture() = 0;

  /// Puts another picture in.
  virtual void putPicture(PictureState state, const std::string& undoName) = 0;

  /// What the sub-objects are set to.
  virtual ImagingSettings& settings() = 0;

  /// As `picture`, for work that needs one. Raises RuntimeError 91 if there is none.
  EditablePicture& loadedPicture() {
    EditablePicture& result = picture();
    if (result.empty()) throw RuntimeError(err::kObjectNotSet, "There is no picture.");
    return result;
  }

  /// As `loadedPicture`, for work that changes it: what is being drawn on it with a mouse tool is given up.
  EditablePicture& pictureToChange() {
    EditablePicture& result = loadedPicture();
    result.giveUpPainting();
    return result;
  }

 protected:
  ~PictureOwner() = default;
};

}  // namespace kestrel::engine
