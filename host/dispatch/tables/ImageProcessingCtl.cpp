#include <tuple>

#include "editor/interface/IImageProcessingCtl.h"
#include "host/dispatch/EditorRows.h"
#include "host/dispatch/Table.h"
#include "host/interface/IImageEvents.h"
#include "imaging/contract/Image.h"
#include "imaging/contract/ImageView.h"
#include "imaging/contract/ImgX.h"
#include "imaging/contract/ImgXDialog.h"
#include "imaging/contract/Moorage.h"
#include "settings/Options.h"
#include "toolwindows/frmMaterials.h"
#include "toolwindows/frmZoom.h"

namespace kestrel::dispatch {
namespace {

using Editor = IImageProcessingCtl;
using Shared = EditorRows<Editor>;

/// The member takes its argument by reference and leaves it as it is.
void SetControls(Editor& editor, bool& enabled) { editor.SetControls(enabled); }

constexpr std::tuple kMembers{
    Method("Initialize", 1, &Editor::Initialize,
           "Completes the start-up. A host calls it once before it uses the control."),
    Method("Terminate", 2, &Editor::Terminate,
           "Closes the dock windows and releases all windows and the sink. Further calls do nothing."),
    Property("AllowUnmodifiedHotKeys", 3, &Editor::AllowUnmodifiedHotKeys, &Editor::AllowUnmodifiedHotKeys,
             "Whether hot keys without Ctrl or Alt are active."),
    Property("UseSimpleTools", 4, &Editor::UseSimpleTools, &Editor::UseSimpleTools,
             "Whether only a subset of the tools is shown."),
    Property("ShowDrawingTools", 5, &Editor::ShowDrawingTools, &Editor::ShowDrawingTools,
             "Whether the drawing tools are shown."),
    Property("UseSimpleSave", 6, &Editor::UseSimpleSave, &Editor::UseSimpleSave,
             "Whether one Save that the host executes replaces Save, Save As and Export."),
    Shared::ShowClose(7),
    Property("ShowOpen", 8, &Editor::ShowOpen, &Editor::ShowOpen,
             "Whether the command Open is shown. A write also sets ShowMRU."),
    Property("ShowMRU", 9, &Editor::ShowMRU, &Editor::ShowMRU, "Whether the list of recent files is shown."),
    Property("ShowMenuBar", 10, &Editor::ShowMenuBar, &Editor::ShowMenuBar,
             "Whether the menu bar is shown at run time."),
    Property("AutoUpdateGlobal", 11, &Editor::AutoUpdateGlobal, &Editor::AutoUpdateGlobal,
             "Whether changes of the two colors are written to Options."),
    Property("UndoLevels", 12, &Editor::UndoLevels, &Editor::UndoLevels,
             "The number of undo steps that are kept."),
    Color(Property("BackColor", 13, &Editor::BackColor, &Editor::BackColor,
                   "The background color of the materials; -1 means no fill.")),
    Color(Property("ForeColor", 14, &Editor::ForeColor, &Editor::ForeColor,
                   "The foreground color of the materials.")),
    Property("Changed", 15, &Editor::Changed, &Editor::Changed,
             "Whether the picture was edited since it was set. Becoming True raises Change."),
    Shared::Format(16),
    Property("Picture", 17, &Editor::Picture, &Editor::Picture,
             "The picture as a picture object; Nothing while there is none. A write keeps Filename."),
    Property("EventSink", 18, &Editor::EventSink, &Editor::EventSink,
             "The host's sink, which is not kept alive."),
    Property("Tool", 19, &Editor::Tool, &Editor::Tool,
             "The selected tool. A write of another tool clears the selection and raises ToolChange."),
    Shared::Image(20),
    Shared::ImgX(21),
    Shared::Options(22),
    ReadOnly("DockWindows", 23, &Editor::DockWindows, "The dock windows."),
    Shared::Commands(24),
    Shared::CommandBars(25),
    ReadOnly("BrowseDialog", 26, &Editor::BrowseDialog, "The file dialog; Nothing before Initialize."),
    ReadOnly("ImageControl", 27, &Editor::ImageControl, "The view that shows the picture."),
    Shared::Filename(28),
    ReadOnly("ZoomWindow", 29, &Editor::ZoomWindow,
             "The Zoom window; Nothing before Initialize and after Terminate."),
    ReadOnly("MaterialsWindow", 30, &Editor::MaterialsWindow,
             "The Materials window; Nothing before Initialize and after Terminate."),
    Shared::OpenImage(31),
    Shared::SaveImage(32),
    Shared::SaveImageAs(33),
    Method("SaveChanges", 34, &Editor::SaveChanges,
           "Asks the user about unsaved changes. True if the caller may continue."),
    Method("ShowExportDialog", 35, &Editor::ShowExportDialog,
           "Lets the user write copies of the picture to other files and formats. True if at least one was "
           "written."),
    Method("SetControls", 36, &SetControls, {"Enabled"},
           "Enables or disables the commands that need a picture."),
    Method("Status", 37, &Editor::Status,
           {{"Message", ""}, {"ChangeCursor", false}, {"UpdateAsDefault", false}},
           "Shows a message in the status line."),
    Method("SetToolbarStyle", 38, &Editor::SetToolbarStyle, {"Style"},
           "Sets the style of the bars: 0 icons, 1 icons left of texts, 2 icons above texts."),
    Method("ApplyOptions", 39, &Editor::ApplyOptions, "Applies the settings to the user interface."),
    Method("ShowOptions", 40, &Editor::ShowOptions,
           "Lets the user edit the settings. True if they were stored."),
    Shared::SetSelection(41),
    Shared::SelectAll(42),
    Method("ResetSelection", 43, &Editor::ResetSelection, "Clears the selection."),
    Shared::Copy(44),
    Shared::Cut(45),
    Method("Paste", 46, &Editor::Paste, "Commits the floating image of an open paste."),
    Method("Cancel", 47, &Editor::Cancel, "Cancels an open paste and an open crop."),
    Shared::CropToSelection(48),
    Shared::Resize(49),
    Shared::ResizeCanvas(50),
    Shared::Rotate(51),
    Shared::FlipHorizontally(52),
    Shared::FlipVertically(53),
    Shared::ApplyGrayScale(54),
    Shared::FlattenAlpha(55),
    Shared::ApplyDropShadow(56),
    Shared::ApplyMaskedDropShadow(57),
    Shared::ShowResizeDialog(58),
    Shared::ShowResizeCanvasDialog(59),
    Shared::ShowDropShadowDialog(60),
    Shared::ShowMaskedDropShadowDialog(61),
    Shared::ShowFlattenAlphaDialog(62),
    Shared::ShowRotateDialog(63),
    Shared::Undo(64),
    Shared::Redo(65),
    Shared::ZoomIn(66),
    Shared::ZoomOut(67),
    Shared::ZoomActualSize(68),
    Shared::GetThumbnail(69),
    Method("GetThumbnailEx", 70, &Editor::GetThumbnailEx,
           {"SizeType",
            {"Size", ipUseDefault},
            ColorArgument("BackColor", ipUseDefault),
            {"AddDropShadow", false},
            {"OffsetX", ipUseDefault},
            {"OffsetY", ipUseDefault},
            ColorArgument("ShadowColor", ipUseDefault),
            {"Opactity", ipUseDefault},
            {"BlurLevel", ipUseDefault}},
           "Makes a reduced copy of the picture, with a choice of the size's unit."),
    Method("SaveImageThumbnail", 71, &Editor::SaveImageThumbnail, {"Filename"},
           "Writes a thumbnail according to the options. True if the file was written."),
    Shared::ShowGetThumnailDialog(72),
    Method("SaveImageThumbnailEx", 73, &Editor::SaveImageThumbnailEx, {"Filename"},
           "Lets the user set up a thumbnail and writes it; False if canceled."),
};

constexpr std::tuple kEvents{
    EventOf("ExitRequest", 1, &Editor::ExitRequest, "The user asked to close the editor."),
    Shared::ImageOpen(2),
    Shared::ImageSave(3),
    Shared::RequestOpenFilename(4),
    Shared::RequestSaveFilename(5),
    EventOf("WindowClosed", 6, &Editor::WindowClosed, "Never raised by this control."),
    EventOf("ForeColorChange", 7, &Editor::ForeColorChange, {ColorArgument("Color")},
            "The foreground color has changed."),
    EventOf("BackColorChange", 8, &Editor::BackColorChange, {ColorArgument("Color")},
            "The background color has changed."),
    EventOf("ToolChange", 9, &Editor::ToolChange, {"Tool"}, "Another tool was selected."),
    EventOf("PictureSet", 10, &Editor::PictureSet, "Another picture was set."),
    EventOf("SimpleSaveRequest", 11, &Editor::SimpleSaveRequest, {"Saved"},
            "The user chose Save, which the host executes. Saved reports whether it did."),
    EventOf("Change", 12, &Editor::Change, "Changed has become True."),
};

constexpr ClassDescription kClass = MakeClass<Editor, kMembers, kEvents>({
    .name = "ImageProcessingCtl",
    .help =
        "The embeddable image editor: a view surrounded by menus, tool bars, a status bar and dock windows.",
    .isControl = true,
});

}  // namespace

template <>
const ClassDescription& Describe<Editor>() {
  return kClass;
}

ImgXDialog* Locate<ImgXDialog>::Find(Editor& editor, const std::string& /*key*/) {
  return editor.BrowseDialog();
}
frmZoom* Locate<frmZoom>::Find(Editor& editor, const std::string& /*key*/) { return editor.ZoomWindow(); }
frmMaterials* Locate<frmMaterials>::Find(Editor& editor, const std::string& /*key*/) {
  return editor.MaterialsWindow();
}

}  // namespace kestrel::dispatch
