#include "ImageProcessingCtl.h"

#include <utility>

#include "CommandTable.h"
#include "Tools.h"
#include "base/Numbers.h"
#include "base/Required.h"
#include "diagnostics/Trailer.h"
#include "imaging/modImgX.h"
#include "settings/RootKey.h"
#include "settings/modProcessing.h"

namespace kestrel {
namespace {

constexpr char kHelpFile[] = "BrindleImgPro.chm";
/// The commands that use what `Initialize` makes and `Terminate` releases.
constexpr const char* kWindowCommands[] = {"btnViewMaterialsWindow", "btnViewZoomWindow", "btnHelpContents"};
constexpr std::int32_t kZoomEntries = 25;
constexpr std::int32_t kKeyEscape = 27;

}  // namespace

/// A property stored in the host's property bag.
struct ImageProcessingCtl::StoredProperty {
  const char* Name;
  bool ImageProcessingCtl::*Field;
  bool Default;
};

std::span<const ImageProcessingCtl::StoredProperty> ImageProcessingCtl::zStoredProperties() {
  static constexpr StoredProperty kProperties[] = {
      {"AllowUnmodifiedHotKeys", &ImageProcessingCtl::pAllowUnmodifiedHotKeys, false},
      {"UseSimpleTools", &ImageProcessingCtl::pUseSimpleTools, false},
      {"ShowDrawingTools", &ImageProcessingCtl::pShowDrawingTools, true},
      {"UseSimpleSave", &ImageProcessingCtl::pUseSimpleSave, false},
      {"ShowClose", &ImageProcessingCtl::pShowClose, false},
      {"AutoUpdateGlobal", &ImageProcessingCtl::pAutoUpdateGlobal, false},
      {"ShowMRU", &ImageProcessingCtl::pShowMRU, true},
      {"ShowOpen", &ImageProcessingCtl::pShowOpen, true},
      {"ShowMenuBar", &ImageProcessingCtl::pShowMenuBar, false},
  };
  return kProperties;
}

// -- Creation ---------------------------------------------------------------------------------------------

ImageProcessingCtl::ImageProcessingCtl(Site& site)
    : iCount(modTollgarthSupport::Counted::kImageProcessingCtl),
      iPlatform(modProcessing::Platform()),
      UserControl(site),
      igxImage(Bind<ImageView>(site, "igxImage")),
      mrgUI(Bind<Moorage>(site, "mrgUI")) {
  zConnect();
  Usercontrol_Initialize();
}

// Do not access child controls: the container may have destroyed them.
ImageProcessingCtl::~ImageProcessingCtl() {
  if (!iRetired) zRelease();
}

void ImageProcessingCtl::Usercontrol_Initialize() {
  std::int32_t Entry = 0;
  try {
    iPlatform.RegistryStore().RootKey(kRootKey);
    iPlatform.RegistryStore().RootHive(HKEY_CURRENT_USER);
    CommandBars()("Menu Bar").Visible(false);
    // Shown only while the zoom tool is selected. The stored layout has it visible.
    CommandBars()("Zoom").Visible(false);
    CommandBars()("Zoom").Listed(false);
    SetControls(false);
    // The initial back color is black, which means solid fill. Setting black later is no change.
    igxImage.Draw().FillMode(kFillSolid);
    CommandItems& zoomEntries = Commands()("cboZoom").Items();
    for (Entry = 1; Entry <= kZoomEntries; ++Entry) zoomEntries.Add(ToText(Entry) + ":1", ToText(Entry));
    QDK_RESUME_NEXT(iPlatform.FormSkin().ApplyToForm(UserControl, -1, -1));
  } catch (...) {
    QDK_TRAILER(Usercontrol_Initialize, QDK_PARAMETERS(), QDK_LOCALS(Entry));
  }
}

void ImageProcessingCtl::zConnect() {
  const auto keep = [this](Connection connection) { iConnections.push_back(std::move(connection)); };

  keep(UserControl.InitProperties.Connect([this] { UserControl_InitProperties(); }));
  keep(UserControl.ReadProperties.Connect(
      [this](const PropertyBag& bag) { UserControl_ReadProperties(bag); }));
  keep(UserControl.WriteProperties.Connect([this](PropertyBag& bag) { UserControl_WriteProperties(bag); }));
  keep(UserControl.Resize.Connect([this] { UserControl_Resize(); }));
  keep(UserControl.Hide.Connect([this] { UserControl_Hide(); }));
  keep(UserControl.KeyPress.Connect([this](std::int32_t& key) { UserControl_KeyPress(key); }));
  keep(UserControl.QueryEscape.Connect([this](bool& used) { UserControl_QueryEscape(used); }));
  keep(UserControl.AcceptsFilesChanged.Connect([this] { zUpdateHint(); }));
  keep(UserControl.QueryFileDrop.Connect([this](bool& taken) { UserControl_QueryFileDrop(taken); }));
  keep(UserControl.FileDrop.Connect([this](const std::string& name) { UserControl_FileDrop(name); }));

  keep(mrgUI.CommandClick.Connect([this](Command& command) { mrgUI_CommandClick(command); }));
  keep(mrgUI.CommandChange.Connect(
      [this](Command& command, Combo& combo, CancelValue&) { mrgUI_CommandChange(command, combo); }));
  keep(mrgUI.CommandHighlight.Connect(
      [this](Command& command, std::int32_t state) { mrgUI_CommandHighlight(command, state); }));
  keep(mrgUI.CommandHotKeyPress.Connect([this](Command& command, HotKey& key, CancelValue& cancel) {
    mrgUI_CommandHotKeyPress(command, key, cancel);
  }));
  keep(mrgUI.CommandBarHiding.Connect(
      [this](CommandBar& bar, std::int32_t, CancelValue&) { mrgUI_CommandBarHiding(bar); }));
  keep(mrgUI.CommandBarShowing.Connect(
      [this](CommandBar& bar, std::int32_t, CancelValue&) { mrgUI_CommandBarShowing(bar); }));
  keep(mrgUI.DockWindowHiding.Connect(
      [this](DockWindow& window, std::int32_t, CancelValue&) { mrgUI_DockWindowHiding(window); }));
  keep(mrgUI.DockWindowShowing.Connect(
      [this](DockWindow& window, std::int32_t, CancelValue&) { mrgUI_DockWindowShowing(window); }));
  keep(mrgUI.ClientAreaChanged.Connect([this] { mrgUI_ClientAreaChanged(); }));

  keep(igxImage.BeforeZoomChanged.Connect([this](double zoom) { igxImage_BeforeZoomChanged(zoom); }));
  keep(igxImage.WheelZoom.Connect([this](std::int32_t direction) { igxImage_WheelZoom(direction); }));
  keep(igxImage.Changed.Connect([this] { igxImage_Changed(); }));
  keep(igxImage.Loaded.Connect([this] { igxImage_Loaded(); }));
  keep(igxImage.UndoStepsChanged.Connect([this] { igxImage_UndoStepsChanged(); }));
  keep(igxImage.NoticeAction.Connect([this] { igxImage_NoticeAction(); }));
  zConnectPointer();
}

// -- The property stage -----------------------------------------------------------------------------------

void ImageProcessingCtl::UserControl_InitProperties() {
  try {
    pShowDrawingTools = true;
    pShowMRU = true;
    pShowOpen = true;
    pShowClose = false;
    zInitialize();
  } catch (...) {
    QDK_TRAILER(UserControl_InitProperties, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void ImageProcessingCtl::UserControl_ReadProperties(const PropertyBag& PropBag) {
  try {
    for (const StoredProperty& property : zStoredProperties()) {
      this->*property.Field = PropBag.ReadProperty(property.Name, property.Default).ToBoolean();
    }
    zInitialize();
  } catch (...) {
    QDK_TRAILER(UserControl_ReadProperties, QDK_PARAMETERS(PropBag), QDK_LOCALS());
  }
}

void ImageProcessingCtl::UserControl_WriteProperties(PropertyBag& PropBag) {
  try {
    for (const StoredProperty& property : zStoredProperties()) {
      PropBag.WriteProperty(property.Name, this->*property.Field, property.Default);
    }
  } catch (...) {
    QDK_TRAILER(UserControl_WriteProperties, QDK_PARAMETERS(PropBag), QDK_LOCALS());
  }
}

void ImageProcessingCtl::zInitialize() {
  try {
    iRuntime = UserControl.UserMode();
    mrgUI.Visible(iRuntime);
    CommandBars()("Menu Bar").Visible(pShowMenuBar && iRuntime);
    zInitSubControls();
  } catch (...) {
    QDK_TRAILER(zInitialize, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void ImageProcessingCtl::zInitSubControls() {
  try {
    const auto show = [this](bool visible, std::initializer_list<const char*> names) {
      for (const char* name : names) Commands()(name).Visible(visible);
    };
    show(pShowMRU, {"mnuFileMRU"});
    show(pShowClose, {"btnFileClose"});
    show(pShowOpen, {"btnFileOpen"});
    show(!pUseSimpleSave, {"btnFileSaveAs", "btnFileSave", "btnFileExport"});
    show(pUseSimpleSave, {"btnFileSimpleSave"});
    for (const ToolRow& row : kTools) {
      if (row.Draws) Commands()(row.Command).Visible(pShowDrawingTools);
    }
    for (const CommandRow& row : zCommandRows()) {
      if (row.Has(kFullTools)) Commands()(row.Name).Visible(!pUseSimpleTools);
    }

    Commands().HotKeyOptions().AllowUnmodified(pAllowUnmodifiedHotKeys ? 1 : 0);
    if (!pAllowUnmodifiedHotKeys) zRemoveUnmodifiedHotKeys();

    // The simple tools hide the entries above Copy and their separator.
    CommandBars()("Standard").Entries().Item("btnEditCopy").BeginGroup(pUseSimpleTools);
    Commands()("mnuEdit").Bar().Entries().Item("btnEditCopy").BeginGroup(pUseSimpleTools);
    zUpdateHint();
  } catch (...) {
    QDK_TRAILER(zInitSubControls, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void ImageProcessingCtl::zRemoveUnmodifiedHotKeys() {
  std::int32_t Index = 0;
  try {
    for (Index = 1; Index <= Commands().Count(); ++Index) {
      Command& command = Commands().Item(Index);
      if (command.CommandType() != kCommandButton || command.HotKeys().Count() == 0) continue;
      HotKey& first = command.HotKeys().Item(1);
      if (first.Shift() == 0 || first.Shift() == kShiftMask) first.Remove();
    }
  } catch (...) {
    QDK_TRAILER(zRemoveUnmodifiedHotKeys, QDK_PARAMETERS(), QDK_LOCALS(Index));
  }
}

// -- Start-up and tear-down -------------------------------------------------------------------------------

void ImageProcessingCtl::Initialize() {
  try {
    ZoomActualSize();
    if (!iRuntime) return;

    pImage = iPlatform.CreateImgX();
    Required(pImage).BackColor(kNoColor);

    igxImage.ImageBorder(true);
    igxImage.MousePointerStyle(2);
    igxImage.AutoRedrawSelection(false);
    igxImage.SelectionStyle(0);
    igxImage.Draw().PenSetting(1);
    igxImage.Visible(true);

    ApplyOptions();
    BackColor(Required(Options()).MaterialBackColor());
    ForeColor(Required(Options()).MaterialForeColor());
    UndoLevels(Required(Options()).UndoLevels());
    // The field starts at 0, so setting 0 was no change. The view starts with more levels.
    if (pUndoLevels == 0) igxImage.UndoLevels(0);

    pDialog = iPlatform.CreateImgXDialog();
    iDialogConnection = pDialog->InitDialog.Connect(
        [this](std::int32_t& width, std::int32_t& height) { pDialog_InitDialog(width, height); });
    pDialog->OwnerWindow(UserControl.hWnd());
    pDialog->CenterOnOwner(true);
    pDialog->FilterIndex(0);
    pDialog->MaxFiles(1);
    pDialog->DefaultExt("bmp");

    iHelp = iPlatform.CreateHelpViewer();
    iHelp->HelpFile(kHelpFile);

    fltMaterials = std::make_unique<frmMaterials>();
    mrgUI.DockFunctions().AttachForm(DockWindows()("dkwMaterials"), fltMaterials->Form());
    fltZoom = std::make_unique<frmZoom>();
    fltZoom->Application(this);
    mrgUI.DockFunctions().AttachForm(DockWindows()("dkwZoom"), fltZoom->Form());
    fltMaterials->Application(this);
    for (const char* name : kWindowCommands) Commands()(name).Enabled(true);

    igxImage_BeforeZoomChanged(igxImage.Zoom());

    pMRU = std::make_unique<MRU>();
    pMRU->CommandMRU = &Commands()("mnuFileMRU");
    pMRU->RootKey = std::string(kRootKey) + "\\RecentFiles";
    pMRU->LoadFromRegistry();
    pMRU->BuildMRU(nullptr);

    Tool(ipToolSelect);
  } catch (...) {
    QDK_TRAILER(Initialize, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void ImageProcessingCtl::Terminate() {
  QDK_RESUME_NEXT(DockWindows()("dkwMaterials").Visible(false));
  QDK_RESUME_NEXT(DockWindows()("dkwZoom").Visible(false));
  for (const char* name : kWindowCommands) QDK_RESUME_NEXT(Commands()(name).Enabled(false));
  zRelease();
}

void ImageProcessingCtl::zRelease() {
  const auto release = [this](auto& window) {
    if (window && iPlatform.Calls.Any()) iUnloaded.push_back(std::move(window));
    window.reset();
  };
  QDK_RESUME_NEXT(iHelp.reset());
  QDK_RESUME_NEXT(release(iResources));
  QDK_RESUME_NEXT(if (fltMaterials) fltMaterials->Form().Unload());
  QDK_RESUME_NEXT(release(fltMaterials));
  QDK_RESUME_NEXT(if (fltZoom) fltZoom->Form().Unload());
  QDK_RESUME_NEXT(release(fltZoom));
  QDK_RESUME_NEXT(if (pEventSink) pEventSink->Object(nullptr));
  QDK_RESUME_NEXT(pEventSink.reset());
  QDK_RESUME_NEXT(modProcessing::KillShared());
}

void ImageProcessingCtl::Retire() {
  iRetired = true;
  ExitRequest.DisconnectAll();
  ImageOpen.DisconnectAll();
  ImageSave.DisconnectAll();
  RequestOpenFilename.DisconnectAll();
  RequestSaveFilename.DisconnectAll();
  WindowClosed.DisconnectAll();
  ForeColorChange.DisconnectAll();
  BackColorChange.DisconnectAll();
  ToolChange.DisconnectAll();
  PictureSet.DisconnectAll();
  SimpleSaveRequest.DisconnectAll();
  Change.DisconnectAll();
  iConnections.clear();
  zRelease();
}

std::int32_t ImageProcessingCtl::zMessageBox(const std::string& Text, std::int32_t Style,
                                             const std::string& Title) {
  if (iRetired) return kAnswerCancel;
  return iPlatform.UserInterface().MessageBox(Text, Style, Title, UserControl.hWnd());
}

void ImageProcessingCtl::zPropertyChanged(const char* Name) {
  CallHost(iPlatform.Calls, [&] {
    if (!iRetired) UserControl.PropertyChanged(Name);
  });
}

bool ImageProcessingCtl::zShowDialog(DialogBase& Dialog) {
  return !iRetired && Dialog.ShowModal(&UserControl);
}

bool ImageProcessingCtl::zShowFileDialog(bool Save) {
  if (iRetired) return false;
  return Save ? Required(pDialog).ShowSave() : Required(pDialog).ShowOpen();
}

void ImageProcessingCtl::zShowPopup(const char* Menu) {
  const OpenCalls::Call Call(iPlatform.Calls);
  if (!iRetired) mrgUI.ShowPopup(Commands()(Menu));
}

// -- Requests of the container ------------------------------------------------------------------------------

void ImageProcessingCtl::UserControl_Resize() {
  try {
    mrgUI.Move(0, 0, UserControl.ScaleWidth(), UserControl.ScaleHeight());
  } catch (...) {
    QDK_TRAILER(UserControl_Resize, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void ImageProcessingCtl::mrgUI_ClientAreaChanged() {
  const auto follow = [this] {
    const Rectangle area = mrgUI.ClientArea();
    igxImage.Move(area.Left, area.Top, area.Width, area.Height);
  };
  QDK_RESUME_NEXT(follow());
}

void ImageProcessingCtl::UserControl_Hide() {
  try {
    if (iTerminated) Terminate();
  } catch (...) {
    QDK_TRAILER(UserControl_Hide, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void ImageProcessingCtl::UserControl_KeyPress(std::int32_t& KeyAscii) {
  bool Pending = false;
  try {
    if (KeyAscii != kKeyEscape) return;
    Pending = iCropping || iPasting;
    Cancel();
    // The key that ends a mode must not also close the host's window.
    if (Pending) KeyAscii = 0;
  } catch (...) {
    QDK_TRAILER(UserControl_KeyPress, QDK_PARAMETERS(KeyAscii), QDK_LOCALS(Pending));
  }
}

void ImageProcessingCtl::UserControl_QueryEscape(bool& Used) { Used = Used || iCropping || iPasting; }

void ImageProcessingCtl::UserControl_QueryFileDrop(bool& Taken) {
  try {
    Taken = iRuntime && pMRU && zOffers("btnFileOpen");
  } catch (...) {
    QDK_TRAILER(UserControl_QueryFileDrop, QDK_PARAMETERS(Taken), QDK_LOCALS());
  }
}

void ImageProcessingCtl::UserControl_FileDrop(const std::string& Filename) {
  try {
    if (SaveChanges()) OpenImage(Filename);
  } catch (...) {
    QDK_TRAILER(UserControl_FileDrop, QDK_PARAMETERS(Filename), QDK_LOCALS());
  }
}

// -- Diagnostics ------------------------------------------------------------------------------------------

std::string ImageProcessingCtl::qdkDumpModuleVariables() const {
  return QDK_FIELDS(igxImage, mrgUI, pDialog, pImage, pMRU, pEventSink, pFilename, pForeColor, pBackColor,
                    pTool, pUndoLevels, mFormat, pUseSimpleTools, pChanged, pShowMenuBar, pShowMRU, pShowOpen,
                    pUseSimpleSave, pAutoUpdateGlobal, pShowClose, pShowDrawingTools, pAllowUnmodifiedHotKeys,
                    fltMaterials, fltZoom, iResources, iHelp, iOldTool, iIsSave, iStatusText, iCropping,
                    iPasting, iTransparentPaste, iRuntime, iTerminated, iPasteX, iPasteY, iLastButton,
                    iZoomLevel);
}

}  // namespace kestrel
