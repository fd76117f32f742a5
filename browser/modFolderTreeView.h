#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "imaging/contract/FolderTreeImages.h"
#include "imaging/contract/TreeView.h"
#include "imaging/contract/controls/PictureBox.h"

namespace kestrel {

/// A list of drives and folders, one line each, indented by level. The other target of `ListDrives`.
class DriveCombo {
 public:
  virtual ~DriveCombo() = default;
  /// `image` is an index in the image list, counted from 1. Returns the index of the new item.
  virtual std::int32_t Add(const std::string& key, const std::string& text, std::int16_t image,
                           std::int16_t indentation) = 0;
  virtual void Select(std::int32_t item) = 0;
};

/// Turns the drives, special folders and folders of the machine into nodes of a tree.
///
/// A node of a folder has the folder's path as its tag, spelled as on the disk and without a separator at its
/// end, and the path in capitals as its key. Keys are unique: where a folder's capitals are taken, by a
/// folder whose name differs in case only or by the same folder at another place of the tree, the key keeps
/// the case of the path; where that is taken too, separators at its end make it unique. The key of a root "/"
/// is "/". `FindFolder` finds the node of a path, however its key is spelled.
namespace modFolderTreeView {

// Keys of pictures; the first two are those of nodes as well.
using folder_tree_images::kDesktop;
using folder_tree_images::kFolderClosed;
using folder_tree_images::kFolderOpen;
using folder_tree_images::kMyComputer;
using folder_tree_images::kMyDocuments;

/// The text with the suffix added unless it already ends with it.
std::string AddRight(const std::string& Text, const std::string& Suffix);
/// A path with a separator at its end; an empty one stays empty.
std::string WithSeparator(const std::string& Path);
/// Whether the key is that of a node on the drives A: and B:, which are slow and may have no disk.
bool IsOnFloppy(const std::string& Key);
/// A stored text, or a stored number as decimal text; empty for other kinds. Raises RuntimeError 5 if there
/// is no such value.
std::string RegGetValue(std::int32_t Root, const std::string& Key, const std::string& ValueName);
/// The text of the computer's node.
std::string GetMyComputer();
/// The text up to its first NUL, without it.
std::string StripTerminator(const std::string& Text);
/// Gives a name without small letters proper case: "MY PHOTOS" becomes "My Photos".
void CaseIt(std::string& Text);
/// First letter capital, rest small.
std::string SingleUpper(const std::string& Text);

/// The node of a folder or drive, null if it is not listed. Finds a path in any case, unless that would be
/// another folder. Of several nodes of the folder a child of `Above` is preferred.
TreeNode* FindFolder(TreeView& TV, const std::string& Path, const TreeNode* Above = nullptr);
/// The paths of the nodes on the way to a folder, without separators at their ends: its drive, and each
/// folder down to the path itself.
std::vector<std::string> StepsTo(const std::string& Path);
/// Adds one folder as a child of a node, with its first subfolder, unless it is there. A folder with a twin,
/// whose name differs in case only, is shown as it is on the disk, so that they differ on the screen. Raises
/// the tree's errors.
void AddFolder(TreeView& TV, const TreeNode& Above, const std::string& Path, bool DoSelectedImage,
               bool HasTwin = false);
/// Adds the first subfolder of a node's folder, which gives the node its sign to expand.
void AddFirstSubfolder(TreeView& TV, const TreeNode& Node, bool DoSelectedImage);
/// Adds the nodes of the drives, unless they are there. Returns the key of the first fixed drive.
std::string AddDrives(TreeView& TV, ImageList& IL, PictureBox& PB, bool DoSelectedImage, bool CheckForSubDirs,
                      bool RootIsMyComputer);

/// The names of the subfolders of one folder, as they are on the disk.
class SubfolderNames {
 public:
  /// Reads the folder.
  explicit SubfolderNames(const std::string& Folder);

  /// As the file system lists them.
  const std::vector<std::string>& InOrder() const { return inOrder_; }
  /// Whether several names differ from this one in case only.
  bool HasTwin(const std::string& Name) const;

 private:
  std::vector<std::string> inOrder_;
  std::unordered_map<std::string, std::int32_t> spellings_;  ///< by folded name
};

/// Adds the subfolders of one folder as children of its node, each with its own first subfolder. With `Above`
/// they become children of that node.
void ListDirs(TreeView& TV, const std::string& StartDir, bool DoSelectedImage, TreeNode* Above = nullptr);
/// Adds the nodes of the drives and special folders. Returns the key of the first fixed drive. `Path` and
/// `Indentation` are for the combo.
std::string ListDrives(TreeView& TV, ImageList& IL, PictureBox& PB, bool AndDesktopFolders,
                       bool DoSelectedImage, bool CheckForSubDirs, const std::string& Path,
                       std::int16_t Indentation, bool IncludeMyDocuments, bool RootIsMyComputer);
/// Adds an item for each drive, and below the drive of `Path` one for each folder of the path, the last one
/// selected.
std::string ListDrives(DriveCombo& Combo, ImageList& IL, PictureBox& PB, const std::string& Path,
                       std::int16_t Indentation, bool IncludeMyDocuments);
/// Sets the picture of an open folder: for the selected node, or for the expanded one. Null is ignored.
void FormatNode(TreeNode* Node, bool DoSelectedImage);

/// The index in the list of the shell's icon of a path; adds it if needed, drawn on the picture.
std::int16_t FTVRetrieveIcon(const std::string& pFilename, ImageList& IL, PictureBox& PIC);
/// The index of a key in the list, 0 if there is none.
std::int16_t RetrieveIconNumber(const ImageList& IL, const std::string& pTypeName);
/// Draws an icon of a file on the picture; false if there is none.
bool GetIconFromFile(const std::string& Filename, std::int32_t IconIndex, bool UseLargeIcon, PictureBox& PB);

/// `\\SERVER\photos` is "Photos on 'Server'"; empty for a drive that is not of a network.
std::string GetNetPathEx(const std::string& Drive);
/// The network name of a drive, `\\SERVER\photos`.
std::string GetNetPath(const std::string& Drive);
/// The volume label, empty if there is none or the drive is not ready.
std::string GetDriveName(const std::string& RootPath);
/// The name of the first subfolder as it is shown, empty if there is none. `Spelled` gets its name on the
/// disk.
std::string HasSubDirs(const std::string& Folder, std::string* Spelled = nullptr);
/// The folder of the desktop's files; where the shell names none, the one in the Windows folder.
std::string GetDesktopPath();
std::string GetSysPath();
std::string GetWinPath();

}  // namespace modFolderTreeView
}  // namespace kestrel
