#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "Constants.h"
#include "ImageProcessingCtlEvents.h"
#include "base/Object.h"
#include "imaging/contract/Picture.h"
#include "settings/OptionTypes.h"

namespace kestrel {

// Types that members return; a host includes the headers of those it uses.
class CommandBars;
class Commands;
class DockWindows;
class IImageEvents;
class Image;
class ImageView;
class ImgX;
class ImgXDialog;
class Options;
class frmMaterials;
class frmZoom;

/// The embeddable image editor: an image view surrounded by menus, tool bars, a status bar and dock
/// windows. These are the public members of `ImageProcessingCtl`; its events are in the base.
///
/// The host calls `Initialize` once. All calls and events happen on the thread that made the control. An
/// error inside a member is reported and the member returns its default result, unless documented otherwise.
/// Setting a property to its current value does nothing.
class IImageProcessingCtl : public Object, public ImageProcessingCtlEvents {
 public:
  // -- Life -----------------------------------------------------------------------------------------------
  /// Completes the start-up; at design time only sets the view's zoom.
  virtual void Initialize() = 0;
  /// Closes the dock windows and releases all windows, the sink, and the shared objects of settings and
  /// colors, in whose place other editors get new ones. A host may call it early; further calls do nothing.
  virtual void Terminate() = 0;

  // -- Switches of the host ---------------------------------------------------------------------------
  /// Hot keys without Ctrl or Alt stay active. Those removed while it is False are not restored.
  virtual bool AllowUnmodifiedHotKeys() const = 0;
  virtual void AllowUnmodifiedHotKeys(bool Value) = 0;
  /// Only a subset of the tools is shown.
  virtual bool UseSimpleTools() const = 0;
  virtual void UseSimpleTools(bool Value) = 0;
  virtual bool ShowDrawingTools() const = 0;
  virtual void ShowDrawingTools(bool Value) = 0;
  /// One Save that the host executes replaces Save, Save As and Export.
  virtual bool UseSimpleSave() const = 0;
  virtual void UseSimpleSave(bool Value) = 0;
  virtual bool ShowClose() const = 0;
  virtual void ShowClose(bool Value) = 0;
  /// Also sets `ShowMRU`.
  virtual bool ShowOpen() const = 0;
  virtual void ShowOpen(bool Value) = 0;
  virtual bool ShowMRU() const = 0;
  virtual void ShowMRU(bool Value) = 0;
  virtual bool ShowMenuBar() const = 0;
  virtual void ShowMenuBar(bool Value) = 0;
  /// Changes of the two colors are written to `Options`.
  virtual bool AutoUpdateGlobal() const = 0;
  virtual void AutoUpdateGlobal(bool Value) = 0;

  // -- State ----------------------------------------------------------------------------------------------
  virtual std::int32_t UndoLevels() const = 0;
  virtual void UndoLevels(std::int32_t Value) = 0;
  /// The material colors. A background of -1 means no fill: shapes are outlines in the foreground color.
  virtual OLE_COLOR BackColor() const = 0;
  virtual void BackColor(OLE_COLOR Value) = 0;
  virtual OLE_COLOR ForeColor() const = 0;
  virtual void ForeColor(OLE_COLOR Value) = 0;
  /// The picture was edited since it was set. Becoming True raises `Change`: only the first of several edits
  /// does. A save leaves it True, except a simple save that the host reports as done. Unsaved changes are
  /// `ImageControl().Modified()`; `SaveChanges` asks about these.
  virtual bool Changed() const = 0;
  virtual void Changed(bool Value) = 0;
  /// The format code of the open file. Setting it changes the extension of `Filename`; the picture and the
  /// format of the next save are unchanged.
  virtual std::int32_t Format() const = 0;
  virtual void Format(std::int32_t Value) = 0;
  /// The picture as an ordinary picture object; null while there is none. Setting it keeps `Filename`, so the
  /// next save replaces that file. It does not ask about unsaved changes, and raises `PictureSet` only.
  virtual PicturePtr Picture() = 0;
  virtual void Picture(const PicturePtr& Value) = 0;
  /// The host's sink, a weak reference.
  virtual std::shared_ptr<IImageEvents> EventSink() const = 0;
  virtual void EventSink(const std::shared_ptr<IImageEvents>& Value) = 0;
  /// Selecting another tool clears the selection and raises `ToolChange`.
  virtual ImageProcessingToolConstants Tool() const = 0;
  virtual void Tool(ImageProcessingToolConstants Value) = 0;

