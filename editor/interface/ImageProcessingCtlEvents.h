#pragma once

#include <string>

#include "Constants.h"
#include "base/Event.h"
#include "imaging/contract/Types.h"

namespace kestrel {

/// The events of the image editor, in the order of its interface. A handler may destroy the editor.
class ImageProcessingCtlEvents {
 public:
  /// The user asked to close the editor. The control ends when it is hidden after that, also if the host has
  /// refused: a host that keeps the editor after a refusal must not hide it.
  Event<> ExitRequest;
  Event<const std::string&> ImageOpen;
  Event<const std::string&> ImageSave;
  Event<std::string&, bool&> RequestOpenFilename;  ///< Filename, CancelDefault
  Event<std::string&, bool&> RequestSaveFilename;  ///< Filename, CancelDefault
  /// Kept for hosts; this control never raises it.
  Event<> WindowClosed;
  Event<OLE_COLOR> ForeColorChange;
  Event<OLE_COLOR> BackColorChange;
  Event<ImageProcessingToolConstants> ToolChange;
  Event<> PictureSet;
  Event<bool&> SimpleSaveRequest;  ///< Saved
  Event<> Change;

 protected:
  ~ImageProcessingCtlEvents() = default;
};

}  // namespace kestrel
