#include <tuple>

#include "browser/FolderTreeView.h"
#include "host/dispatch/Table.h"

namespace kestrel::dispatch {
namespace {

constexpr std::tuple kFolderTreeViewMembers{
    Property("Path", 1, &FolderTreeView::Path, &FolderTreeView::Path,
             "The selected folder, with a separator at its end; empty while the selected node is no folder."),
    Property("AutoSelect", 2, &FolderTreeView::AutoSelect, &FolderTreeView::AutoSelect,
             "Whether the selected node is announced when the control is first shown."),
};
constexpr ClassDescription kFolderTreeView = MakeClass<FolderTreeView, kFolderTreeViewMembers>(
    {.name = "FolderTreeView", .help = "The drives and folders of the machine as a tree."});

}  // namespace

template <>
const ClassDescription& Describe<FolderTreeView>() {
  return kFolderTreeView;
}

}  // namespace kestrel::dispatch
