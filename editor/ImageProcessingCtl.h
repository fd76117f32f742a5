#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "base/Event.h"
#include "base/Object.h"
#include "base/OpenCalls.h"
#include "diagnostics/modTollgarthSupport.h"
#include "dialogs/DialogBase.h"
#include "dialogs/frmResources.h"
#include "editor/interface/IImageProcessingCtl.h"
#include "host/interface/IImageEvents.h"
#include "imaging/contract/ImageView.h"
#include "imaging/contract/ImgX.h"
#include "imaging/contract/Moorage.h"
#include "imaging/contract/Platform.h"
#include "imaging/contract/Site.h"
#include "settings/MRU.h"
#include "settings/Options.h"
#include "toolwindows/frmMaterials.h"
#include "toolwindows/frmZoom.h"

namespace kestrel {

/// The embeddable image editor: an image view surrounded by menus, tool bars, a status bar and dock windows.
///
/// A container makes it on a `Site` that has an image view "igxImage" and a docking suite "mrgUI", and raises
/// the site's `InitProperties` or `ReadProperties`. The host then calls `Initialize` once. All calls and
/// events happen on the thread that made it.
///
/// An error inside a member is reported and the member returns its default result, unless documented
/// otherwise. Setting a property to its current value does nothing.
class ImageProcessingCtl final : public IImageProcessingCtl {
 public:
  /// The thread must be attached to a platform (`modProcessing`). Commands start disabled. Raises
  /// RuntimeError 730 if the site lacks a child control.
  explicit ImageProcessingCtl(Site& site);
  ~ImageProcessingCtl() override;

  std::string TypeName() const override { return "ImageProcessingCtl"; }

  // -- Life -----------------------------------------------------------------------------------------------

  /// Completes the start-up; at design time only sets the view's zoom.
  void Initialize();
  /// Closes the dock windows and releases all windows and the sink. A host may call it early; further calls
  /// do nothing.
  void Terminate();
  /// The container has lost its host: terminates. From now on the control raises no event and shows no
  /// dialog, and running members do not store files or settings.
  ///
  /// A container whose host ends it in an event, or while a dialog is open, calls this, and destroys the
  /// control when the platform's `Calls` have returned and no member is on the stack. Destroying the control
  /// inside one of its own members is an error.
  void Retire();

  // -- Switches of the host -------------------------------------------------------------------------------

  /// Hot keys without Ctrl or Alt stay active. Those removed while it is False are not restored.
  bool AllowUnmodifiedHotKeys() const { return pAllowUnmodifiedHotKeys; }
  void AllowUnmodifiedHotKeys(bool Value);
  /// Only a subset of the tools is shown.
  bool UseSimpleTools() const { return pUseSimpleTools; }
  void UseSimpleTools(bool Value);
  bool ShowDrawingTools() const { return pShowDrawingTools; }
  void ShowDrawingTools(bool Value);
  /// One Save that the host executes replaces Save, Save As and Export.
  bool UseSimpleSave() const { return pUseSimpleSave; }
  void UseSimpleSave(bool Value);
  bool ShowClose() const { return pShowClose; }
  void ShowClose(bool Value);
  /// Also sets `ShowMRU`.
  bool ShowOpen() const { return pShowOpen; }
  void ShowOpen(bool Value);
  bool ShowMRU() const { return pShowMRU; }
  void ShowMRU(bool Value);
  bool ShowMenuBar() const { return pShowMenuBar; }
  void ShowMenuBar(bool Value);
  /// Changes of the two colors are written to `Options`.
  bool AutoUpdateGlobal() const { return pAutoUpdateGlobal; }
  void AutoUpdateGlobal(bool Value);

  // -- State ----------------------------------------------------------------------------------------------