  /// Null while there is no picture.
  virtual kestrel::Image* Image() = 0;
  virtual std::shared_ptr<kestrel::ImgX> ImgX() = 0;
  /// The settings that all editors of the process share.
  virtual std::shared_ptr<kestrel::Options> Options() = 0;
  virtual kestrel::DockWindows& DockWindows() = 0;
  virtual kestrel::Commands& Commands() = 0;
  virtual kestrel::CommandBars& CommandBars() = 0;
  /// The file dialog; null before `Initialize`.
  virtual ImgXDialog* BrowseDialog() = 0;
  virtual ImageView& ImageControl() = 0;
  virtual const std::string& Filename() const = 0;
  /// The tool windows; null before `Initialize`, at design time and after `Terminate`.
  virtual frmZoom* ZoomWindow() = 0;
  virtual frmMaterials* MaterialsWindow() = 0;

  // -- Files ----------------------------------------------------------------------------------------------
  /// Opens a file. Without a name the host is asked for one, by event and sink, and then the user by dialog.
  /// True if a picture was opened. Does not ask about unsaved changes.
  virtual bool OpenImage(std::string Filename = {}) = 0;
  /// Saves under the current name. Without one, or if the picture's format cannot be written, the host is
  /// asked for a name, by event and sink, and then the user by dialog. True if the file was written.
  virtual bool SaveImage() = 0;
  /// Saves under the name, which becomes `Filename`, or asks for one as `SaveImage` does. The format is that
  /// of the picture, not that of the name's extension: a JPEG picture saved as "a.png" is a JPEG file. Only a
  /// picture that came from no file takes the extension's format; any but the first one of each format, such
  /// as ".tiff", counts as ".bmp", except ".jpeg". To convert use `Writer::ToFile` of `ImageControl()`.
  virtual bool SaveImageAs(const std::string& Filename = {}) = 0;
  /// Asks the user about unsaved changes, after it has canceled an open paste or crop. True if the caller may
  /// continue; the changes are then still unsaved if the user does not want them.
  virtual bool SaveChanges() = 0;
  /// Lets the user write copies of the picture to other files and formats. True if at least one was written.
  virtual bool ShowExportDialog() = 0;

  // -- Commands and status --------------------------------------------------------------------------------
  /// Enables or disables the commands that need a picture. Undo and Redo are enabled only if there is a step,
  /// and commands that must wait for the end of an open paste or crop only after it.
  virtual void SetControls(const bool& Enabled) = 0;
  /// Shows a message in the status line. With `ChangeCursor` a text begins a busy phase and an empty one ends
  /// it.
  virtual void Status(const std::string& Message = {}, bool ChangeCursor = false,
                      bool UpdateAsDefault = false) = 0;
  virtual void SetToolbarStyle(std::int32_t Style) = 0;
  /// Applies the settings to the user interface.
  virtual void ApplyOptions() = 0;
  /// Lets the user edit the settings. True if they were stored; they are applied then.
  virtual bool ShowOptions() = 0;

  // -- Selection ------------------------------------------------------------------------------------------
  /// Switches to the selection tool and shows the rectangle; picture pixels, sizes may be negative.
  virtual void SetSelection(std::int32_t Left, std::int32_t Top, std::int32_t Width, std::int32_t Height) = 0;
  virtual void SelectAll() = 0;
  virtual void ResetSelection() = 0;
  virtual void Copy(bool UseSelection = false) = 0;
  /// Copies the selection, or the picture without one, and fills the copied area with the drawing color.
  /// Without a selection the filled area has the size of the view.
  virtual void Cut(bool UseSelection = false) = 0;
  /// Commits the floating image of an open paste; does nothing without one.
  virtual void Paste() = 0;
  /// Cancels an open paste and an open crop.
  virtual void Cancel() = 0;
  /// Raises the engine's error if the result is empty.
  virtual void CropToSelection() = 0;

