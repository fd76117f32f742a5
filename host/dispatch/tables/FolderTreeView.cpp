#include "browser/FolderTreeView.h"

#include <tuple>

#include "host/dispatch/Table.h"
#include "imaging/contract/Form.h"

namespace kestrel::dispatch {
namespace {

using Tree = FolderTreeView;

constexpr std::tuple kMembers{
    Property("Path", 1, &Tree::Path, &Tree::Path,
             "The selected folder, with a separator at its end; empty while the selected node is no folder."),
    Property("AutoSelect", 2, &Tree::AutoSelect, &Tree::AutoSelect,
             "Whether the selected node is announced when the control is first shown."),
    Property("IncludeDesktop", 3, &Tree::IncludeDesktop, &Tree::IncludeDesktop,
             "Whether the desktop and its folders are shown. A write rebuilds the tree."),
    Property("IncludeMyDocuments", 4, &Tree::IncludeMyDocuments, &Tree::IncludeMyDocuments,
             "Whether the documents folder is shown. A write rebuilds the tree."),
    Property("IncludeMyComputer", 5, &Tree::IncludeMyComputer, &Tree::IncludeMyComputer,
             "Whether the drives are below a node of the computer. A write rebuilds the tree."),
    Property("ActAsBrowseDialog", 6, &Tree::ActAsBrowseDialog, &Tree::ActAsBrowseDialog,
             "Returns or sets if the control acts as a browse dialog."),
    ReadOnly("Nodes", 7, &Tree::Nodes, "All nodes of the tree."),
    ReadOnly("TreeView", 8, &Tree::TreeView, "The inner tree."),
    ReadOnly("hWnd", 9, &Tree::hWnd, "The handle of the inner tree's window."),
    Property("BorderStyle", 10, &Tree::BorderStyle, &Tree::BorderStyle,
             "Returns or sets the border style of the control."),
    Property("Checkboxes", 11, &Tree::Checkboxes, &Tree::Checkboxes,
             "Returns or sets if checkboxes are displayed to the left of each node image."),
    Property("Enabled", 12, &Tree::Enabled, &Tree::Enabled,
             "Returns or sets if the control can accept user generated events."),
    Property("Font", 13, &Tree::Font, &Tree::Font,
             "Returns or sets the default font used to display text in a control"),
    Property("HideSelection", 14, &Tree::HideSelection, &Tree::HideSelection,
             "Returns or sets if text continues to look highlighted even if the control does not have the "
             "focus."),
    Property("Indentation", 15, &Tree::Indentation, &Tree::Indentation,
             "Returns or sets the gap between node joins and images."),
    Property("LineStyle", 16, &Tree::LineStyle, &Tree::LineStyle,
             "Returns or sets if root nodes can be expanded or collapsed."),
    Property("SingleSel", 17, &Tree::SingleSel, &Tree::SingleSel, "Returns or sets single selection."),
    Property("Style", 18, &Tree::Style, &Tree::Style,
             "What is shown of a node: its text, and the sum of 1 pictures, 2 signs to expand, 4 lines."),
    Method("Refresh", 19, &Tree::Refresh, "Builds the tree anew and selects the same folder."),
    Method("NewFolder", 20, &Tree::NewFolder, {{"ParentForm", nullptr}},
           "Asks for a name and creates that folder. Returns its path; empty if canceled."),
    Method("ForceResize", 21, &Tree::ForceResize, "Fits the tree into the control."),
    Method("FollowDisk", 22, &Tree::FollowDisk,
           "Compares the nodes with the disk, for changes that were not noticed."),
};

constexpr std::tuple kEvents{
    EventOf("Click", 1, &Tree::Click, "Occurs when the control is clicked."),
    EventOf("Collapse", 2, &Tree::Collapse, {"Node"},
            "Generated when any Node object in a asxFolderTreeView control is collapsed."),
    EventOf("DblClick", 3, &Tree::DblClick, "Occurs when the control is double clicked."),
    EventOf("Expand", 4, &Tree::Expand, {"Node"}, "A node was expanded."),
    EventOf("MouseDown", 5, &Tree::MouseDown, {"Button", "Shift", "X", "Y"},
            "A button was pressed. The position is in pixels of the tree."),
    EventOf("MouseMove", 6, &Tree::MouseMove, {"Button", "Shift", "X", "Y"}, "The pointer has moved."),
    EventOf("MouseUp", 7, &Tree::MouseUp, {"Button", "Shift", "X", "Y"}, "A button was released."),
    EventOf("KeyDown", 8, &Tree::KeyDown, {"KeyCode", "Shift"}, "A key was pressed."),
    EventOf("KeyPress", 9, &Tree::KeyPress, {"KeyAscii"}, "A character was typed."),
    EventOf("KeyUp", 10, &Tree::KeyUp, {"KeyCode", "Shift"}, "A key was released."),
    EventOf("NodeCheck", 11, &Tree::NodeCheck, {"Node"}, "The user has clicked the check box of a node."),
    EventOf("NodeClick", 12, &Tree::NodeClick, {"Node"}, "A node was selected, after the event of its kind."),
    EventOf("MyComputerClick", 13, &Tree::MyComputerClick, "The node of the computer was selected."),
    EventOf("MyComputerDblClick", 14, &Tree::MyComputerDblClick,
            "The node of the computer was double-clicked."),
    EventOf("MyComputerRightClick", 15, &Tree::MyComputerRightClick,
            "The node of the computer was clicked with the right button."),
    EventOf("DesktopClick", 16, &Tree::DesktopClick, "The node of the desktop was selected."),
    EventOf("DesktopDblClick", 17, &Tree::DesktopDblClick, "The node of the desktop was double-clicked."),
    EventOf("DesktopRightClick", 18, &Tree::DesktopRightClick,
            "The node of the desktop was clicked with the right button."),
    EventOf("FolderClick", 19, &Tree::FolderClick, {"FolderName"},
            "A folder was selected. Its name has a separator at its end."),
    EventOf("FolderDblClick", 20, &Tree::FolderDblClick, {"FolderName"},
            "A folder was double-clicked. Its name has no separator at its end."),
    EventOf("FolderRightClick", 21, &Tree::FolderRightClick, {"FolderName"},
            "A folder was clicked with the right button. Its name has no separator at its end."),
    EventOf("AskForNewFolder", 22, &Tree::AskForNewFolder, {"ReturnFolder", "Cancel"},
            "NewFolder needs a name. With neither a name nor Cancel the user is asked."),
};

constexpr ClassDescription kClass = MakeClass<Tree, kMembers, kEvents>(
    {.name = "FolderTreeView", .help = "The drives and folders of the machine as a tree."});

}  // namespace

template <>
const ClassDescription& Describe<Tree>() {
  return kClass;
}

}  // namespace kestrel::dispatch