  std::int32_t UndoLevels() const { return pUndoLevels; }
  void UndoLevels(std::int32_t Value);
  /// The material colors. A background of -1 means no fill: shapes are outlines in the foreground color.
  OLE_COLOR BackColor() const override { return pBackColor; }
  void BackColor(OLE_COLOR Value) override;
  OLE_COLOR ForeColor() const override { return pForeColor; }
  void ForeColor(OLE_COLOR Value) override;
  /// The picture was edited since it was set. Becoming True raises `Change`.
  bool Changed() const { return pChanged; }
  void Changed(bool Value);
  /// The format code of the open file. Setting it changes the extension of `Filename`; the picture and the
  /// format of the next save are unchanged.
  std::int32_t Format() const { return mFormat; }
  void Format(std::int32_t Value);
  /// The picture as an ordinary picture object; null while there is none. Setting it keeps `Filename`.
  PicturePtr Picture();
  void Picture(const PicturePtr& Value);
  /// The host's sink, a weak reference.
  std::shared_ptr<IImageEvents> EventSink() const;
  void EventSink(const std::shared_ptr<IImageEvents>& Value);
  /// Selecting another tool clears the selection and raises `ToolChange`.
  ImageProcessingToolConstants Tool() const { return pTool; }
  void Tool(ImageProcessingToolConstants Value);

  /// Null while there is no picture.
  kestrel::Image* Image() override;
  std::shared_ptr<kestrel::ImgX> ImgX();
  /// The settings that all editors of the process share.
  std::shared_ptr<kestrel::Options> Options();
  kestrel::DockWindows& DockWindows() { return mrgUI.DockWindows(); }
  kestrel::Commands& Commands() { return mrgUI.Commands(); }
  kestrel::CommandBars& CommandBars() { return mrgUI.CommandBars(); }
  /// The file dialog; null before `Initialize`.
  ImgXDialog* BrowseDialog() override { return pDialog.get(); }
  ImageView& ImageControl() override { return igxImage; }
  const std::string& Filename() const { return pFilename; }
  /// The tool windows; null before `Initialize`, at design time and after `Terminate`.
  frmZoom* ZoomWindow() { return fltZoom.get(); }
  frmMaterials* MaterialsWindow() { return fltMaterials.get(); }

  // -- Files ----------------------------------------------------------------------------------------------

  /// Opens a file. Without a name the host is asked for one, by event and sink, and then the user by dialog.
  /// True if a picture was opened. Does not ask about unsaved changes.
  bool OpenImage(std::string Filename = {});
  /// Saves under the current name.
  bool SaveImage();
  bool SaveImageAs(const std::string& Filename = {});
  /// Asks the user about unsaved changes. True if the caller may continue.
  bool SaveChanges();

  // -- Commands and status --------------------------------------------------------------------------------

  /// Enables or disables the commands that need a picture. Undo and Redo are enabled only if there is a step,
  /// commands that must wait for the end of an open paste or crop only after it, and commands without a
  /// dialog never.
  void SetControls(const bool& Enabled);
  /// Shows a message in the status line. With `ChangeCursor` a text begins a busy phase and an empty one ends
  /// it.
  void Status(const std::string& Message = {}, bool ChangeCursor = false, bool UpdateAsDefault = false);
  void SetToolbarStyle(std::int32_t Style);
  /// Applies the settings to the user interface.
  void ApplyOptions();

  // -- Selection ------------------------------------------------------------------------------------------

  /// Switches to the selection tool and shows the rectangle; picture pixels, sizes may be negative.
  void SetSelection(std::int32_t Left, std::int32_t Top, std::int32_t Width, std::int32_t Height);
  void SelectAll();
  void ResetSelection();
  void Copy(bool UseSelection = false);
  /// Copies the selection, or the picture without one, and fills the copied area with the drawing color.
  /// Without a selection the filled area has the size of the view.
  void Cut(bool UseSelection = false);
  /// Commits the floating image of an open paste; does nothing without one.
  void Paste();
  /// Cancels an open paste and an open crop.
  void Cancel();
  /// Raises the engine's error if the result is empty.
  void CropToSelection();

  // -- Operations; engine errors propagate to the caller --------------------------------------------------

