#include "ModuleFiles.h"

#include <array>

namespace kestrel::qdk {
namespace {

constexpr std::int32_t kNumbersPerLine = 5;
constexpr std::int32_t kNumbersPerFile = 50'000;

struct FurtherFile {
  std::string_view name;
  std::int32_t place;
};

/// The further files of modules with several files, with their fixed numbers. Never renumber: reports in the
/// field use them.
// clang-format off
constexpr std::array kFurtherFiles{
    FurtherFile{"ImageProcessingCtl.Files.cpp", 1},
    FurtherFile{"ImageProcessingCtl.Commands.cpp", 2},
    FurtherFile{"ImageProcessingCtl.Tools.cpp", 3},
    FurtherFile{"ImageProcessingCtl.Selection.cpp", 4},
    FurtherFile{"ImageProcessingCtl.Operations.cpp", 5},
    FurtherFile{"ImageProcessingCtl.Undo.cpp", 6},
    FurtherFile{"ImageProcessingCtl.Zoom.cpp", 7},
    FurtherFile{"ImageProcessingCtl.Thumbnails.cpp", 8},
    FurtherFile{"ImageProcessingCtl.Properties.cpp", 9},
    FurtherFile{"ImageProcessingCtl.Enabling.cpp", 10},
    FurtherFile{"ImageProcessingCtl.Dialogs.cpp", 11},
    FurtherFile{"ImageProcessingCtl.Notices.cpp", 12},
    FurtherFile{"ImageBrowserCtl.Commands.cpp", 1},
    FurtherFile{"ImageBrowserCtl.View.cpp", 2},
    FurtherFile{"DialogBase.cpp", 1},  // part of the module of every dialog
    FurtherFile{"PreviewDialog.cpp", 2},
    FurtherFile{"SizeDialog.cpp", 3},
    FurtherFile{"FolderTreeView.Properties.cpp", 1},
    FurtherFile{"FolderTreeView.Tree.cpp", 2},
    FurtherFile{"FolderTreeView.Following.cpp", 3},
    FurtherFile{"modFolderTreeView.Shell.cpp", 1},
    FurtherFile{"modTollgarthSupport.Counting.cpp", 1},
    FurtherFile{"modTollgarthSupport.Format.cpp", 2},
};
// clang-format on

}  // namespace

std::string_view FileName(std::string_view path) { return path.substr(path.find_last_of("/\\") + 1); }

std::string ModuleName(std::string_view path) {
  const std::string_view name = FileName(path);
  return std::string(name.substr(0, name.find('.')));
}

std::int32_t LineNumber(std::string_view path, std::int32_t line) {
  const std::string_view name = FileName(path);
  std::int32_t place = 0;
  for (const FurtherFile& file : kFurtherFiles) {
    if (file.name == name) place = file.place;
  }
  return place * kNumbersPerFile + line * kNumbersPerLine;
}

}  // namespace kestrel::qdk
