#pragma once

#include <cstdint>
#include <string>
#include <unordered_set>
#include <vector>

#include "base/Event.h"
#include "base/Object.h"
#include "diagnostics/modTollgarthSupport.h"
#include "imaging/contract/FolderNotices.h"
#include "imaging/contract/Form.h"
#include "imaging/contract/Site.h"
#include "imaging/contract/TreeView.h"
#include "imaging/contract/controls/PictureBox.h"

namespace kestrel {

/// Shows the drives and folders of the machine in a tree, and announces which folder is selected. Folders are
/// listed when their nodes are expanded. modFolderTreeView.h describes the nodes.
///
/// At run time the nodes follow the disk where the platform notices changes, and without events: folders and
/// drives that are new get nodes, and those that are gone lose them. The selected folder keeps its node until
/// another one is selected; when it, or a folder above it, gets another name, it is selected by that name,
/// with the events of a selection.
class FolderTreeView final : public Object {
 public:
  /// The site must contain the tree "tvwFolders", the picture "picIcon", on which icons are drawn, and the
  /// notices "fnoFolders".
  explicit FolderTreeView(Site& site);

  std::string TypeName() const override { return "FolderTreeView"; }

  /// The selected folder, with a separator at its end; empty while the selected node is no folder.
  std::string Path() const { return pPath; }
  /// Expands the listed nodes on the way to the folder and selects the last one. A folder that is not listed
  /// leaves its nearest listed parent selected; a folder that the shell hides is added. An empty path does
  /// nothing.
  void Path(const std::string& Value);

  /// Whether the selected node is announced when the control is first shown.
  bool AutoSelect() const { return pAutoSelect; }
  void AutoSelect(bool Value);
  /// These four rebuild the tree.
  bool IncludeDesktop() const { return pIncludeDesktop; }
  void IncludeDesktop(bool Value);
  bool IncludeMyDocuments() const { return pIncludeMyDocuments; }
  void IncludeMyDocuments(bool Value);
  bool IncludeMyComputer() const { return pIncludeMyComputer; }
  void IncludeMyComputer(bool Value);
  /// Returns or sets if the control acts as a browse dialog: a folder is shown open when it is selected,
  /// otherwise when it is expanded.
  bool ActAsBrowseDialog() const { return pActAsBrowseDialog; }
  void ActAsBrowseDialog(bool Value);

  TreeNodes& Nodes() { return tvwFolders.Nodes(); }
  kestrel::TreeView& TreeView() { return tvwFolders; }
  WindowHandle hWnd() const { return tvwFolders.hWnd(); }

  // The tree's own properties.
  /// Returns or sets the border style of the control.
  std::int32_t BorderStyle() const { return tvwFolders.BorderStyle(); }
  /// Raises RuntimeError 380 for values other than 0 and 1.
  void BorderStyle(std::int32_t Value);
  /// Returns or sets if checkboxes are displayed to the left of each node image.
  bool Checkboxes() const { return tvwFolders.Checkboxes(); }
  void Checkboxes(bool Value);
  /// Returns or sets if the control can accept user generated events.
  bool Enabled() const { return tvwFolders.Enabled(); }
  void Enabled(bool Value);
  /// Returns or sets the default font used to display text in a control
  std::string Font() const { return tvwFolders.Font(); }
  /// Raises RuntimeError 380 for an empty text.
  void Font(const std::string& Value);
  /// Returns or sets if text continues to look highlighted even if the control does not have the focus.
  bool HideSelection() const { return tvwFolders.HideSelection(); }
  void HideSelection(bool Value);
  /// Returns or sets the gap between node joins and images.
  float Indentation() const { return tvwFolders.Indentation(); }
  void Indentation(float Value);
  /// Returns or sets if root nodes can be expanded or collapsed.
  std::int32_t LineStyle() const { return tvwFolders.LineStyle(); }
  /// Raises RuntimeError 380 for values other than 0 and 1.
  void LineStyle(std::int32_t Value);
  /// Returns or sets single selection.
  bool SingleSel() const { return tvwFolders.SingleSel(); }
  void SingleSel(bool Value);
  std::int32_t Style() const { return tvwFolders.Style(); }
  /// Raises RuntimeError 380 for values outside of 0 to 7.
  void Style(std::int32_t Value);

  /// Builds the tree anew and selects the same folder, without reading a floppy.
  void Refresh();
  /// Compares the nodes with the disk, for changes that were not noticed. Drives are compared too. Selection
  /// and expansion stay; a floppy is not read.
  void FollowDisk();
  /// Asks for a name, of the host by `AskForNewFolder` or else of the user, and creates that folder. Returns
  /// its path, empty if canceled. The tree shows it when it follows the disk, or after `Refresh`. The box is
  /// placed at the form's corner. Raises the RuntimeError of a failed creation.
  std::string NewFolder(Form* ParentForm = nullptr);
  /// Fits the tree into the control.
  void ForceResize();

