#include <tuple>

#include "browser/FolderTreeView.h"
#include "browser/interface/IImageBrowserCtl.h"
#include "host/dispatch/Table.h"
#include "imaging/contract/Moorage.h"
#include "imaging/contract/ThumbnailView.h"

namespace kestrel::dispatch {
namespace {

using Browser = IImageBrowserCtl;

constexpr std::tuple kMembers{
    ReadOnly("ObjectMoorage", 1, &Browser::ObjectMoorage, "Returns access to the docking suite"),
    ReadOnly("ObjectFolderBrowse", 2, &Browser::ObjectFolderBrowse, "Returns access to the browser"),
    ReadOnly("ObjectThumbnailView", 3, &Browser::ObjectThumbnailView, "Returns access to the thumbnail view"),
    ReadOnly("Thumbnails", 4, &Browser::Thumbnails, "Returns access to the thumbnails"),
    ReadOnly("SelectedItems", 5, &Browser::SelectedItems, "Returns access to the selected thumbnails"),
    Property("ShowMenuBar", 6, &Browser::ShowMenuBar, &Browser::ShowMenuBar,
             "Whether the menu bar is shown at run time."),
    Method("SetControls", 7, &Browser::SetControls, {"Enabled"}, "Has no effect: all commands stay enabled."),
    Property("Path", 8, &Browser::Path, &Browser::Path,
             "The selected folder, with a separator at its end; empty for none."),
    Method("Status", 9, &Browser::Status, {"Message"}, "Shows a message in the status line."),
    Property("DividerPosition", 10, &Browser::DividerPosition, &Browser::DividerPosition,
             "The width of the folder tree in pixels."),
};

constexpr std::tuple kEvents{
    EventOf("PathChange", 1, &Browser::PathChange, {"Path"}, "The browser shows another folder."),
    EventOf("ExitRequest", 2, &Browser::ExitRequest, "The user asked to close the browser."),
    EventOf("InvalidPathChange", 3, &Browser::InvalidPathChange,
            "The user chose a place that is no folder, such as the desktop."),
};

constexpr ClassDescription kClass = MakeClass<Browser, kMembers, kEvents>({
    .name = "ImageBrowserCtl",
    .help = "The embeddable image browser: a folder tree and the thumbnails of the selected folder.",
    .isControl = true,
});

}  // namespace

template <>
const ClassDescription& Describe<Browser>() {
  return kClass;
}

}  // namespace kestrel::dispatch
