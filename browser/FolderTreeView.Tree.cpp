#include <algorithm>
#include <memory>
#include <string>

#include "FolderTreeView.h"
#include "RedrawPause.h"
#include "diagnostics/Trailer.h"
#include "modFolderTreeView.h"
#include "settings/modProcessing.h"

namespace kestrel {
namespace {

namespace tree = modFolderTreeView;

}  // namespace

void FolderTreeView::tvwFolders_NodeClick(TreeNode& Node) {
  std::string key;
  try {
    key = Node.Key();
    if (tree::IsOnFloppy(key) && !pLocked) {
      modProcessing::FormUtility().SetPointer(kBusyArrowHourglass);
      tree::ListDirs(tvwFolders, Node.Tag(), pActAsBrowseDialog, &Node);
      modProcessing::FormUtility().SetPointer(kBusyDefault);
    }
    pPath = tree::WithSeparator(Node.Tag());
    zRaiseByKind(key, pPath, MyComputerClick, DesktopClick, FolderClick);
    // A handler of the host may have rebuilt the tree, and one of the next event may do so.
    if (TreeNode* const node = tvwFolders.Nodes().Find(key)) {
      const std::shared_ptr<TreeNode> kept = node->shared_from_this();
      NodeClick(*kept);
    }
    zRemoveGone();
    zWatchFolders();
  } catch (...) {
    QDK_TRAILER(tvwFolders_NodeClick, QDK_PARAMETERS(Node), QDK_LOCALS(key));
  }
}

void FolderTreeView::tvwFolders_Expand(TreeNode& Node) {
  std::string key;
  TreeNode* node = nullptr;
  try {
    key = Node.Key();
    Expand(Node);
    node = tvwFolders.Nodes().Find(key);
    if (node == nullptr || key == tree::kDesktop || node->Child() == nullptr) return;
    if (std::ranges::find(sMainDrives, key) != sMainDrives.end()) return;
    QDK_RESUME_NEXT(modProcessing::FormUtility().SetPointer(kBusyHourglass));
    {
      const RedrawPause pause(tvwFolders);
      QDK_RESUME_NEXT(node->Sorted(true));
      QDK_RESUME_NEXT(tree::ListDirs(tvwFolders, node->Tag(), pActAsBrowseDialog, node));
      sMainDrives.push_back(key);
    }
    QDK_RESUME_NEXT(modProcessing::FormUtility().SetPointer(kBusyDefault));
    zWatchFolders();
  } catch (...) {
    QDK_TRAILER(tvwFolders_Expand, QDK_PARAMETERS(Node), QDK_LOCALS(key, node));
  }
}

void FolderTreeView::tvwFolders_DblClick() {
  try {
    if (const TreeNode* const node = tvwFolders.HitTest(MX, MY)) {
      zRaiseByKind(node->Key(), node->Tag(), MyComputerDblClick, DesktopDblClick, FolderDblClick);
    }
    DblClick();
  } catch (...) {
    QDK_TRAILER(tvwFolders_DblClick, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void FolderTreeView::tvwFolders_Click() {
  try {
    Click();
  } catch (...) {
    QDK_TRAILER(tvwFolders_Click, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void FolderTreeView::tvwFolders_Collapse(TreeNode& Node) {
  try {
    Collapse(Node);
  } catch (...) {
    QDK_TRAILER(tvwFolders_Collapse, QDK_PARAMETERS(Node), QDK_LOCALS());
  }
}

void FolderTreeView::tvwFolders_NodeCheck(TreeNode& Node) {
  try {
    NodeCheck(Node);
  } catch (...) {
    QDK_TRAILER(tvwFolders_NodeCheck, QDK_PARAMETERS(Node), QDK_LOCALS());
  }
}

void FolderTreeView::tvwFolders_KeyDown(std::int32_t KeyCode, std::int32_t Shift) {
  try {
    KeyDown(KeyCode, Shift);
  } catch (...) {
    QDK_TRAILER(tvwFolders_KeyDown, QDK_PARAMETERS(KeyCode, Shift), QDK_LOCALS());
  }
}

void FolderTreeView::tvwFolders_KeyPress(std::int32_t KeyAscii) {
  try {
    KeyPress(KeyAscii);
  } catch (...) {
    QDK_TRAILER(tvwFolders_KeyPress, QDK_PARAMETERS(KeyAscii), QDK_LOCALS());
  }
}

void FolderTreeView::tvwFolders_KeyUp(std::int32_t KeyCode, std::int32_t Shift) {
  try {
    KeyUp(KeyCode, Shift);
  } catch (...) {
    QDK_TRAILER(tvwFolders_KeyUp, QDK_PARAMETERS(KeyCode, Shift), QDK_LOCALS());
  }
}

void FolderTreeView::tvwFolders_MouseMove(std::int32_t Button, std::int32_t Shift, float X, float Y) {
  try {
    MouseMove(Button, Shift, X, Y);
  } catch (...) {
    QDK_TRAILER(tvwFolders_MouseMove, QDK_PARAMETERS(Button, Shift, X, Y), QDK_LOCALS());
  }
}

void FolderTreeView::tvwFolders_MouseDown(std::int32_t Button, std::int32_t Shift, float X, float Y) {
  try {
    MX = X;
    MY = Y;
    MouseDown(Button, Shift, X, Y);
  } catch (...) {
    QDK_TRAILER(tvwFolders_MouseDown, QDK_PARAMETERS(Button, Shift, X, Y), QDK_LOCALS());
  }
}

void FolderTreeView::tvwFolders_MouseUp(std::int32_t Button, std::int32_t Shift, float X, float Y) {
  try {
    MouseUp(Button, Shift, X, Y);
    if (Button != kRightButton) return;
    if (const TreeNode* const node = tvwFolders.HitTest(X, Y)) {
      zRaiseByKind(node->Key(), node->Tag(), MyComputerRightClick, DesktopRightClick, FolderRightClick);
    }
  } catch (...) {
    QDK_TRAILER(tvwFolders_MouseUp, QDK_PARAMETERS(Button, Shift, X, Y), QDK_LOCALS());
  }
}

/// The arguments are copies, since a handler of the host may change the path or rebuild the tree.
void FolderTreeView::zRaiseByKind(std::string Key, std::string Folder, const Event<>& Computer,
                                  const Event<>& Desktop, const Event<const std::string&>& FolderEvent) {
  if (Key == tree::kMyComputer) {
    Computer();
  } else if (Key == tree::kDesktop) {
    Desktop();
  } else {
    FolderEvent(Folder);
  }
}

}  // namespace kestrel
