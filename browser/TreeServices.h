#pragma once

#include <string>

#include "imaging/contract/Shell.h"
#include "settings/modProcessing.h"

/// What the files of the folder tree use of the platform.
namespace kestrel::modFolderTreeView {

inline kestrel::Shell& Shell() { return modProcessing::Platform().Shell(); }

/// Between the folders of a path.
inline std::string Separator() { return modProcessing::FileHelpers().PathSeparator(); }

/// The part of a path after its last separator.
inline std::string LastPart(const std::string& path) {
  const std::string separator = Separator();
  const std::size_t last = path.rfind(separator);
  return last == std::string::npos ? path : path.substr(last + separator.size());
}

}  // namespace kestrel::modFolderTreeView