  /// Occurs when the control is clicked.
  Event<> Click;
  /// Generated when any Node object in a asxFolderTreeView control is collapsed.
  Event<TreeNode&> Collapse;
  /// Occurs when the control is double clicked.
  Event<> DblClick;
  Event<TreeNode&> Expand;
  Event<std::int32_t, std::int32_t, float, float> MouseDown;
  Event<std::int32_t, std::int32_t, float, float> MouseMove;
  Event<std::int32_t, std::int32_t, float, float> MouseUp;
  Event<std::int32_t, std::int32_t> KeyDown;
  Event<std::int32_t> KeyPress;
  Event<std::int32_t, std::int32_t> KeyUp;
  Event<TreeNode&> NodeCheck;
  Event<TreeNode&> NodeClick;
  Event<> MyComputerClick;
  Event<> MyComputerDblClick;
  Event<> MyComputerRightClick;
  Event<> DesktopClick;
  Event<> DesktopDblClick;
  Event<> DesktopRightClick;
  /// The folder with a separator at its end.
  Event<const std::string&> FolderClick;
  /// The folder without a separator at its end, as are those of `FolderRightClick`.
  Event<const std::string&> FolderDblClick;
  Event<const std::string&> FolderRightClick;
  /// The name of a new folder, to be set by the host, and whether to cancel.
  Event<std::string&, bool&> AskForNewFolder;

 private:
  void Usercontrol_Initialize();
  void UserControl_InitProperties();
  void UserControl_ReadProperties(const PropertyBag& PropBag);
  void UserControl_WriteProperties(PropertyBag& PropBag);
  void UserControl_Resize();
  void UserControl_Show();
  void zConnectTree();
  void zInclude(bool& Field, bool Value, const std::string& Name);
  template <typename Type, typename Write>
  void zPass(const Type& Present, const Type& Value, const std::string& Name, Write Set);
  void zLoadImages();
  void zAddRoots();
  void zSelectFirstDrive();
  void zRestoreSelection(const std::string& Key, const std::string& Folder);
  TreeNode* zHiddenFolder(TreeNode& Above, const std::string& Folder);
  void zRaisePathChange();
  std::string zAskUserForFolder(const Form* ParentForm);
  /// Raises an error in the name of an object. In the description "%1" is the first parameter. The number 0
  /// raises the current error again.
  [[noreturn]] static void zRaiseError(const Object& Source, std::int32_t Number, std::string Description,
                                       const std::vector<std::string>& Parameters = {});
  struct Difference;
  void fnoFolders_Changed(const std::vector<std::string>& Folders,
                          const std::vector<FolderRenaming>& Renamed);
  void fnoFolders_DrivesChanged();
  void zFollow(const std::vector<std::string>& Keys);
  std::unordered_set<std::string> zFollowDrives();
  Difference zCompare(const TreeNode& Node, const std::vector<TreeNode*>& Children) const;
  void zAddFresh(const Difference& Found);
  void zRemove(std::vector<std::string> Keys);
  void zRemoveGone();
  void zSelectRenamed(const FolderRenaming& Renaming);
  void zWatchFolders();
  std::string zFolderOf(const TreeNode& Node) const;
  bool zIsListed(const std::string& Key) const;
  void zCheckRange(std::int32_t Value, std::int32_t Largest) const;

  void tvwFolders_Click();
  void tvwFolders_Collapse(TreeNode& Node);
  void tvwFolders_DblClick();
  void tvwFolders_Expand(TreeNode& Node);
  void tvwFolders_MouseDown(std::int32_t Button, std::int32_t Shift, float X, float Y);
  void tvwFolders_MouseMove(std::int32_t Button, std::int32_t Shift, float X, float Y);
  void tvwFolders_MouseUp(std::int32_t Button, std::int32_t Shift, float X, float Y);
  void tvwFolders_KeyDown(std::int32_t KeyCode, std::int32_t Shift);
  void tvwFolders_KeyPress(std::int32_t KeyAscii);
  void tvwFolders_KeyUp(std::int32_t KeyCode, std::int32_t Shift);
  void tvwFolders_NodeCheck(TreeNode& Node);
  void tvwFolders_NodeClick(TreeNode& Node);
  static void zRaiseByKind(std::string Key, std::string Folder, const Event<>& Computer,
                           const Event<>& Desktop, const Event<const std::string&>& FolderEvent);

  std::string qdkDumpModuleVariables() const;

  InstanceCount iCount;
  Site& UserControl;
  kestrel::TreeView& tvwFolders;
  PictureBox& picIcon;
  FolderNotices& fnoFolders;

  bool pActAsBrowseDialog = true;
  bool pIncludeDesktop = true;
  bool pIncludeMyDocuments = true;
  bool pIncludeMyComputer = true;
  std::string pPath;
  std::vector<std::string> sMainDrives;
  std::string sSelectDrive;
  bool pLocked = false;
  float MX = 0;
  float MY = 0;
  bool iPathSet = false;
  bool pAutoSelect = true;
  bool iShown = false;
  std::string sDesktop;            ///< the folder of the Desktop's nodes; empty while they are not shown
  std::vector<std::string> iGone;  ///< keys of nodes without a folder, kept for the selection
  std::vector<Connection> iConnections;
};

}  // namespace kestrel
