#include "FolderTreeView.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "TreeServices.h"
#include "base/Numbers.h"
#include "base/RuntimeError.h"
#include "diagnostics/Trailer.h"
#include "modFolderTreeView.h"

namespace kestrel {
namespace {

namespace tree = modFolderTreeView;

/// The distance of the box for a new folder from the corner of its form, in pixels.
constexpr std::int32_t kBoxOffset = 50;
/// The number of characters of the path in that box.
constexpr std::int32_t kShownPath = 50;

/// The files and icons of the pictures that the tree starts with.
struct StockIcon {
  const char* key;
  bool inWindowsFolder;
  const char* file;
  std::int32_t icon;
};
constexpr StockIcon kStockIcons[] = {
    {tree::kMyComputer, true, "Explorer.exe", 0},   {tree::kDesktop, true, "Explorer.exe", 3},
    {tree::kFolderClosed, false, "Shell32.dll", 3}, {tree::kFolderOpen, false, "Shell32.dll", 4},
    {tree::kMyDocuments, false, "Shell32.dll", 20},
};

/// Sets a flag during its lifetime, and then restores it: a handler of the host may refresh the tree within a
/// refresh.
class Raised {
 public:
  explicit Raised(bool& flag) : flag_(flag), before_(std::exchange(flag, true)) {}
  ~Raised() { flag_ = before_; }
  Raised(const Raised&) = delete;
  Raised& operator=(const Raised&) = delete;

