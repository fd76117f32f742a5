#include "ImageBrowserCtl.h"

#include "diagnostics/Trailer.h"
#include "settings/modProcessing.h"

namespace kestrel {
namespace {

constexpr char kHelpFile[] = "BrindleImgPro.chm";
constexpr char kShowMenuBar[] = "ShowMenuBar";
/// Shows folders and thumbnails as they are on the disk now.
constexpr std::int32_t kKeyF5 = 116;
constexpr char kNoFolder[] =
    "This location does not support image files. Please select a folder from the list to the left.";
constexpr char kNoImages[] =
    "There are no image files to view in this location. Please select a different folder from the list to "
    "the left.";

}  // namespace

// -- Creation ---------------------------------------------------------------------------------------------

ImageBrowserCtl::ImageBrowserCtl(Site& site)
    : iCount(modTollgarthSupport::Counted::kImageBrowserCtl),
      iPlatform(modProcessing::Platform()),
      UserControl(site),
      iTreeSite(Bind<Site>(site, "ftvBrowse")),
      mrgUI(Bind<Moorage>(site, "mrgUI")),
      pnlBrowse(Bind<SplitPanel>(site, "pnlBrowse")),
      thvBrowse(Bind<ThumbnailView>(site, "thvBrowse")),
      ftvBrowse(iTreeSite) {
  zConnect();
  Usercontrol_Initialize();
}

// Do not access child controls: the container may have destroyed them.
ImageBrowserCtl::~ImageBrowserCtl() = default;

void ImageBrowserCtl::Usercontrol_Initialize() {
  try {
    mrgUI.CommandBars()("Menu Bar").Visible(false);
    QDK_RESUME_NEXT(iPlatform.FormSkin().ApplyToForm(UserControl, -1, -1));
  } catch (...) {
    QDK_TRAILER(Usercontrol_Initialize, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void ImageBrowserCtl::zConnect() {
  const auto keep = [this](Connection connection) { iConnections.push_back(std::move(connection)); };
  keep(UserControl.InitProperties.Connect([this] { UserControl_InitProperties(); }));
  keep(UserControl.ReadProperties.Connect(
      [this](const PropertyBag& bag) { UserControl_ReadProperties(bag); }));
  keep(UserControl.WriteProperties.Connect([this](PropertyBag& bag) { UserControl_WriteProperties(bag); }));
  keep(UserControl.Resize.Connect([this] { UserControl_Resize(); }));
  keep(UserControl.Show.Connect([this] { UserControl_Show(); }));
  keep(UserControl.Hide.Connect([this] { UserControl_Hide(); }));
  keep(UserControl.KeyDown.Connect(
      [this](std::int32_t keyCode, std::int32_t shift) { UserControl_KeyDown(keyCode, shift); }));

  keep(mrgUI.CommandClick.Connect([this](Command& command) { mrgUI_CommandClick(command); }));
  keep(mrgUI.CommandHighlight.Connect(
      [this](Command& command, std::int32_t state) { mrgUI_CommandHighlight(command, state); }));
  keep(mrgUI.ClientAreaChanged.Connect([this] { mrgUI_ClientAreaChanged(); }));
  zConnectView();
}

void ImageBrowserCtl::zConnectTree() {
  const auto keep = [this](Connection connection) { iConnections.push_back(std::move(connection)); };
  keep(ftvBrowse.FolderClick.Connect([this](const std::string& folder) { ftvBrowse_FolderClick(folder); }));
  keep(ftvBrowse.DesktopClick.Connect([this] { ftvBrowse_DesktopClick(); }));
  keep(ftvBrowse.MyComputerClick.Connect([this] { ftvBrowse_MyComputerClick(); }));
}

// -- The property stage -----------------------------------------------------------------------------------

void ImageBrowserCtl::UserControl_InitProperties() {
  try {
    pShowMenuBar = true;
    zInitialize();
  } catch (...) {
    QDK_TRAILER(UserControl_InitProperties, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void ImageBrowserCtl::UserControl_ReadProperties(const PropertyBag& PropBag) {
  try {
    pShowMenuBar = PropBag.ReadProperty(kShowMenuBar, true).ToBoolean();
    zInitialize();
  } catch (...) {
    QDK_TRAILER(UserControl_ReadProperties, QDK_PARAMETERS(PropBag), QDK_LOCALS());
  }
}

void ImageBrowserCtl::UserControl_WriteProperties(PropertyBag& PropBag) {
  try {
    PropBag.WriteProperty(kShowMenuBar, pShowMenuBar, true);
  } catch (...) {
    QDK_TRAILER(UserControl_WriteProperties, QDK_PARAMETERS(PropBag), QDK_LOCALS());
  }
}

void ImageBrowserCtl::zInitialize() {
  try {
    iRuntime = UserControl.UserMode();
    zShowMenuBar();
    pnlBrowse.Panes(iTreeSite, thvBrowse);
    // What the tree selects while it is set up is no choice of the user.
    iTreeSite.InitProperties();
    zConnectTree();
    zResetView(kNoFolder);
    if (iRuntime) {
      iHelp = iPlatform.CreateHelpViewer();
      iHelp->HelpFile(kHelpFile);
    }
    thvBrowse.UserMode(iRuntime);
    thvBrowse_ViewChange(thvBrowse.View());
  } catch (...) {
    QDK_TRAILER(zInitialize, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void ImageBrowserCtl::zShowMenuBar() { mrgUI.CommandBars()("Menu Bar").Visible(pShowMenuBar && iRuntime); }

void ImageBrowserCtl::Retire() {
  iRetired = true;
  PathChange.DisconnectAll();
  ExitRequest.DisconnectAll();
  InvalidPathChange.DisconnectAll();
  thvBrowse.ThumbnailOpen.DisconnectAll();
  iConnections.clear();
  QDK_RESUME_NEXT(iHelp.reset());
  QDK_RESUME_NEXT(thvBrowse.Clear());
}

// -- Requests of the container ------------------------------------------------------------------------------

void ImageBrowserCtl::UserControl_Resize() {
  try {
    mrgUI.Move(0, 0, UserControl.ScaleWidth(), UserControl.ScaleHeight());
  } catch (...) {
    QDK_TRAILER(UserControl_Resize, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void ImageBrowserCtl::UserControl_Hide() {
  try {
    iHidden = true;
    // Nobody waits for the thumbnails of a closed window. The load that this starts ends the one under way,
    // and is canceled at its start.
    if (iLoading) thvBrowse.Refresh();
  } catch (...) {
    QDK_TRAILER(UserControl_Hide, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void ImageBrowserCtl::UserControl_Show() {
  try {
    iHidden = false;
    if (!std::exchange(iLoadsWhenShown, false)) return;
    thvBrowse.Refresh();
  } catch (...) {
    QDK_TRAILER(UserControl_Show, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void ImageBrowserCtl::UserControl_KeyDown(std::int32_t KeyCode, std::int32_t Shift) {
  try {
    if (KeyCode != kKeyF5 || Shift != 0) return;
    ftvBrowse.FollowDisk();
    thvBrowse.Refresh();
  } catch (...) {
    QDK_TRAILER(UserControl_KeyDown, QDK_PARAMETERS(KeyCode, Shift), QDK_LOCALS());
  }
}

void ImageBrowserCtl::zCancelWhileHidden(bool& Cancel) {
  if (!iHidden) return;
  iLoadsWhenShown = true;
  Cancel = true;
}

void ImageBrowserCtl::mrgUI_ClientAreaChanged() {
  try {
    const Rectangle area = mrgUI.ClientArea();
    pnlBrowse.Move(area.Left, area.Top, area.Width, area.Height);
  } catch (...) {
    QDK_TRAILER(mrgUI_ClientAreaChanged, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

// -- Members ----------------------------------------------------------------------------------------------

void ImageBrowserCtl::ShowMenuBar(bool Value) {
  try {
    if (Value == pShowMenuBar) return;
    pShowMenuBar = Value;
    CallHost(iPlatform.Calls, [this] {
      if (!iRetired) UserControl.PropertyChanged(kShowMenuBar);
    });
    zShowMenuBar();
  } catch (...) {
    QDK_TRAILER(ShowMenuBar, QDK_PARAMETERS(Value), QDK_LOCALS());
  }
}

std::string ImageBrowserCtl::Path() const {
  std::string Result;
  try {
    Result = ftvBrowse.Path();
  } catch (...) {
    QDK_TRAILER(Path, QDK_PARAMETERS(), QDK_LOCALS(Result));
  }
  return Result;
}

void ImageBrowserCtl::Path(const std::string& Value) {
  try {
    ftvBrowse.Path(Value);
  } catch (...) {
    QDK_TRAILER(Path, QDK_PARAMETERS(Value), QDK_LOCALS());
  }
}

void ImageBrowserCtl::DividerPosition(std::int32_t Value) {
  try {
    pnlBrowse.Position(Value);
  } catch (...) {
    QDK_TRAILER(DividerPosition, QDK_PARAMETERS(Value), QDK_LOCALS());
  }
}

void ImageBrowserCtl::SetControls(bool Enabled) {
  std::int32_t Index = 0;
  try {
    mrgUI.Redraw(false);
    for (Index = 1; Index <= mrgUI.Commands().Count(); ++Index) mrgUI.Commands().Item(Index);
    mrgUI.Redraw(true);
  } catch (...) {
    QDK_TRAILER(SetControls, QDK_PARAMETERS(Enabled), QDK_LOCALS(Index));
  }
}

void ImageBrowserCtl::Status(const std::string& Message) {
  try {
    iStatusText = Message;
    zShowStatus(iStatusText);
  } catch (...) {
    QDK_TRAILER(Status, QDK_PARAMETERS(Message), QDK_LOCALS());
  }
}

/// A caption keeps the panel's height.
void ImageBrowserCtl::zShowStatus(const std::string& Text) {
  mrgUI.StatusPanel("pnlStatus").Caption(Text.empty() ? " " : Text);
}

// -- Folders ----------------------------------------------------------------------------------------------

void ImageBrowserCtl::zSetView(const std::string& Path) {
  try {
    thvBrowse.EmptyText(kNoImages);
    thvBrowse.Folder(Path);
    zRaise(PathChange, Path);
  } catch (...) {
    QDK_TRAILER(zSetView, QDK_PARAMETERS(Path), QDK_LOCALS());
  }
}

void ImageBrowserCtl::zResetView(const std::string& Message) {
  try {
    thvBrowse.EmptyText(Message);
    thvBrowse.Clear();
    zRaise(InvalidPathChange);
  } catch (...) {
    QDK_TRAILER(zResetView, QDK_PARAMETERS(Message), QDK_LOCALS());
  }
}

void ImageBrowserCtl::ftvBrowse_FolderClick(const std::string& FolderName) {
  try {
    // A copy: the tree's text may change in a handler of the host.
    zSetView(std::string(FolderName));
  } catch (...) {
    QDK_TRAILER(ftvBrowse_FolderClick, QDK_PARAMETERS(FolderName), QDK_LOCALS());
  }
}

void ImageBrowserCtl::ftvBrowse_DesktopClick() {
  try {
    zResetView(kNoFolder);
  } catch (...) {
    QDK_TRAILER(ftvBrowse_DesktopClick, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void ImageBrowserCtl::ftvBrowse_MyComputerClick() {
  try {
    zResetView(kNoFolder);
  } catch (...) {
    QDK_TRAILER(ftvBrowse_MyComputerClick, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

// -- Diagnostics ------------------------------------------------------------------------------------------

std::string ImageBrowserCtl::qdkDumpModuleVariables() const {
  return QDK_FIELDS(mrgUI, pnlBrowse, ftvBrowse, thvBrowse, pShowMenuBar, iRuntime, iHelp, iStatusText,
                    iHidden, iLoadsWhenShown, iLoading);
}

}  // namespace kestrel
