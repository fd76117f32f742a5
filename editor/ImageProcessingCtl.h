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
#include "diagnostics/ErrorListener.h"
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

/// What becomes of a picture with unsaved changes; for its container, which may keep a copy of it.
enum class ChangesStep {
  kDeclined,   ///< the user has answered that they need not be saved; the picture is about to go
  kReplacing,  ///< a file is about to be loaded in its place
  kStaying,    ///< no other picture was loaded
};

/// The editor behind its public members, which `IImageProcessingCtl` describes.
///
/// A container makes it on a `Site` that holds an image view "igxImage" and a docking suite "mrgUI", and
/// raises the site's `InitProperties` or `ReadProperties`.
class ImageProcessingCtl final : public IImageProcessingCtl {
 public:
  /// The thread must be attached to a platform (`modProcessing`). Commands start disabled. Raises
  /// RuntimeError 730 if the site lacks a child control.
  explicit ImageProcessingCtl(Site& site);
  ~ImageProcessingCtl() override;

  std::string TypeName() const override { return "ImageProcessingCtl"; }

  // -- Life -----------------------------------------------------------------------------------------------
  void Initialize() override;
  void Terminate() override;

  /// The container has lost its host: terminates. From now on the control raises no event and shows no
  /// dialog, and running members do not store files or settings.
  ///
  /// A container whose host ends it in an event, or while a dialog is open, calls this, and destroys the
  /// control when the platform's `Calls` have returned and no member is on the stack. Destroying the control
  /// inside one of its own members is an error.
  void Retire();

  /// Puts a picture that was kept for recovery in place of the present one, under the name of its file and
  /// with unsaved changes. Raises `PictureSet`, `ImageOpen` and `Change`. False if it failed.
  bool Restore(kestrel::ImgX& Kept, const std::string& Filename);

  Event<ChangesStep> UnsavedChanges;

  // -- Switches of the host ---------------------------------------------------------------------------
  bool AllowUnmodifiedHotKeys() const override { return pAllowUnmodifiedHotKeys; }
  void AllowUnmodifiedHotKeys(bool Value) override;
  bool UseSimpleTools() const override { return pUseSimpleTools; }
  void UseSimpleTools(bool Value) override;
  bool ShowDrawingTools() const override { return pShowDrawingTools; }
  void ShowDrawingTools(bool Value) override;
  bool UseSimpleSave() const override { return pUseSimpleSave; }
  void UseSimpleSave(bool Value) override;
  bool ShowClose() const override { return pShowClose; }
  void ShowClose(bool Value) override;
  bool ShowOpen() const override { return pShowOpen; }
  void ShowOpen(bool Value) override;
  bool ShowMRU() const override { return pShowMRU; }
  void ShowMRU(bool Value) override;
  bool ShowMenuBar() const override { return pShowMenuBar; }
  void ShowMenuBar(bool Value) override;
  bool AutoUpdateGlobal() const override { return pAutoUpdateGlobal; }
  void AutoUpdateGlobal(bool Value) override;

  // -- State ----------------------------------------------------------------------------------------------
  std::int32_t UndoLevels() const override { return pUndoLevels; }
  void UndoLevels(std::int32_t Value) override;
  OLE_COLOR BackColor() const override { return pBackColor; }
  void BackColor(OLE_COLOR Value) override;
  OLE_COLOR ForeColor() const override { return pForeColor; }
  void ForeColor(OLE_COLOR Value) override;
  bool Changed() const override { return pChanged; }
  void Changed(bool Value) override;
  std::int32_t Format() const override { return mFormat; }
  void Format(std::int32_t Value) override;
  PicturePtr Picture() override;
  void Picture(const PicturePtr& Value) override;
  std::shared_ptr<IImageEvents> EventSink() const override;
  void EventSink(const std::shared_ptr<IImageEvents>& Value) override;
  ImageProcessingToolConstants Tool() const override { return pTool; }
  void Tool(ImageProcessingToolConstants Value) override;
  kestrel::Image* Image() override;
  std::shared_ptr<kestrel::ImgX> ImgX() override;
  std::shared_ptr<kestrel::Options> Options() override;
  kestrel::DockWindows& DockWindows() override { return mrgUI.DockWindows(); }
  kestrel::Commands& Commands() override { return mrgUI.Commands(); }
  kestrel::CommandBars& CommandBars() override { return mrgUI.CommandBars(); }
  ImgXDialog* BrowseDialog() override { return pDialog.get(); }
  ImageView& ImageControl() override { return igxImage; }
  const std::string& Filename() const override { return pFilename; }
  frmZoom* ZoomWindow() override { return fltZoom.get(); }
  frmMaterials* MaterialsWindow() override { return fltMaterials.get(); }

  // -- Files ----------------------------------------------------------------------------------------------
  bool OpenImage(std::string Filename) override;
  bool SaveImage() override;
  bool SaveImageAs(const std::string& Filename) override;
  bool SaveChanges() override;
  bool ShowExportDialog() override;

  // -- Commands and status --------------------------------------------------------------------------------
  void SetControls(const bool& Enabled) override;
  void Status(const std::string& Message, bool ChangeCursor, bool UpdateAsDefault) override;
  void SetToolbarStyle(std::int32_t Style) override;
  void ApplyOptions() override;
  bool ShowOptions() override;

  // -- Selection ------------------------------------------------------------------------------------------
  void SetSelection(std::int32_t Left, std::int32_t Top, std::int32_t Width, std::int32_t Height) override;
  void SelectAll() override;
  void ResetSelection() override;
  void Copy(bool UseSelection) override;
  void Cut(bool UseSelection) override;
  void Paste() override;
  void Cancel() override;
  void CropToSelection() override;