 private:
  bool& flag_;
  bool before_;
};

}  // namespace

FolderTreeView::FolderTreeView(Site& site)
    : iCount(modTollgarthSupport::Counted::kFolderTreeView),
      UserControl(site),
      tvwFolders(Bind<kestrel::TreeView>(site, "tvwFolders")),
      picIcon(Bind<PictureBox>(site, "picIcon")),
      fnoFolders(Bind<FolderNotices>(site, "fnoFolders")) {
  const auto keep = [this](Connection connection) { iConnections.push_back(std::move(connection)); };
  keep(UserControl.InitProperties.Connect([this] { UserControl_InitProperties(); }));
  keep(UserControl.ReadProperties.Connect(
      [this](const PropertyBag& bag) { UserControl_ReadProperties(bag); }));
  keep(UserControl.WriteProperties.Connect([this](PropertyBag& bag) { UserControl_WriteProperties(bag); }));
  keep(UserControl.Resize.Connect([this] { UserControl_Resize(); }));
  keep(UserControl.Show.Connect([this] { UserControl_Show(); }));
  zConnectTree();
  Usercontrol_Initialize();
}

void FolderTreeView::zConnectTree() {
  using Tree = FolderTreeView;
  const auto forward = [this](auto& event, auto handler) {
    iConnections.push_back(
        event.Connect([this, handler](auto&&... arguments) { (this->*handler)(arguments...); }));
  };
  forward(tvwFolders.Click, &Tree::tvwFolders_Click);
  forward(tvwFolders.Collapse, &Tree::tvwFolders_Collapse);
  forward(tvwFolders.DblClick, &Tree::tvwFolders_DblClick);
  forward(tvwFolders.Expand, &Tree::tvwFolders_Expand);
  forward(tvwFolders.MouseDown, &Tree::tvwFolders_MouseDown);
  forward(tvwFolders.MouseMove, &Tree::tvwFolders_MouseMove);
  forward(tvwFolders.MouseUp, &Tree::tvwFolders_MouseUp);
  forward(tvwFolders.KeyDown, &Tree::tvwFolders_KeyDown);
  forward(tvwFolders.KeyPress, &Tree::tvwFolders_KeyPress);
  forward(tvwFolders.KeyUp, &Tree::tvwFolders_KeyUp);
  forward(tvwFolders.NodeCheck, &Tree::tvwFolders_NodeCheck);
  forward(tvwFolders.NodeClick, &Tree::tvwFolders_NodeClick);
  forward(fnoFolders.Changed, &Tree::fnoFolders_Changed);
  forward(fnoFolders.DrivesChanged, &Tree::fnoFolders_DrivesChanged);
}

void FolderTreeView::Usercontrol_Initialize() {
  try {
    picIcon.Visible(false);
    UserControl_Resize();
  } catch (...) {
    QDK_TRAILER(Usercontrol_Initialize, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void FolderTreeView::UserControl_Resize() {
  try {
    tvwFolders.Move(0, 0, UserControl.ScaleWidth(), UserControl.ScaleHeight());
  } catch (...) {
    QDK_TRAILER(UserControl_Resize, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void FolderTreeView::UserControl_Show() {
  try {
    if (iShown) return;
    iShown = true;
    if (pAutoSelect) zRaisePathChange();
  } catch (...) {
    QDK_TRAILER(UserControl_Show, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void FolderTreeView::ForceResize() { UserControl_Resize(); }

void FolderTreeView::zRaisePathChange() {
  try {
    TreeNode* const selected = tvwFolders.SelectedItem();
    if (selected == nullptr) return;
    // A handler of the host may remove it.
    const std::shared_ptr<TreeNode> kept = selected->shared_from_this();
    tvwFolders_NodeClick(*kept);
  } catch (...) {
    QDK_TRAILER(zRaisePathChange, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void FolderTreeView::Refresh() {
  std::string key, folder;
  try {
    if (const TreeNode* const selected = tvwFolders.SelectedItem()) key = selected->Key();
    folder = pPath;
    zLoadImages();
    tvwFolders.Nodes().Clear();
    sMainDrives.clear();
    iGone.clear();
    zAddRoots();
    sDesktop = pIncludeDesktop && UserControl.UserMode() ? tree::GetDesktopPath() : std::string();
    sSelectDrive = tree::ListDrives(tvwFolders, tvwFolders.ImageList(), picIcon,
                                    pIncludeDesktop && UserControl.UserMode(), pActAsBrowseDialog, true, "",
                                    0, pIncludeMyDocuments, pIncludeMyComputer);
    if (UserControl.UserMode()) zSelectFirstDrive();
    // The selected folder may be on a floppy, which must not be read now.
    const Raised locked(pLocked);
    zRestoreSelection(key, folder);
    tvwFolders.Refresh();
    zRaisePathChange();
    zWatchFolders();
  } catch (...) {
    QDK_TRAILER(Refresh, QDK_PARAMETERS(), QDK_LOCALS(key, folder));
  }
}

void FolderTreeView::zLoadImages() {
  const std::string windows = tree::WithSeparator(tree::GetWinPath());
  const std::string system = tree::WithSeparator(tree::GetSysPath());
  for (const StockIcon& stock : kStockIcons) {
    const std::string& folder = stock.inWindowsFolder ? windows : system;
    if (folder.empty()) continue;
    if (tree::GetIconFromFile(folder + stock.file, stock.icon, false, picIcon)) {
      tvwFolders.ImageList().Set(stock.key, picIcon.hWnd());
    }
  }
}

void FolderTreeView::zAddRoots() {
  if (!pIncludeMyComputer) return;
  TreeNodes& nodes = tvwFolders.Nodes();
  std::string above;
  if (pIncludeDesktop) above = nodes.Add("", kTreeLast, tree::kDesktop, "Desktop", tree::kDesktop).Key();
  nodes.Add(above, above.empty() ? kTreeLast : kTreeChild, tree::kMyComputer, tree::GetMyComputer(),
            tree::kMyComputer);
}

void FolderTreeView::zSelectFirstDrive() {
  if (sSelectDrive.empty() || tvwFolders.Nodes().Find(sSelectDrive) == nullptr) return;
  tvwFolders.Nodes().Item(sSelectDrive).Selected(true);
  tvwFolders.Nodes().Item(sSelectDrive).Expanded(true);
  sMainDrives = {sSelectDrive};
}

void FolderTreeView::zRestoreSelection(const std::string& Key, const std::string& Folder) {
  if (!Folder.empty()) {
    Path(Folder);
  } else if (TreeNode* const node = Key.empty() ? nullptr : tvwFolders.Nodes().Find(Key)) {
    node->Selected(true);
    tvwFolders.Nodes().Item(Key).EnsureVisible();
  }
}

void FolderTreeView::Path(const std::string& Value) {
  std::string folder, selected;
  TreeNode* node = nullptr;
  try {
    folder = tree::WithSeparator(Value);
    // To resolve a path is to read its drive.
    if (!pLocked || !tree::IsOnFloppy(UpperCase(folder))) {
      folder = tree::WithSeparator(modProcessing::FileHelpers().ResolvePath(folder));
    }
    if (folder.empty()) return;
    iPathSet = true;
    for (const std::string& step : tree::StepsTo(folder)) {
      TreeNode* const above = selected.empty() ? nullptr : tvwFolders.Nodes().Find(selected);
      node = tree::FindFolder(tvwFolders, step, above);
      if (node == nullptr && above != nullptr) node = zHiddenFolder(*above, step);
      if (node == nullptr) continue;
      selected = node->Key();
      if (node->Children() > 0) node->Expanded(true);
      // A handler of the host may have rebuilt the tree.
      node = tvwFolders.Nodes().Find(selected);
      if (node != nullptr) node->EnsureVisible();
    }
    node = selected.empty() ? nullptr : tvwFolders.Nodes().Find(selected);
    if (node != nullptr) node->Selected(true);
  } catch (...) {
    QDK_TRAILER(Path, QDK_PARAMETERS(Value), QDK_LOCALS(folder, selected, node));
  }
}

/// Adds the node of a folder that exists although the shell does not list it, since it is hidden. Null for a
/// folder that is only newer than the tree, and for one on a floppy that must not be read now.
TreeNode* FolderTreeView::zHiddenFolder(TreeNode& Above, const std::string& Folder) {
  if (pLocked && tree::IsOnFloppy(UpperCase(Folder))) return nullptr;
  const std::string parent = tree::WithSeparator(Above.Tag());
  if (parent.empty() || !Folder.starts_with(parent)) return nullptr;
  const std::string name = Folder.substr(parent.size());
  if (name.find(tree::Separator()) != std::string::npos) return nullptr;
  if (!modProcessing::FormUtility().FileExists(Folder)) return nullptr;
  const std::vector<FolderEntry> listed = tree::Shell().Entries(parent);
  if (std::ranges::any_of(listed, [&](const FolderEntry& entry) { return entry.Name == name; })) {
    return nullptr;
  }
  QDK_RESUME_NEXT(tree::AddFolder(tvwFolders, Above, Folder, pActAsBrowseDialog));
  return tree::FindFolder(tvwFolders, Folder, &Above);
}

std::string FolderTreeView::NewFolder(Form* ParentForm) {
  std::string Result, ReturnFolder;
  bool Cancel = false;
  try {
    AskForNewFolder(ReturnFolder, Cancel);
    if (Cancel) return Result;
    if (ReturnFolder.empty()) ReturnFolder = zAskUserForFolder(ParentForm);
  } catch (...) {
    QDK_TRAILER(NewFolder, QDK_PARAMETERS(ParentForm), QDK_LOCALS(Result, ReturnFolder, Cancel));
    return Result;
  }
  if (ReturnFolder.empty()) return Result;
  const bool inside = ReturnFolder.find(tree::Separator()) == std::string::npos;
  if (inside && pPath.empty()) zRaiseError(*this, err::kPathNotFound, "No folder is selected.");
  Result = pPath + ReturnFolder;
  try {
    tree::Shell().CreateFolder(inside ? Result : ReturnFolder);
  } catch (const RuntimeError& error) {
    zRaiseError(*this, error.Number(), error.Description());
  }
  return Result;
}

std::string FolderTreeView::zAskUserForFolder(const Form* ParentForm) {
  kestrel::Platform& platform = modProcessing::Platform();
  const std::string shown = platform.FileHelpers().CompactPath(pPath, kShownPath, tree::Separator());
  const std::string prompt = "Current Folder:\r" + shown + "\r\rPlease enter the new folder name:";
  if (ParentForm == nullptr) return platform.UserInterface().InputBox(prompt, "New Folder");
  const Screen& screen = platform.Screen();
  const Point place{ParentForm->Left() + kBoxOffset * screen.TwipsPerPixelX(),
                    ParentForm->Top() + kBoxOffset * screen.TwipsPerPixelY()};
  return platform.UserInterface().InputBox(prompt, "New Folder", "", &place, ParentForm->hWnd());
}

std::string FolderTreeView::qdkDumpModuleVariables() const {
  return QDK_FIELDS(pActAsBrowseDialog, pIncludeDesktop, pIncludeMyDocuments, pIncludeMyComputer, pPath,
                    sMainDrives, sSelectDrive, pLocked, MX, MY, iPathSet, pAutoSelect, iShown, sDesktop,
                    iGone);
}

}  // namespace kestrel