  /// Height 0 keeps the aspect ratio. The methods are those of `Effects::Resize`.
  void Resize(std::int32_t Width, std::int32_t Height = 0, std::int32_t ResampleMethod = 0) override;
  void ResizeCanvas(std::int32_t Width, std::int32_t Height, std::int32_t OffsetX = 0,
                    std::int32_t OffsetY = 0, OLE_COLOR BackColor = ipUseDefault) override;
  /// Clockwise, in degrees.
  void Rotate(float Angle, OLE_COLOR BackColor = ipUseDefault, bool ApplyToSelection = false);
  void FlipHorizontally(bool ApplyToSelection = false);
  void FlipVertically(bool ApplyToSelection = false);
  void ApplyGrayScale(bool ApplyToSelection = false);
  /// Asks for an angle and rotates the selection if there is one, else the picture. Returns the clockwise
  /// angle, 0 if canceled.
  std::int32_t ShowRotateDialog();
  void FlattenAlpha(OLE_COLOR Color = ipUseDefault);
  /// Raises 6 for an opacity beyond a byte.
  void ApplyDropShadow(std::int32_t OffsetX = ipUseDefault, std::int32_t OffsetY = ipUseDefault,
                       OLE_COLOR ShadowColor = ipUseDefault, std::int32_t Opactity = ipUseDefault,
                       std::int32_t BlurLevel = ipUseDefault, bool ApplyToSelection = false);
  /// Adds a shadow of the pixels that do not have the mask color. Works on any valid selection, regardless of
  /// `ApplyToSelection`. A failure leaves picture, steps and `Changed` as they were.
  void ApplyMaskedDropShadow(std::int32_t OffsetX = ipUseDefault, std::int32_t OffsetY = ipUseDefault,
                             OLE_COLOR ShadowColor = ipUseDefault, std::int32_t Opactity = ipUseDefault,
                             std::int32_t BlurLevel = ipUseDefault, OLE_COLOR MaskColor = ipUseDefault,
                             bool AutomaticMask = false, bool ApplyToSelection = false);

  // -- Undo -----------------------------------------------------------------------------------------------

  void Undo();
  void Redo();

  // -- Zoom -----------------------------------------------------------------------------------------------

  /// Step 0.1 below actual size and 1 above it. Not limited.
  void ZoomIn();
  void ZoomOut();
  void ZoomActualSize();

  // -- Thumbnails -----------------------------------------------------------------------------------------

  /// A reduced copy of the picture on a background; `Size` is in percent of its width. -1 means the option's
  /// value.
  PicturePtr GetThumbnail(std::int32_t Size = ipUseDefault, OLE_COLOR BackColor = ipUseDefault,
                          bool AddDropShadow = false, std::int32_t OffsetX = ipUseDefault,
                          std::int32_t OffsetY = ipUseDefault, OLE_COLOR ShadowColor = ipUseDefault,
                          std::int32_t Opacity = ipUseDefault, std::int32_t BlurLevel = ipUseDefault);
  /// The same with a choice of the size's unit. Raises 6 for an opacity beyond a byte, and engine errors.
  PicturePtr GetThumbnailEx(ThumbnailSizeTypeEnum& SizeType, std::int32_t Size = ipUseDefault,
                            OLE_COLOR BackColor = ipUseDefault, bool AddDropShadow = false,
                            std::int32_t OffsetX = ipUseDefault, std::int32_t OffsetY = ipUseDefault,
                            OLE_COLOR ShadowColor = ipUseDefault, std::int32_t Opactity = ipUseDefault,
                            std::int32_t BlurLevel = ipUseDefault);
  /// Writes a thumbnail according to the options; true if the file was written.
  bool SaveImageThumbnail(std::string Filename);

  // -- Events, in the order of the interface --------------------------------------------------------------

  /// The user asked to close the editor.
  Event<> ExitRequest;
  Event<const std::string&> ImageOpen;
  Event<const std::string&> ImageSave;
  Event<std::string&, bool&> RequestOpenFilename;  ///< Filename, CancelDefault
  Event<std::string&, bool&> RequestSaveFilename;  ///< Filename, CancelDefault
  /// Kept for hosts; this control never raises it.
  Event<> WindowClosed;
  // ForeColorChange and BackColorChange come here in the order; see IImageProcessingCtl.
  Event<ImageProcessingToolConstants> ToolChange;
  Event<> PictureSet;
  Event<bool&> SimpleSaveRequest;  ///< Saved
  Event<> Change;

 private:
  struct StoredProperty;
  struct CommandRow;

