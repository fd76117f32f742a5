#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "base/Event.h"
#include "base/Object.h"
#include "diagnostics/modTollgarthSupport.h"
#include "editor/interface/IImageProcessingCtl.h"

namespace kestrel {

/// The image editor in a window of its own, for a host. Its members are those of the control in the window,
/// with the arguments unchanged, unless documented otherwise; `Control` has the others.
///
/// The host calls `Initialize` once. The user's closing the window hides it and terminates the control: the
/// object keeps working, and the next `Show` shows the same window without tool windows and without the first
/// four events.
///
/// Errors of the control's members go to the host. After `Terminate` there is no window: every member that
/// needs it raises RuntimeError 91, except `Show`, which reports it.
///
/// The host may end the object at any time: in every event, and while one of its windows is open. From then
/// on no event is raised; open windows close, and the member that showed one returns as if the user had
/// canceled it.
class ImageProcessing final : public Object {
 public:
  /// The thread must be attached to a platform (`modProcessing`). The window is made hidden.
  ImageProcessing();
  /// Ends the object without a further event.
  ~ImageProcessing() override;
  ImageProcessing(const ImageProcessing&) = delete;
  ImageProcessing& operator=(const ImageProcessing&) = delete;

  std::string TypeName() const override { return "ImageProcessing"; }

  // -- Events ---------------------------------------------------------------------------------------------
  Event<const std::string&> ImageOpen;             ///< Filename; the caption has it already
  Event<const std::string&> ImageSave;             ///< Filename; the caption has it already
  Event<std::string&, bool&> RequestOpenFilename;  ///< Filename, CancelDefault
  Event<std::string&, bool&> RequestSaveFilename;  ///< Filename, CancelDefault
  /// The window is asked to close, also if it then stays open because of unsaved changes.
  Event<> WindowClosed;

  // -- Life -----------------------------------------------------------------------------------------------
  void Initialize();
  /// Destroys the window. A window that was shown raises `WindowClosed` once more. Further calls do nothing.
  void Terminate();

  // -- The window -----------------------------------------------------------------------------------------
  /// The title in the window's caption, behind the name of the file; empty: the application's title.
  std::string Title() const;
  void Title(const std::string& Value);
  bool Visible() const;
  /// Shows the window. Modal: returns when it is hidden. Reports its errors: 400 if it is shown already and
  /// cannot be shown modally.
  void Show(bool Modal = false);

  // -- State ----------------------------------------------------------------------------------------------
  /// Returns access to the processing control
  IImageProcessingCtl& Control() const;
  /// The settings that all editors of the process share; also without a window.
  std::shared_ptr<kestrel::Options> Options() const;
  std::int32_t Format() const;
  void Format(std::int32_t Value);
  ImageProcessingToolConstants Tool() const;
  void Tool(ImageProcessingToolConstants Value);
  bool ShowClose() const;
  void ShowClose(bool Value);
  /// Null while there is no picture.
  kestrel::Image* Image() const;
  std::shared_ptr<kestrel::ImgX> ImgX() const;
  kestrel::Commands& Commands() const;
  kestrel::CommandBars& CommandBars() const;

  // -- Files ----------------------------------------------------------------------------------------------
  bool OpenImage(const std::string& Filename = {});
  bool SaveImage();
  bool SaveImageAs(const std::string& Filename = {});
  std::string Filename() const;

  // -- Selection and clipboard ----------------------------------------------------------------------------
  void SetSelection(std::int32_t Left, std::int32_t Top, std::int32_t Width, std::int32_t Height);
  void SelectAll();
  void Copy(bool UseSelection = false);
  void Cut(bool UseSelection = false);

  // -- Operations -----------------------------------------------------------------------------------------
  void Resize(std::int32_t Width, std::int32_t Height = 0, std::int32_t ResampleMethod = 0);
  void ResizeCanvas(std::int32_t Width, std::int32_t Height, std::int32_t OffsetX = 0,
                    std::int32_t OffsetY = 0, OLE_COLOR BackColor = ipUseDefault);
  void Rotate(float Angle, OLE_COLOR BackColor = ipUseDefault, bool ApplyToSelection = false);
  void FlipHorizontally(bool ApplyToSelection = false);
  void FlipVertically(bool ApplyToSelection = false);
  void ApplyGrayScale(bool ApplyToSelection = false);
  void FlattenAlpha(OLE_COLOR Color = ipUseDefault);
  void ApplyDropShadow(std::int32_t OffsetX = ipUseDefault, std::int32_t OffsetY = ipUseDefault,
                       OLE_COLOR ShadowColor = ipUseDefault, std::int32_t Opactity = ipUseDefault,
                       std::int32_t BlurLevel = ipUseDefault, bool ApplyToSelection = false);
  void ApplyMaskedDropShadow(std::int32_t OffsetX = ipUseDefault, std::int32_t OffsetY = ipUseDefault,
                             OLE_COLOR ShadowColor = ipUseDefault, std::int32_t Opactity = ipUseDefault,
                             std::int32_t BlurLevel = ipUseDefault, OLE_COLOR MaskColor = ipUseDefault,
                             bool AutomaticMask = false, bool ApplyToSelection = false);
  void CropToSelection();

  // -- Undo and zoom --------------------------------------------------------------------------------------
  void Undo();
  void Redo();
  void ZoomIn();
  void ZoomOut();
  void ZoomActualSize();

  // -- Dialogs --------------------------------------------------------------------------------------------
  bool ShowFlattenAlphaDialog();
  std::int32_t ShowRotateDialog();
  bool ShowMaskedDropShadowDialog();
  bool ShowDropShadowDialog();
  bool ShowResizeCanvasDialog();
  bool ShowResizeDialog();
  PicturePtr ShowGetThumnailDialog();
  /// Lets the user edit the settings. The result is always False.
  bool ShowOptions();

  // -- Thumbnails -----------------------------------------------------------------------------------------
  PicturePtr GetThumbnail(std::int32_t Size = ipUseDefault, OLE_COLOR BackColor = ipUseDefault,
                          bool AddDropShadow = false, std::int32_t OffsetX = ipUseDefault,
                          std::int32_t OffsetY = ipUseDefault, OLE_COLOR ShadowColor = ipUseDefault,
                          std::int32_t Opacity = ipUseDefault, std::int32_t BlurLevel = ipUseDefault);
  /// Writes a thumbnail in the format of the name's extension; `Size` is in percent of the picture's width.
  /// Without a name the file is next to the picture's: its name, "_thumb.", and its extension. Returns the
  /// name; empty if the file could not be written.
  std::string SaveThumbnail(const std::string& Filename = {}, std::int32_t Size = ipUseDefault);
  /// Asks the user for the thumbnail's settings and writes it; without a name as `SaveThumbnail` does. False
  /// if canceled.
  bool SaveImageThumbnailEx(const std::string& Filename = {});

 private:
  class Inside;

  InstanceCount iCount;
  std::shared_ptr<Inside> iInside;
};

}  // namespace kestrel
