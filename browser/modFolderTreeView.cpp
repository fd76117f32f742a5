#include "modFolderTreeView.h"

#include <algorithm>
#include <vector>

#include "TreeServices.h"
#include "base/CaseFolding.h"
#include "base/Numbers.h"
#include "base/RuntimeError.h"
#include "diagnostics/Trailer.h"

namespace kestrel::modFolderTreeView {
namespace {

/// The path without separators at its end. A root "/" stays.
std::string WithoutSeparators(std::string path) {
  const std::string separator = Separator();
  while (path.size() > separator.size() && path.ends_with(separator))
    path.resize(path.size() - separator.size());
  return path;
}

/// The key that a folder's node has if `taken` keys that it would have had are in use.
std::string KeyOf(const std::string& path, std::int32_t taken) {
  if (taken == 0) return UpperCase(path);
  std::string key = path;
  for (std::int32_t i = 1; i < taken; ++i) key += Separator();
  return key;
}

/// Whether two spellings name different folders of a file system that distinguishes case. Folders that do not
/// exist are not different.
bool AreDifferentFolders(const std::string& one, const std::string& other) {
  if (one == other) return false;
  kestrel::FileHelpers& files = modProcessing::FileHelpers();
  return modProcessing::FormUtility().FileExists(one) && files.ResolvePath(one) != files.ResolvePath(other);
}

/// Adds a node for a folder or drive under the first free key. Null if it is there already.
TreeNode* AddNode(TreeView& TV, const TreeNode* above, const std::string& path, const std::string& text,
                  const std::string& image) {
  TreeNodes& nodes = TV.Nodes();
  std::string key = KeyOf(path, 0);
  for (std::int32_t taken = 1; TreeNode* const node = nodes.Find(key); ++taken) {
    if (node->Tag() == path && node->Parent() == above) return nullptr;
    key = KeyOf(path, taken);
  }
  TreeNode& added = above == nullptr ? nodes.Add("", kTreeLast, key, text, image)
                                     : nodes.Add(above->Key(), kTreeChild, key, text, image);
  added.Tag(path);
  return &added;
}

/// Adds a node for a subfolder. Null if it is there already.
TreeNode* AddSubfolder(TreeView& TV, const TreeNode& Above, const std::string& Path, const std::string& Text,
                       bool DoSelectedImage) {
  TreeNode* const added = AddNode(TV, &Above, Path, Text, kFolderClosed);
  FormatNode(added, DoSelectedImage);
  return added;
}

/// What is shown of one drive.
struct DriveEntry {
  std::string name;  ///< the root without a separator at its end
  std::string label;
  bool probe = false;  ///< whether its first subfolder is looked up
  bool fixed = false;
};

DriveEntry DescribeDrive(const std::string& root, bool CheckForSubDirs) {
  DriveEntry drive;
  drive.name = WithoutSeparators(root);
  const std::string inParentheses = "(" + drive.name + ")";
  switch (Shell().DriveType(root)) {
    case kDriveNoRoot:
    case kDriveFixed:
      drive.label = GetDriveName(root) + " " + inParentheses;
      drive.probe = CheckForSubDirs;
      drive.fixed = true;
      break;
    case kDriveRemovable: {
      // A floppy is read only when the user selects it.
      const bool floppy = IsOnFloppy(UpperCase(drive.name));
      drive.label = (floppy ? "Floppy " : "Removable ") + inParentheses;
      drive.probe = !floppy;
      break;
    }
    case kDriveRemote:
      drive.label = GetNetPathEx(drive.name) + " " + inParentheses;
      drive.probe = CheckForSubDirs;
      break;
    case kDriveCD:
      drive.label = GetDriveName(root) + " " + inParentheses;
      drive.probe = CheckForSubDirs;
      break;
    default:
      drive.label = inParentheses;
      break;
  }
  return drive;
}

void AddDrive(TreeView& TV, ImageList& IL, PictureBox& PB, TreeNode* Above, const std::string& root,
              const DriveEntry& drive, bool DoSelectedImage) {
  const std::int16_t image = FTVRetrieveIcon(root, IL, PB);
  TreeNode* const node =
      AddNode(TV, Above, drive.name, drive.label, image == 0 ? std::string() : IL.Key(image));
  if (node != nullptr && drive.probe) AddFirstSubfolder(TV, *node, DoSelectedImage);
}

/// Adds the item of a drive, and if it is the first of the steps those of the folders below, the last one
/// selected.
void AddDriveItems(DriveCombo& Combo, ImageList& IL, PictureBox& PB, const std::string& root,
                   const DriveEntry& drive, const std::vector<std::string>& steps, std::int16_t Indentation) {
  std::int32_t item =
      Combo.Add(KeyOf(drive.name, 0), drive.label, FTVRetrieveIcon(root, IL, PB), Indentation);
  if (steps.empty() || !EqualIgnoringCase(steps.front(), drive.name)) return;
  std::int16_t level = Indentation;
  for (std::size_t i = 1; i < steps.size(); ++i) {
    ++level;
    item = Combo.Add(KeyOf(steps[i], 0), LastPart(steps[i]), FTVRetrieveIcon(steps[i], IL, PB), level);
  }
  Combo.Select(item);
}

void AddMyDocuments(TreeView& TV, const TreeNode& Desktop, bool DoSelectedImage) {
  const std::string folder = WithoutSeparators(Shell().SpecialFolder(kFolderPersonal));
  if (folder.empty()) return;
  TreeNode* const node = AddNode(TV, &Desktop, folder, kMyDocuments, kMyDocuments);
  if (node == nullptr) return;
  FormatNode(node, DoSelectedImage);
  AddFirstSubfolder(TV, *node, DoSelectedImage);
}

/// False if there is no such node, or it cannot be made visible.
bool MakeVisible(TreeView& TV, const std::string& key) {
  try {
    TV.Nodes().Item(key).EnsureVisible();
    return true;
  } catch (const RuntimeError&) {
    return false;
  }
}

/// The root of the drive that a path is on; empty if it is on none. A mounted volume is a drive inside
/// another one.
std::string RootOf(const std::string& path) {
  std::string longest;
  for (const std::string& root : Shell().LogicalDrives()) {
    const std::string start = path.substr(0, root.size());
    if (root.size() <= longest.size() || !EqualIgnoringCase(start, root)) continue;
    if (!AreDifferentFolders(start, root)) longest = root;
  }
  return longest;
}

}  // namespace

std::string WithSeparator(const std::string& Path) {
  return Path.empty() ? Path : AddRight(Path, Separator());
}

bool IsOnFloppy(const std::string& Key) { return Key.starts_with("A:") || Key.starts_with("B:"); }

std::vector<std::string> StepsTo(const std::string& Path) {
  std::vector<std::string> Result;
  std::string root, separator;
  try {
    root = RootOf(Path);
    separator = Separator();
    if (!root.empty()) Result.push_back(WithoutSeparators(Path.substr(0, root.size())));
    for (std::size_t at = root.size(); at < Path.size();) {
      const std::size_t end = std::min(Path.find(separator, at), Path.size());
      if (end > at) Result.push_back(Path.substr(0, end));
      at = end + separator.size();
    }
  } catch (...) {
    QDK_TRAILER(StepsTo, QDK_PARAMETERS(Path), QDK_LOCALS(Result, root, separator));
  }
  return Result;
}

TreeNode* FindFolder(TreeView& TV, const std::string& Path, const TreeNode* Above) {
  TreeNode* Result = nullptr;
  std::string folder;
  try {
    folder = WithoutSeparators(Path);
    if (folder.empty()) return Result;
    TreeNode* const inCapitals = TV.Nodes().Find(KeyOf(folder, 0));
    TreeNode* node = inCapitals;
    for (std::int32_t taken = 1; node != nullptr; ++taken) {
      const bool preferred = Above != nullptr && node->Parent() == Above;
      if (node->Tag() == folder && (Result == nullptr || preferred)) Result = node;
      node = TV.Nodes().Find(KeyOf(folder, taken));
    }
    if (Result == nullptr && inCapitals != nullptr && !AreDifferentFolders(folder, inCapitals->Tag())) {
      Result = inCapitals;
    }
  } catch (...) {
    QDK_TRAILER(FindFolder, QDK_PARAMETERS(TV, Path, Above), QDK_LOCALS(Result, folder));
  }
  return Result;
}

void AddFirstSubfolder(TreeView& TV, const TreeNode& Node, bool DoSelectedImage) {
  const std::string folder = WithSeparator(Node.Tag());
  std::string spelled;
  const std::string name = HasSubDirs(folder, &spelled);
  if (!name.empty()) AddSubfolder(TV, Node, folder + spelled, name, DoSelectedImage);
}

void AddFolder(TreeView& TV, const TreeNode& Above, const std::string& Path, bool DoSelectedImage,
               bool HasTwin) {
  std::string text = LastPart(Path);
  if (!HasTwin) CaseIt(text);
  TreeNode* node = AddSubfolder(TV, Above, Path, text, DoSelectedImage);
  if (node == nullptr) {
    node = FindFolder(TV, Path, &Above);
    if (node != nullptr && HasTwin) node->Text(text);
  }
  // A folder that was listed before, and was empty then, may have got a subfolder.
  if (node != nullptr && node->Child() == nullptr) AddFirstSubfolder(TV, *node, DoSelectedImage);
}

SubfolderNames::SubfolderNames(const std::string& Folder) {
  for (const FolderEntry& entry : Shell().Entries(Folder)) {
    if (!entry.IsDirectory || entry.Name == "." || entry.Name == "..") continue;
    inOrder_.push_back(StripTerminator(entry.Name));
    ++spellings_[FoldCase(inOrder_.back())];
  }
}

bool SubfolderNames::HasTwin(const std::string& Name) const {
  const auto known = spellings_.find(FoldCase(Name));
  return known != spellings_.end() && known->second > 1;
}

void ListDirs(TreeView& TV, const std::string& StartDir, bool DoSelectedImage, TreeNode* Above) {
  std::string folder;
  try {
    if (StartDir.empty()) return;
    if (Above == nullptr) Above = FindFolder(TV, StartDir);
    if (Above == nullptr) return;
    folder = WithSeparator(StartDir);
    const SubfolderNames names(folder);
    for (const std::string& name : names.InOrder()) {
      QDK_RESUME_NEXT(AddFolder(TV, *Above, folder + name, DoSelectedImage, names.HasTwin(name)));
    }
  } catch (...) {
    QDK_TRAILER(ListDirs, QDK_PARAMETERS(TV, StartDir, DoSelectedImage, Above), QDK_LOCALS(folder));
  }
}

void FormatNode(TreeNode* Node, bool DoSelectedImage) {
  try {
    if (Node == nullptr) return;
    if (DoSelectedImage) {
      Node->SelectedImage(kFolderOpen);
    } else {
      Node->ExpandedImage(kFolderOpen);
    }
  } catch (...) {
    QDK_TRAILER(FormatNode, QDK_PARAMETERS(Node, DoSelectedImage), QDK_LOCALS());
  }
}

std::string AddDrives(TreeView& TV, ImageList& IL, PictureBox& PB, bool DoSelectedImage, bool CheckForSubDirs,
                      bool RootIsMyComputer) {
  std::string first;
  TreeNode* const computer = TV.Nodes().Find(kMyComputer);
  for (const std::string& root : Shell().LogicalDrives()) {
    DriveEntry drive;
    QDK_RESUME_NEXT(drive = DescribeDrive(root, CheckForSubDirs));
    if (drive.fixed && first.empty()) first = KeyOf(drive.name, 0);
    if (RootIsMyComputer && computer == nullptr) continue;
    QDK_RESUME_NEXT(
        AddDrive(TV, IL, PB, RootIsMyComputer ? computer : nullptr, root, drive, DoSelectedImage));
  }
  return first;
}

std::string ListDrives(TreeView& TV, ImageList& IL, PictureBox& PB, bool AndDesktopFolders,
                       bool DoSelectedImage, bool CheckForSubDirs, const std::string& Path,
                       std::int16_t Indentation, bool IncludeMyDocuments, bool RootIsMyComputer) {
  std::string Result;
  TreeNode* desktop = nullptr;
  try {
    QDK_RESUME_NEXT(modProcessing::FormUtility().SetPointer(kBusyArrowHourglass));
    desktop = TV.Nodes().Find(kDesktop);
    Result = AddDrives(TV, IL, PB, DoSelectedImage, CheckForSubDirs, RootIsMyComputer);
    if (IncludeMyDocuments && desktop != nullptr) {
      QDK_RESUME_NEXT(AddMyDocuments(TV, *desktop, DoSelectedImage));
    }
    if (AndDesktopFolders && desktop != nullptr) {
      QDK_RESUME_NEXT(ListDirs(TV, GetDesktopPath(), DoSelectedImage, desktop));
    }
    if (!MakeVisible(TV, "C:")) MakeVisible(TV, kMyComputer);
    QDK_RESUME_NEXT(modProcessing::FormUtility().SetPointer(kBusyDefault));
  } catch (...) {
    QDK_TRAILER(ListDrives,
                QDK_PARAMETERS(TV, IL, PB, AndDesktopFolders, DoSelectedImage, CheckForSubDirs, Path,
                               Indentation, IncludeMyDocuments, RootIsMyComputer),
                QDK_LOCALS(Result, desktop));
  }
  return Result;
}

std::string ListDrives(DriveCombo& Combo, ImageList& IL, PictureBox& PB, const std::string& Path,
                       std::int16_t Indentation, bool IncludeMyDocuments) {
  std::string Result, folder;
  std::vector<std::string> steps;
  try {
    QDK_RESUME_NEXT(modProcessing::FormUtility().SetPointer(kBusyArrowHourglass));
    steps = StepsTo(Path);
    for (const std::string& root : Shell().LogicalDrives()) {
      DriveEntry drive;
      QDK_RESUME_NEXT(drive = DescribeDrive(root, false));
      if (drive.name.empty()) continue;
      if (drive.fixed && Result.empty()) Result = KeyOf(drive.name, 0);
      QDK_RESUME_NEXT(AddDriveItems(Combo, IL, PB, root, drive, steps, Indentation));
    }
    QDK_RESUME_NEXT(folder = WithoutSeparators(Shell().SpecialFolder(kFolderPersonal)));
    if (IncludeMyDocuments && !folder.empty()) {
      QDK_RESUME_NEXT(
          Combo.Add(KeyOf(folder, 0), kMyDocuments, FTVRetrieveIcon(folder, IL, PB), Indentation));
    }
    QDK_RESUME_NEXT(modProcessing::FormUtility().SetPointer(kBusyDefault));
  } catch (...) {
    QDK_TRAILER(ListDrives, QDK_PARAMETERS(Combo, IL, PB, Path, Indentation, IncludeMyDocuments),
                QDK_LOCALS(Result, folder, steps));
  }
  return Result;
}

}  // namespace kestrel::modFolderTreeView
