#pragma once

#include <array>

/// The pictures that a folder tree starts with, by their keys. The platform provides them.
namespace kestrel::folder_tree_images {

inline constexpr char kMyComputer[] = "My Computer";
inline constexpr char kDesktop[] = "Desktop";
inline constexpr char kFolderClosed[] = "Folder Closed";
inline constexpr char kFolderOpen[] = "Folder Open";
inline constexpr char kMyDocuments[] = "My Documents";

inline constexpr std::array<const char*, 5> kAll{kMyComputer, kDesktop, kFolderClosed, kFolderOpen,
                                                 kMyDocuments};

}  // namespace kestrel::folder_tree_images
