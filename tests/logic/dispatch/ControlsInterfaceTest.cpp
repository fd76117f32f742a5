// The windows and controls that members of the public classes hand out, and their parts.

#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "PublicInterface.h"

namespace kestrel::dispatch {
namespace {

class ControlsInterface : public PublicInterface {};

TEST_F(ControlsInterface, OfTheDockingSuite) {
  Expect("Moorage", R"(
    read Commands Commands
    read CommandBars CommandBars
    read DockWindows DockWindows
    read DockFunctions DockFunctions
    read ClientArea Rectangle
    write Redraw Boolean
    method SetComboText(Command Command, Text String)
    method ShowPopup(Command Command)
    method StatusPanel(Name String) StatusPanel

    read Name String
    read Index Int32
    property Left Int32
    property Top Int32
    property Width Int32
    property Height Int32
    method Move(Left Int32, Top Int32, Width Int32, Height Int32)
    property Visible Boolean
    property Enabled Boolean
    method ZOrder
    read hWnd Window

    event CommandClick(Command Command)
    event CommandChange(Command Command, Combo Combo, CancelDefault CancelValue)
    event CommandHighlight(Command Command, HighlightState Int32)
    event CommandHotKeyPress(Command Command, HotKey HotKey, CancelDefault CancelValue)
    event CommandBarHiding(CommandBar CommandBar, Reason Int32, CancelDefault CancelValue)
    event CommandBarShowing(CommandBar CommandBar, Reason Int32, CancelDefault CancelValue)
    event DockWindowHiding(DockWindow DockWindow, Reason Int32, CancelDefault CancelValue)
    event DockWindowShowing(DockWindow DockWindow, Reason Int32, CancelDefault CancelValue)
    event ClientAreaChanged
  )");
  Expect("DockFunctions", R"(
    method SetChecked(Command Command, Pressed Boolean)
    method AttachForm(DockWindow DockWindow, Form Form)
    method SetStyle(Control Moorage, Style Int32)
  )");
  Expect("StatusPanel", R"(
    property Caption String
    property Visible Boolean
    write ProgressMin Int32
    write ProgressMax Int32
    write ProgressValue Int32
  )");
}

TEST_F(ControlsInterface, OfTheCommands) {
  Expect("Commands", R"(
    default read Item(Index Variant) Command
    read Count Int32
    read HotKeyOptions HotKeyOptions
  )");
  Expect("Command", R"(
    read Name String
    read CommandType Int32
    read Category String
    property Caption String
    read ShortCaption String
    property Description String
    property ToolTip String
    read ImageName String
    property Enabled Boolean
    property Visible Boolean
    read Checked Boolean
    read HotKeys HotKeys
    read Bar CommandBar
    read Items CommandItems
    read SelectedItem CommandItem
  )");
  Expect("HotKeyOptions", "property AllowUnmodified Int32");
  Expect("HotKeys", R"(
    default read Item(Index Variant) HotKey
    read Count Int32
  )");
  Expect("HotKey", R"(
    read Shift Int32
    read KeyCode Int32
    method Remove
  )");
  Expect("CommandItems", R"(
    default read Item(Index Variant) CommandItem
    read Count Int32
    method Add(Text String, Key String = "")
    method Clear
  )");
  Expect("CommandItem", R"(
    read Text String
    read Key String
  )");
  Expect("Combo", "read Text String");
}

TEST_F(ControlsInterface, OfTheBarsAndDockWindows) {
  Expect("CommandBars", R"(
    default read Item(Index Variant) CommandBar
    read Count Int32
  )");
  Expect("CommandBar", R"(
    read Name String
    property Visible Boolean
    property Listed Boolean
    read Entries BarEntries
  )");
  Expect("BarEntries", R"(
    default read Item(Index Variant) BarEntry
    read Count Int32
  )");
  Expect("BarEntry", R"(
    read Key String
    property BeginGroup Boolean
  )");
  Expect("DockWindows", R"(
    default read Item(Index Variant) DockWindow
    read Count Int32
  )");
  Expect("DockWindow", R"(
    read Name String
    read Caption String
    property Visible Boolean
  )");
}

TEST_F(ControlsInterface, OfTheFileDialog) {
  Expect("ImgXDialog", R"(
    write OwnerWindow Window
    property Filter String
    property Flags Int32
    property DefaultExt String
    property Filename String
    write CenterOnOwner Boolean
    write FilterIndex Int32
    write MaxFiles Int32
    method ShowOpen Boolean
    method ShowSave Boolean
    method GetControlRect(ControlId Int32, ref Left Int32, ref Top Int32, ref Width Int32, ref Height Int32)
    method MoveControl(WindowHandle Window, X Int32, Y Int32)

    event InitDialog(ref DialogWidth Int32, ref DialogHeight Int32)
  )");
}

TEST_F(ControlsInterface, OfTheToolWindows) {
  Expect("frmZoom", R"(
    method ClearZoomWindow
    method RedrawZoomWindowEx(ref X Int32, ref Y Int32)
    method RedrawZoomWindow
    property ZoomLevel Int32
    property Application ImageProcessingCtl
    read Form Form
  )");
  Expect("frmMaterials", R"(
    property Application ImageProcessingCtl
    read Form Form
  )");
  Expect("Form", R"(
    property Caption String
    property WindowState Int32
    read ScaleWidth Int32
    read ScaleHeight Int32
    read BackColor Color
    read NormalPlace Rectangle

    read Name String
    read Index Int32
    property Left Int32
    property Top Int32
    property Width Int32
    property Height Int32
    method Move(Left Int32, Top Int32, Width Int32, Height Int32)
    property Visible Boolean
    property Enabled Boolean
    method ZOrder
    read hWnd Window

    event Resize
  )");
}

TEST_F(ControlsInterface, OfTheFolderTree) {
  Expect("FolderTreeView", R"(
    property Path String
    property AutoSelect Boolean
    property IncludeDesktop Boolean
    property IncludeMyDocuments Boolean
    property IncludeMyComputer Boolean
    property ActAsBrowseDialog Boolean
    read Nodes TreeNodes
    read TreeView TreeView
    read hWnd Window
    property BorderStyle Int32
    property Checkboxes Boolean
    property Enabled Boolean
    property Font String
    property HideSelection Boolean
    property Indentation Float
    property LineStyle Int32
    property SingleSel Boolean
    property Style Int32

    method Refresh
    method NewFolder(ParentForm Form = Nothing) String
    method ForceResize
    method FollowDisk

    event Click
    event Collapse(Node TreeNode)
    event DblClick
    event Expand(Node TreeNode)
    event MouseDown(Button Int32, Shift Int32, X Float, Y Float)
    event MouseMove(Button Int32, Shift Int32, X Float, Y Float)
    event MouseUp(Button Int32, Shift Int32, X Float, Y Float)
    event KeyDown(KeyCode Int32, Shift Int32)
    event KeyPress(KeyAscii Int32)
    event KeyUp(KeyCode Int32, Shift Int32)
    event NodeCheck(Node TreeNode)
    event NodeClick(Node TreeNode)
    event MyComputerClick
    event MyComputerDblClick
    event MyComputerRightClick
    event DesktopClick
    event DesktopDblClick
    event DesktopRightClick
    event FolderClick(FolderName String)
    event FolderDblClick(FolderName String)
    event FolderRightClick(FolderName String)
    event AskForNewFolder(ref ReturnFolder String, ref Cancel Boolean)
  )");
}

TEST_F(ControlsInterface, OfTheTree) {
  Expect("TreeView", R"(
    read Nodes TreeNodes
    read SelectedItem TreeNode
    method HitTest(X Float, Y Float) TreeNode
    method Refresh
    write Redraw Boolean
    read ImageList ImageList
    property BorderStyle Int32
    property Checkboxes Boolean
    property Font String
    property HideSelection Boolean
    property Indentation Float
    property LineStyle Int32
    property SingleSel Boolean
    property Style Int32

    read Name String
    read Index Int32
    property Left Int32
    property Top Int32
    property Width Int32
    property Height Int32
    method Move(Left Int32, Top Int32, Width Int32, Height Int32)
    property Visible Boolean
    property Enabled Boolean
    method ZOrder
    read hWnd Window

    event Click
    event DblClick
    event Collapse(Node TreeNode)
    event Expand(Node TreeNode)
    event NodeClick(Node TreeNode)
    event NodeCheck(Node TreeNode)
    event MouseDown(Button Int32, Shift Int32, X Float, Y Float)
    event MouseMove(Button Int32, Shift Int32, X Float, Y Float)
    event MouseUp(Button Int32, Shift Int32, X Float, Y Float)
    event KeyDown(KeyCode Int32, Shift Int32)
    event KeyPress(KeyAscii Int32)
    event KeyUp(KeyCode Int32, Shift Int32)
  )");
  Expect("TreeNodes", R"(
    default read Item(Index Variant) TreeNode
    read Count Int32
    method Add(Relative String, Relationship Int32, Key String, Text String, Image String = "", SelectedImage String = "") TreeNode
    method Clear
    method Remove(Key String)
  )");
  Expect("TreeNode", R"(
    read Key String
    property Text String
    property Tag String
    read Child TreeNode
    read Parent TreeNode
    read Children Int32
    property Expanded Boolean
    property Selected Boolean
    property Checked Boolean
    write Sorted Boolean
    method EnsureVisible
    read Image String
    property ExpandedImage String
    property SelectedImage String
  )");
  Expect("ImageList", R"(
    read Count Int32
    method Key(Index Int32) String
    method Set(Key String, IconPicture Window)
  )");
}

TEST_F(ControlsInterface, OfTheThumbnailView) {
  Expect("ThumbnailView", R"(
    property Folder String
    property View Int32
    property EmptyText String
    write UserMode Boolean
    read Thumbnails Thumbnails
    read SelectedItems Thumbnails
    method Refresh
    method Clear
    method BrowseForFolder(Prompt String, Title String, Start String) String

    read Name String
    read Index Int32
    property Left Int32
    property Top Int32
    property Width Int32
    property Height Int32
    method Move(Left Int32, Top Int32, Width Int32, Height Int32)
    property Visible Boolean
    property Enabled Boolean
    method ZOrder
    read hWnd Window

    event FolderLoadStart(ref Cancel Boolean)
    event FolderSearchComplete(Count Int32)
    event ThumbnailLoaded(Item Thumbnail, Percent Int32, ref Cancel Boolean)
    event FolderLoadComplete(Cancelled Boolean)
    event RecalculatingThumbnailsStart(ref Cancel Boolean)
    event RecalculatedThumbnail(Item Thumbnail)
    event RecalculatingThumbnailsComplete
    event ThumbnailContextClick(Item Thumbnail)
    event ThumbnailDblClick(Item Thumbnail)
    event ThumbnailOpen(Item Thumbnail)
    event DeletePressed
    event ViewChange(View Int32)
  )");
  Expect("Thumbnails", R"(
    default read Item(Index Variant) Thumbnail
    read Count Int32
  )");
  Expect("Thumbnail", R"(
    read Filename String
    read Index Int32
  )");
}

TEST_F(ControlsInterface, HelpTextsOfTheFolderTreeAreKept) {
  const ClassDescription& tree = *FindClass("FolderTreeView");
  const std::pair<const char*, const char*> members[] = {
      {"ActAsBrowseDialog", "Returns or sets if the control acts as a browse dialog."},
      {"BorderStyle", "Returns or sets the border style of the control."},
      {"Checkboxes", "Returns or sets if checkboxes are displayed to the left of each node image."},
      {"Enabled", "Returns or sets if the control can accept user generated events."},
      {"Font", "Returns or sets the default font used to display text in a control"},
      {"HideSelection",
       "Returns or sets if text continues to look highlighted even if the control does not have the focus."},
      {"Indentation", "Returns or sets the gap between node joins and images."},
      {"LineStyle", "Returns or sets if root nodes can be expanded or collapsed."},
      {"SingleSel", "Returns or sets single selection."},
  };
  for (const auto& [name, help] : members) {
    EXPECT_EQ(tree.FindMember(std::string_view(name))->help, help) << name;
  }
  const std::pair<const char*, const char*> events[] = {
      {"Click", "Occurs when the control is clicked."},
      {"Collapse", "Generated when any Node object in a asxFolderTreeView control is collapsed."},
      {"DblClick", "Occurs when the control is double clicked."},
  };
  for (const auto& [name, help] : events) {
    EXPECT_EQ(tree.FindEvent(std::string_view(name))->help, help) << name;
  }
}

/// The lists of the tests are complete.
TEST_F(ControlsInterface, EveryClassHasAList) {
  const std::set<std::string> withList = {"Alpha",
                                          "BarEntries",
                                          "BarEntry",
                                          "CancelValue",
                                          "Colors",
                                          "Colour",
                                          "Combo",
                                          "Command",
                                          "CommandBar",
                                          "CommandBars",
                                          "CommandItem",
                                          "CommandItems",
                                          "Commands",
                                          "DeviceContext",
                                          "DockFunctions",
                                          "DockWindow",
                                          "DockWindows",
                                          "Document",
                                          "Draw",
                                          "Effects",
                                          "FolderTreeView",
                                          "Form",
                                          "HotKey",
                                          "HotKeyOptions",
                                          "HotKeys",
                                          "IImageEvents",
                                          "Image",
                                          "ImageBrowser",
                                          "ImageBrowserCtl",
                                          "ImageList",
                                          "ImageProcessing",
                                          "ImageProcessingCtl",
                                          "ImageView",
                                          "ImgX",
                                          "ImgXDialog",
                                          "Moorage",
                                          "Options",
                                          "Palette",
                                          "Picture",
                                          "Point",
                                          "Rectangle",
                                          "Size",
                                          "StatusPanel",
                                          "Surface",
                                          "Thumbnail",
                                          "ThumbnailView",
                                          "Thumbnails",
                                          "TreeNode",
                                          "TreeNodes",
                                          "TreeView",
                                          "UndoPoint",
                                          "Writer",
                                          "frmMaterials",
                                          "frmZoom"};
  std::set<std::string> present;
  for (const ClassDescription* description : Classes()) present.emplace(description->name);
  EXPECT_EQ(present, withList);
}

}  // namespace
}  // namespace kestrel::dispatch