  // -- Operations; the engine's errors go to the caller ---------------------------------------------------
  /// Height 0 keeps the aspect ratio. The methods are those of `Effects::Resize`.
  virtual void Resize(std::int32_t Width, std::int32_t Height = 0, std::int32_t ResampleMethod = 0) = 0;
  virtual void ResizeCanvas(std::int32_t Width, std::int32_t Height, std::int32_t OffsetX = 0,
                            std::int32_t OffsetY = 0, OLE_COLOR BackColor = ipUseDefault) = 0;
  /// Clockwise, in degrees.
  virtual void Rotate(float Angle, OLE_COLOR BackColor = ipUseDefault, bool ApplyToSelection = false) = 0;
  virtual void FlipHorizontally(bool ApplyToSelection = false) = 0;
  virtual void FlipVertically(bool ApplyToSelection = false) = 0;
  virtual void ApplyGrayScale(bool ApplyToSelection = false) = 0;
  virtual void FlattenAlpha(OLE_COLOR Color = ipUseDefault) = 0;
  /// Raises 6 for an opacity beyond a byte.
  virtual void ApplyDropShadow(std::int32_t OffsetX = ipUseDefault, std::int32_t OffsetY = ipUseDefault,
                               OLE_COLOR ShadowColor = ipUseDefault, std::int32_t Opactity = ipUseDefault,
                               std::int32_t BlurLevel = ipUseDefault, bool ApplyToSelection = false) = 0;
  /// Adds a shadow of the pixels that do not have the mask color. Works on any valid selection, regardless of
  /// `ApplyToSelection`. A failure leaves picture, steps and `Changed` as they were.
  virtual void ApplyMaskedDropShadow(std::int32_t OffsetX = ipUseDefault, std::int32_t OffsetY = ipUseDefault,
                                     OLE_COLOR ShadowColor = ipUseDefault,
                                     std::int32_t Opactity = ipUseDefault,
                                     std::int32_t BlurLevel = ipUseDefault,
                                     OLE_COLOR MaskColor = ipUseDefault, bool AutomaticMask = false,
                                     bool ApplyToSelection = false) = 0;

  // -- Dialogs of operations: false if the user cancels, who then has changed nothing ----------------------
  virtual bool ShowResizeDialog() = 0;
  virtual bool ShowResizeCanvasDialog() = 0;
  virtual bool ShowDropShadowDialog() = 0;
  virtual bool ShowMaskedDropShadowDialog() = 0;
  virtual bool ShowFlattenAlphaDialog() = 0;
  /// Asks for an angle and rotates selection or picture. Returns the clockwise angle, 0 if canceled.
  virtual std::int32_t ShowRotateDialog() = 0;

  // -- Undo and zoom --------------------------------------------------------------------------------------
  virtual void Undo() = 0;
  virtual void Redo() = 0;
  /// Step 0.1 below actual size and 1 above it. Not limited.
  virtual void ZoomIn() = 0;
  virtual void ZoomOut() = 0;
  virtual void ZoomActualSize() = 0;

  // -- Thumbnails -----------------------------------------------------------------------------------------
  /// A reduced copy on a background; `Size` is in percent of the picture's width. -1: the option's value.
  virtual PicturePtr GetThumbnail(std::int32_t Size = ipUseDefault, OLE_COLOR BackColor = ipUseDefault,
                                  bool AddDropShadow = false, std::int32_t OffsetX = ipUseDefault,
                                  std::int32_t OffsetY = ipUseDefault, OLE_COLOR ShadowColor = ipUseDefault,
                                  std::int32_t Opacity = ipUseDefault,
                                  std::int32_t BlurLevel = ipUseDefault) = 0;
  /// The same with a choice of the size's unit. Raises 6 for an opacity beyond a byte, and engine errors.
  virtual PicturePtr GetThumbnailEx(ThumbnailSizeTypeEnum& SizeType, std::int32_t Size = ipUseDefault,
                                    OLE_COLOR BackColor = ipUseDefault, bool AddDropShadow = false,
                                    std::int32_t OffsetX = ipUseDefault, std::int32_t OffsetY = ipUseDefault,
                                    OLE_COLOR ShadowColor = ipUseDefault,
                                    std::int32_t Opactity = ipUseDefault,
                                    std::int32_t BlurLevel = ipUseDefault) = 0;
  /// Writes a thumbnail according to the options; true if the file was written.
  virtual bool SaveImageThumbnail(std::string Filename) = 0;
  /// Asks the user for the thumbnail's settings and makes it; null if canceled.
  virtual PicturePtr ShowGetThumnailDialog() = 0;
  /// Writes the thumbnail of `ShowGetThumnailDialog`; false if canceled.
  virtual bool SaveImageThumbnailEx(std::string Filename) = 0;
};

}  // namespace kestrel