  // Calls to host and user, during which the host may destroy the control. Arguments must not refer to its
  // state.
  template <typename... Parameters, typename... Arguments>
  void zRaise(const Event<Parameters...>& Raised, Arguments&&... Values) {
    const OpenCalls::Call Call(iPlatform.Calls);
    Raised(std::forward<Arguments>(Values)...);
  }
  template <typename Notification>
  void zNotifySink(Notification Notify) {
    const OpenCalls::Call Call(iPlatform.Calls);
    if (const auto sink = EventSink()) Notify(*sink);
  }
  void zPropertyChanged(const char* Name);
  /// For a retired control the box counts as closed.
  std::int32_t zMessageBox(const std::string& Text, std::int32_t Style, const std::string& Title = {});
  bool zShowDialog(DialogBase& Dialog);
  bool zShowFileDialog(bool Save);
  void zShowPopup(const char* Menu);

  // Set-up
  void zConnectPointer();
  static std::span<const StoredProperty> zStoredProperties();
  static std::span<const CommandRow> zCommandRows();
  void zConnect();
  std::string qdkDumpModuleVariables() const;
  void zRelease();

  // Requests of the container
  void Usercontrol_Initialize();
  void UserControl_InitProperties();
  void UserControl_ReadProperties(const PropertyBag& PropBag);
  void UserControl_WriteProperties(PropertyBag& PropBag);
  void UserControl_Resize();
  void UserControl_Hide();
  void UserControl_KeyPress(std::int32_t& KeyAscii);
  void zInitialize();
  void zInitSubControls();
  void zRemoveUnmodifiedHotKeys();

  // Files
  void zPictureSet();
  bool zSaveImage(std::string Filename, std::int32_t ForcedFormat, bool UpdateUserInterface);
  void pDialog_InitDialog(std::int32_t& DialogWidth, std::int32_t& DialogHeight);
  bool zSaveThumbnail(const kestrel::Picture& Thumbnail, const std::string& Filename);
  void zShowFileNotice();
  void zUpdateFileNotice();
  void zClearFileNotice();
  bool zOffersSaveAs();
  void igxImage_NoticeAction();

  // Commands
  void zEnable(const CommandRow& Row);
  void zEnableSteps();
  void mrgUI_CommandClick(Command& Command);
  void mrgUI_CommandChange(Command& Command, Combo& Combo);
  void mrgUI_CommandHighlight(Command& Command, std::int32_t HighlightState);
  void mrgUI_CommandHotKeyPress(Command& Command, HotKey& HotKey, CancelValue& CancelDefault);
  void mrgUI_CommandBarHiding(CommandBar& CommandBar);
  void mrgUI_CommandBarShowing(CommandBar& CommandBar);
  void mrgUI_DockWindowHiding(DockWindow& DockWindow);
  void mrgUI_DockWindowShowing(DockWindow& DockWindow);
  void mrgUI_ClientAreaChanged();
  void zUpdateModeCommands();
  void zUpdateBarCommand(CommandBar& CommandBar, bool Shown);
  void zUpdateDockWindowCommand(DockWindow& DockWindow, bool Shown);
  void zRequestExit();
  void zRequestSimpleSave();
  void zOpenRecent(Command& Command);
  void zToggleStatusBar();
  void zToggleDockWindow(const char* Key);
  void zShowHelp();
  void zShowAbout();

  // Zoom
  void igxImage_BeforeZoomChanged(double Zoom);
  void igxImage_WheelZoom(std::int32_t Direction);

  // Tools and pointer
  Point zPixelAt(float X, float Y);
  bool zInImageRegion(float X, float Y);
  bool zOutsideSelection(const Point& Pixel) const;
  void zShowSize();
  void zUpdatePointerPixel();
  void igxImage_MouseDown(std::int32_t Button, std::int32_t Shift, float X, float Y);
  void igxImage_MouseMove(std::int32_t Button, std::int32_t Shift, float X, float Y);
  void igxImage_MouseMovePixel(std::int32_t Button, std::int32_t Shift, std::int32_t PixelX,
                               std::int32_t PixelY);
  void igxImage_MouseUp(std::int32_t Button, std::int32_t Shift, float X, float Y);
  void igxImage_Click();
  void igxImage_SelectChanged(std::int32_t Left, std::int32_t Top, std::int32_t Width, std::int32_t Height);
  void igxImage_Selected(std::int32_t Left, std::int32_t Top, std::int32_t Width, std::int32_t Height);