  // -- Operations -----------------------------------------------------------------------------------------
  void Resize(std::int32_t Width, std::int32_t Height, std::int32_t ResampleMethod) override;
  void ResizeCanvas(std::int32_t Width, std::int32_t Height, std::int32_t OffsetX, std::int32_t OffsetY,
                    OLE_COLOR BackColor) override;
  void Rotate(float Angle, OLE_COLOR BackColor, bool ApplyToSelection) override;
  void FlipHorizontally(bool ApplyToSelection) override;
  void FlipVertically(bool ApplyToSelection) override;
  void ApplyGrayScale(bool ApplyToSelection) override;
  void FlattenAlpha(OLE_COLOR Color) override;
  void ApplyDropShadow(std::int32_t OffsetX, std::int32_t OffsetY, OLE_COLOR ShadowColor,
                       std::int32_t Opactity, std::int32_t BlurLevel, bool ApplyToSelection) override;
  void ApplyMaskedDropShadow(std::int32_t OffsetX, std::int32_t OffsetY, OLE_COLOR ShadowColor,
                             std::int32_t Opactity, std::int32_t BlurLevel, OLE_COLOR MaskColor,
                             bool AutomaticMask, bool ApplyToSelection) override;

  // -- Dialogs of operations ------------------------------------------------------------------------------
  bool ShowResizeDialog() override;
  bool ShowResizeCanvasDialog() override;
  bool ShowDropShadowDialog() override;
  bool ShowMaskedDropShadowDialog() override;
  bool ShowFlattenAlphaDialog() override;
  std::int32_t ShowRotateDialog() override;

  // -- Undo -----------------------------------------------------------------------------------------------
  void Undo() override;
  void Redo() override;

  // -- Zoom -----------------------------------------------------------------------------------------------
  void ZoomIn() override;
  void ZoomOut() override;
  void ZoomActualSize() override;

  // -- Thumbnails -----------------------------------------------------------------------------------------
  PicturePtr GetThumbnail(std::int32_t Size, OLE_COLOR BackColor, bool AddDropShadow, std::int32_t OffsetX,
                          std::int32_t OffsetY, OLE_COLOR ShadowColor, std::int32_t Opacity,
                          std::int32_t BlurLevel) override;
  PicturePtr GetThumbnailEx(ThumbnailSizeTypeEnum& SizeType, std::int32_t Size, OLE_COLOR BackColor,
                            bool AddDropShadow, std::int32_t OffsetX, std::int32_t OffsetY,
                            OLE_COLOR ShadowColor, std::int32_t Opactity, std::int32_t BlurLevel) override;
  bool SaveImageThumbnail(std::string Filename) override;
  PicturePtr ShowGetThumnailDialog() override;
  bool SaveImageThumbnailEx(std::string Filename) override;

 private:
  struct StoredProperty;
  struct CommandRow;

  // Calls to host and user, during which the host may destroy the control. Arguments must not refer to its
  // state.
  template <typename... Parameters, typename... Arguments>
  void zRaise(const Event<Parameters...>& Raised, Arguments&&... Values) {
    CallHost(iPlatform.Calls, [&] { Raised(std::forward<Arguments>(Values)...); });
  }
  template <typename Notification>
  void zNotifySink(Notification Notify) {
    CallHost(iPlatform.Calls, [&] {
      if (const auto sink = EventSink()) Notify(*sink);
    });
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
  void UserControl_QueryEscape(bool& Used);
  void UserControl_QueryFileDrop(bool& Taken);
  void UserControl_FileDrop(const std::string& Filename);
  void zInitialize();
  void zInitSubControls();
  void zRemoveUnmodifiedHotKeys();

  // Files
  void zPictureSet();
  bool zSaveImage(std::string Filename, std::int32_t ForcedFormat, bool UpdateUserInterface);
  void pDialog_InitDialog(std::int32_t& DialogWidth, std::int32_t& DialogHeight);
  bool zSaveThumbnail(const kestrel::Picture& Thumbnail, const std::string& Filename);

  // The strip above the picture, and the line in the empty view
  void zShowFileNotice();
  void zUpdateFileNotice();
  void zShowSaved(const std::string& Filename, std::int32_t Format, bool UpdateUserInterface);
  void zShowUnsaved(const std::string& Filename);
  void zKeepClosedNotice();
  void zShowNotice();
  void igxImage_NoticeAction();
  void zUpdateHint();
  bool zOffers(const char* Name);

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
  void igxImage_PointerPixelChanged();
  void igxImage_ContextMenu();
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
  void zBeginPasteSpecial();
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
  bool iControlsEnabled = false;    ///< last argument of `SetControls`
  std::string iFileNotice;          ///< the last notice for the picture's file
  bool iShowsFileNotice = false;    ///< it is in the strip
  bool iRepeatNotice = false;       ///< the first change shows it again if it was closed
  std::string iSaveNotice;          ///< the notice about the latest save; it precedes the other in the strip
  const char* iSaveCommand = "";    ///< the command that it offers; empty for none
  std::string iNotice;              ///< both, as the strip shows them
  const char* iNoticeCommand = "";  ///< the command of the strip's button

  std::vector<Connection> iConnections;
  Connection iDialogConnection;
  /// Windows that `Terminate` unloaded during an event, which may come from one of their own handlers.
  std::vector<std::shared_ptr<void>> iUnloaded;
};

}  // namespace kestrel
