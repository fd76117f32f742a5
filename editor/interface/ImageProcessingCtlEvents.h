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
  /// A file was opened; after `PictureSet`.
  Event<const std::string&> ImageOpen;
  /// The picture was saved. An error of a handler does not end the save, and the user does not see it.
  Event<const std::string&> ImageSave;
  /// Filename, CancelDefault. A name is opened. CancelDefault suppresses the dialog for an empty one; it does
  /// not suppress the opening of a name.
  Event<std::string&, bool&> RequestOpenFilename;
  /// Filename, CancelDefault, as above. Also raised for a save that has a name, which Filename then is, if
  /// the picture's format cannot be written.
  Event<std::string&, bool&> RequestSaveFilename;
  /// Kept for hosts; this control never raises it.
  Event<> WindowClosed;
  Event<OLE_COLOR> ForeColorChange;
  Event<OLE_COLOR> BackColorChange;
  Event<ImageProcessingToolConstants> ToolChange;
  /// The editor has another picture, or none: `Image()` is null if the host has removed it.
  Event<> PictureSet;
  /// Saved. A host that has saved sets it, which makes `Changed` False. `SaveChanges` would still ask: the
  /// host sets `ImageControl().Modified` to false as well.
  Event<bool&> SimpleSaveRequest;
  /// `Changed` has become True. After a save that leaves it True, the next edit does not raise this event.
  Event<> Change;

 protected:
  ~ImageProcessingCtlEvents() = default;
};

}  // namespace kestrel