  // Selection, paste and crop
  bool zHasSelection() const;
  bool zUseSelection() const;
  void zCopySection();
  void zBeginPaste();
  void zMoveFloatingImage();
  void zKeepFloatingSize();
  void zCancelPaste();
  void igxImage_DoubleBufferPaintAfter(DeviceContext& hDC);
  void zCropOrBeginCrop();
  void zTryCrop();
  void zCancelCrop();

  // Operations
  struct ShadowArguments {
    std::int32_t OffsetX;
    std::int32_t OffsetY;
    OLE_COLOR Color;
    std::int32_t Opacity;
    std::int32_t BlurLevel;
  };
  ImagingFace& zBeginOperation(bool OnSection);
  void zEndOperation(bool OnSection, const std::string& UndoName = {});
  void zFlip(std::int32_t Direction, bool ApplyToSelection);
  void zTakeShadowDefaults(ShadowArguments& Shadow);
  Colour zShadowColor(const kestrel::Colors& Palette, const ShadowArguments& Shadow) const;
  void zDropShadow(ImagingFace& Target, const Colour& Color, const ShadowArguments& Shadow,
                   const std::string& UndoName);

  // Undo
  void igxImage_Changed();
  void igxImage_UndoStepsChanged();
  void igxImage_Loaded();
  void zUpdateStepCommands();

  InstanceCount iCount;
  Platform& iPlatform;
  Site& UserControl;
  ImageView& igxImage;
  Moorage& mrgUI;

  std::unique_ptr<ImgXDialog> pDialog;
  std::shared_ptr<kestrel::ImgX> pImage;
  std::unique_ptr<MRU> pMRU;
  std::unique_ptr<SinkHolder> pEventSink;
  std::string pFilename;
  OLE_COLOR pForeColor = 0;
  OLE_COLOR pBackColor = 0;
  ImageProcessingToolConstants pTool = ipToolNone;
  std::int32_t pUndoLevels = 0;
  std::int32_t mFormat = 0;
  bool pUseSimpleTools = false;
  bool pChanged = false;
  bool iHoldsChange = false;  ///< an operation of several steps may still be taken back
  bool iHeldChange = false;   ///< and has changed the picture
  bool pShowMenuBar = false;
  bool pShowMRU = false;
  bool pShowOpen = false;
  bool pUseSimpleSave = false;
  bool pAutoUpdateGlobal = false;
  bool pShowClose = false;
  bool pShowDrawingTools = false;
  bool pAllowUnmodifiedHotKeys = false;
  std::unique_ptr<frmMaterials> fltMaterials;
  std::unique_ptr<frmZoom> fltZoom;
  std::unique_ptr<frmResources> iResources;
  std::unique_ptr<HelpViewer> iHelp;
  ImageProcessingToolConstants iOldTool = ipToolNone;
  bool iIsSave = false;
  std::string iStatusText;
  bool iCropping = false;
  bool iPasting = false;
  bool iTransparentPaste = false;
  std::vector<const char*> iHeldCommands;  ///< disabled until the paste or the crop ends
  bool iRuntime = false;
  bool iTerminated = false;
  bool iRetired = false;
  std::int32_t iPasteX = 0;
  std::int32_t iPasteY = 0;
  std::int16_t iLastButton = 0;
  float iZoomLevel = 0;
  bool iHandlingZoomCombo = false;
  bool iControlsEnabled = false;  ///< last argument of `SetControls`
  std::string iNotice;            ///< the last notice for the picture's file
  bool iRepeatNotice = false;     ///< the first change shows it again if it was closed

  std::vector<Connection> iConnections;
  Connection iDialogConnection;
  /// Windows that `Terminate` unloaded during an event, which may come from one of their own handlers.
  std::vector<std::shared_ptr<void>> iUnloaded;
};

}  // namespace kestrel
