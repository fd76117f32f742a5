#include <algorithm>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "FolderTreeView.h"
#include "RedrawPause.h"
#include "TreeServices.h"
#include "base/Numbers.h"
#include "diagnostics/Trailer.h"
#include "modFolderTreeView.h"

namespace kestrel {
namespace {

namespace tree = modFolderTreeView;

/// A limit, since each watched folder takes memory of the system, of which all programs of the user have a
/// share.
constexpr std::size_t kMostWatched = 1000;

using Children = std::unordered_map<std::string, std::vector<TreeNode*>>;

/// The children of all nodes, by the keys of the nodes.
Children ChildrenOf(TreeNodes& nodes) {
  Children children;
  for (std::int32_t i = 1; i <= nodes.Count(); ++i) {
    TreeNode& node = nodes.Item(i);
    if (TreeNode* const parent = node.Parent()) children[parent->Key()].push_back(&node);
  }
  return children;
}

bool Exists(const std::string& path) { return modProcessing::FormUtility().FileExists(path); }

/// Whether a path is that of a direct subfolder.
bool IsIn(const std::string& path, const std::string& folder) {
  return path.size() > folder.size() && path.starts_with(folder) &&
         path.find(tree::Separator(), folder.size()) == std::string::npos;
}

}  // namespace

/// How a node differs from its folder.
struct FolderTreeView::Difference {
  std::string Key;
  bool Listed = false;
  std::vector<std::string> Gone;   ///< keys of children
  std::vector<std::string> Fresh;  ///< paths without a node; only of a folder that was listed
  std::vector<std::string> Twins;  ///< those of them whose names differ from another in case only
};

void FolderTreeView::FollowDisk() {
  std::vector<std::string> keys;
  try {
    const std::unordered_set<std::string> drives = zFollowDrives();
    for (std::int32_t i = 1; i <= tvwFolders.Nodes().Count(); ++i) {
      const TreeNode& node = tvwFolders.Nodes().Item(i);
      // A drive that was never listed may have to start, or be a network that does not answer.
      const bool sleeps = !zIsListed(node.Key()) && drives.contains(tree::WithSeparator(node.Tag()));
      if (!sleeps) keys.push_back(node.Key());
    }
    zFollow(keys);
  } catch (...) {
    QDK_TRAILER(FollowDisk, QDK_PARAMETERS(), QDK_LOCALS(keys));
  }
}

void FolderTreeView::fnoFolders_DrivesChanged() {
  try {
    zFollowDrives();
    zWatchFolders();
  } catch (...) {
    QDK_TRAILER(fnoFolders_DrivesChanged, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void FolderTreeView::fnoFolders_Changed(const std::vector<std::string>& Folders,
                                        const std::vector<FolderRenaming>& Renamed) {
  std::vector<std::string> keys;
  try {
    const std::unordered_set<std::string> changed(Folders.begin(), Folders.end());
    for (std::int32_t i = 1; i <= tvwFolders.Nodes().Count(); ++i) {
      const TreeNode& node = tvwFolders.Nodes().Item(i);
      if (changed.contains(zFolderOf(node))) keys.push_back(node.Key());
    }
    zFollow(keys);
    for (const FolderRenaming& renaming : Renamed) zSelectRenamed(renaming);
  } catch (...) {
    QDK_TRAILER(fnoFolders_Changed, QDK_PARAMETERS(Folders, Renamed), QDK_LOCALS(keys));
  }
}

/// Selects the selected folder by its new path, if the renamed folder is it or above it.
void FolderTreeView::zSelectRenamed(const FolderRenaming& Renaming) {
  const std::string from = tree::WithSeparator(Renaming.From);
  if (pPath.starts_with(from)) Path(tree::WithSeparator(Renaming.To) + pPath.substr(from.size()));
}

/// The folder whose subfolders are a node's children. Empty for none, and for one on a floppy, which is read
/// only by a click.
std::string FolderTreeView::zFolderOf(const TreeNode& Node) const {
  if (Node.Key() == tree::kDesktop) return sDesktop;
  return tree::IsOnFloppy(Node.Key()) ? std::string() : Node.Tag();
}

bool FolderTreeView::zIsListed(const std::string& Key) const {
  return Key == tree::kDesktop || std::ranges::find(sMainDrives, Key) != sMainDrives.end();
}

/// Brings the children of these nodes in line with the disk. First nodes are removed: a folder that has got
/// other capitals shall have its key free.
void FolderTreeView::zFollow(const std::vector<std::string>& Keys) {
  std::vector<Difference> differences;
  std::vector<std::string> gone;
  Children children = ChildrenOf(tvwFolders.Nodes());
  for (const std::string& key : Keys) {
    const TreeNode* const node = tvwFolders.Nodes().Find(key);
    if (node == nullptr) continue;
    QDK_RESUME_NEXT(differences.push_back(zCompare(*node, children[key])));
  }
  for (const Difference& difference : differences) {
    gone.insert(gone.end(), difference.Gone.begin(), difference.Gone.end());
  }
  {
    const RedrawPause pause(tvwFolders);
    zRemove(std::move(gone));
    for (const Difference& difference : differences) zAddFresh(difference);
  }
  zWatchFolders();
}

FolderTreeView::Difference FolderTreeView::zCompare(const TreeNode& Node,
                                                    const std::vector<TreeNode*>& Children) const {
  Difference difference{Node.Key(), zIsListed(Node.Key()), {}, {}, {}};
  const std::string folder = tree::WithSeparator(zFolderOf(Node));
  if (folder.empty()) return difference;
  if (!difference.Listed) {
    for (const TreeNode* const child : Children) {
      if (!Exists(child->Tag())) difference.Gone.push_back(child->Key());
    }
    return difference;
  }
  // What is below a folder that is gone goes with it.
  if (!Exists(folder)) return difference;
  const tree::SubfolderNames names(folder);
  std::unordered_set<std::string> fresh;
  for (const std::string& name : names.InOrder()) fresh.insert(folder + name);
  for (TreeNode* const child : Children) {
    const std::string path = child->Tag();
    if (!IsIn(path, folder)) continue;
    const bool listed = fresh.erase(path) > 0;
    // A hidden folder has a node, but is not listed. One that is listed by other capitals gets a new node.
    const auto isRespelled = [&](const std::string& other) { return EqualIgnoringCase(other, path); };
    if (!listed && (!Exists(path) || std::ranges::any_of(fresh, isRespelled))) {
      difference.Gone.push_back(child->Key());
    }
    if (names.HasTwin(tree::LastPart(path))) child->Text(tree::LastPart(path));
  }
  for (const std::string& name : names.InOrder()) {
    if (!fresh.contains(folder + name)) continue;
    (names.HasTwin(name) ? difference.Twins : difference.Fresh).push_back(folder + name);
  }
  return difference;
}

void FolderTreeView::zAddFresh(const Difference& Found) {
  TreeNode* const node = tvwFolders.Nodes().Find(Found.Key);
  if (node == nullptr || zFolderOf(*node).empty()) return;
  if (!Found.Listed) {
    if (node->Child() == nullptr) {
      QDK_RESUME_NEXT(tree::AddFirstSubfolder(tvwFolders, *node, pActAsBrowseDialog));
    }
    return;
  }
  for (const std::string& path : Found.Fresh) {
    QDK_RESUME_NEXT(tree::AddFolder(tvwFolders, *node, path, pActAsBrowseDialog));
  }
  for (const std::string& path : Found.Twins) {
    QDK_RESUME_NEXT(tree::AddFolder(tvwFolders, *node, path, pActAsBrowseDialog, true));
  }
}

/// Adds drives that are new, and removes those that are gone. Returns the roots of all drives.
std::unordered_set<std::string> FolderTreeView::zFollowDrives() {
  std::unordered_set<std::string> present;
  std::vector<std::string> gone;
  for (const std::string& root : tree::Shell().LogicalDrives()) present.insert(tree::WithSeparator(root));
  TreeNodes& nodes = tvwFolders.Nodes();
  const TreeNode* const above = pIncludeMyComputer ? nodes.Find(tree::kMyComputer) : nullptr;
  for (std::int32_t i = 1; i <= nodes.Count(); ++i) {
    TreeNode& node = nodes.Item(i);
    if (node.Parent() != above || node.Tag().empty()) continue;
    if (!present.contains(tree::WithSeparator(node.Tag()))) gone.push_back(node.Key());
  }
  const RedrawPause pause(tvwFolders);
  zRemove(std::move(gone));
  tree::AddDrives(tvwFolders, tvwFolders.ImageList(), picIcon, pActAsBrowseDialog, true, pIncludeMyComputer);
  return present;
}

/// Removes nodes. Those with the selection below them stay until another node is selected.
void FolderTreeView::zRemove(std::vector<std::string> Keys) {
  if (Keys.empty()) return;
  std::unordered_set<std::string> kept;
  for (TreeNode* node = tvwFolders.SelectedItem(); node != nullptr; node = node->Parent()) {
    kept.insert(node->Key());
  }
  const auto rest = std::stable_partition(Keys.begin(), Keys.end(),
                                          [&](const std::string& key) { return !kept.contains(key); });
  for (auto key = rest; key != Keys.end(); ++key) {
    if (std::ranges::find(iGone, *key) == iGone.end()) iGone.push_back(*key);
  }
  Keys.erase(rest, Keys.end());
  tvwFolders.Nodes().Remove(Keys);
  std::erase_if(sMainDrives,
                [this](const std::string& key) { return tvwFolders.Nodes().Find(key) == nullptr; });
}

/// Removes what was kept for the selection of before.
void FolderTreeView::zRemoveGone() {
  if (iGone.empty()) return;
  std::vector<std::string> keys = std::exchange(iGone, {});
  std::erase_if(keys, [this](const std::string& key) {
    const TreeNode* const node = tvwFolders.Nodes().Find(key);
    return node == nullptr || Exists(node->Tag());
  });
  zRemove(std::move(keys));
}

/// Watches the folders that were listed, then those that may get a first subfolder.
void FolderTreeView::zWatchFolders() {
  std::vector<std::string> folders;
  if (UserControl.UserMode()) {
    TreeNodes& nodes = tvwFolders.Nodes();
    const auto add = [&](const TreeNode* node) {
      const std::string folder = node == nullptr ? std::string() : zFolderOf(*node);
      if (!folder.empty()) folders.push_back(folder);
    };
    const std::unordered_set<std::string> listed(sMainDrives.begin(), sMainDrives.end());
    const auto isInListed = [&](TreeNode& node) {
      TreeNode* const parent = node.Parent();
      return parent != nullptr && listed.contains(parent->Key()) && !parent->Tag().empty();
    };
    add(nodes.Find(tree::kDesktop));
    for (const std::string& key : sMainDrives) add(nodes.Find(key));
    // A disk may have to start for a drive that is not selected.
    TreeNode* const selected = tvwFolders.SelectedItem();
    if (selected != nullptr && !isInListed(*selected)) add(selected);
    for (std::int32_t i = 1; i <= nodes.Count() && folders.size() < kMostWatched; ++i) {
      if (isInListed(nodes.Item(i))) add(&nodes.Item(i));
    }
  }
  fnoFolders.Folders(folders);
}

}  // namespace kestrel
