#include <tuple>

#include "editor/interface/IImageProcessingCtl.h"
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
    Property("ShowClose", 7, &Editor::ShowClose, &Editor::ShowClose, "Whether the command Close is shown."),
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
    Property("Format", 16, &Editor::Format, &Editor::Format,
             "The format code of the open file. A write changes the extension of Filename."),
    Property("Picture", 17, &Editor::Picture, &Editor::Picture,
             "The picture as a picture object; Nothing while there is none. A write keeps Filename."),
    Property("EventSink", 18, &Editor::EventSink, &Editor::EventSink,
             "The host's sink, which is not kept alive."),
    Property("Tool", 19, &Editor::Tool, &Editor::Tool,
             "The selected tool. A write of another tool clears the selection and raises ToolChange."),
    ReadOnly("Image", 20, &Editor::Image,
             "The picture's size, format and pixels; Nothing while there is no picture."),
    ReadOnly("ImgX", 21, &Editor::ImgX, "The picture with its operations."),
    ReadOnly("Options", 22, &Editor::Options, "The settings that all editors of the process share."),
    ReadOnly("DockWindows", 23, &Editor::DockWindows, "The dock windows."),
    ReadOnly("Commands", 24, &Editor::Commands, "The commands of menus, bars and hot keys."),
    ReadOnly("CommandBars", 25, &Editor::CommandBars, "The menu bar, tool bars and status bar."),
    ReadOnly("BrowseDialog", 26, &Editor::BrowseDialog, "The file dialog; Nothing before Initialize."),
    ReadOnly("ImageControl", 27, &Editor::ImageControl, "The view that shows the picture."),
    ReadOnly("Filename", 28, &Editor::Filename, "The name of the open file; empty while there is none."),
    ReadOnly("ZoomWindow", 29, &Editor::ZoomWindow,
             "The Zoom window; Nothing before Initialize and after Terminate."),
    ReadOnly("MaterialsWindow", 30, &Editor::MaterialsWindow,
             "The Materials window; Nothing before Initialize and after Terminate."),
    Method("OpenImage", 31, &Editor::OpenImage, {{"Filename", ""}},
           "Opens a file. Without a name the host is asked for one, then the user. True if a picture was "
           "opened."),
    Method("SaveImage", 32, &Editor::SaveImage,
           "Saves the picture under its name. True if the file was written."),
    Method("SaveImageAs", 33, &Editor::SaveImageAs, {{"Filename", ""}},
           "Saves the picture under another name. Without a name the host is asked for one, then the user. "
           "True if the file was written."),
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
    Method("SetSelection", 41, &Editor::SetSelection, {"Left", "Top", "Width", "Height"},
           "Selects a rectangle in picture pixels; sizes may be negative."),
    Method("SelectAll", 42, &Editor::SelectAll, "Selects the whole picture."),
    Method("ResetSelection", 43, &Editor::ResetSelection, "Clears the selection."),
    Method("Copy", 44, &Editor::Copy, {{"UseSelection", false}},
           "Copies the picture, or the selection, to the clipboard."),
    Method("Cut", 45, &Editor::Cut, {{"UseSelection", false}},
           "Copies the selection, or the picture without one, and fills the area with the drawing color."),
    Method("Paste", 46, &Editor::Paste, "Commits the floating image of an open paste."),
    Method("Cancel", 47, &Editor::Cancel, "Cancels an open paste and an open crop."),
    Method("CropToSelection", 48, &Editor::CropToSelection, "Crops the picture to the selection."),
    Method("Resize", 49, &Editor::Resize, {"Width", {"Height", 0}, {"ResampleMethod", 0}},
           "Resamples the picture to a size; height 0 keeps the aspect ratio."),
    Method("ResizeCanvas", 50, &Editor::ResizeCanvas,
           {"Width", "Height", {"OffsetX", 0}, {"OffsetY", 0}, ColorArgument("BackColor", ipUseDefault)},
           "Places the picture on a canvas of another size."),
    Method("Rotate", 51, &Editor::Rotate,
           {"Angle", ColorArgument("BackColor", ipUseDefault), {"ApplyToSelection", false}},
           "Rotates clockwise by an angle in degrees."),
    Method("FlipHorizontally", 52, &Editor::FlipHorizontally, {{"ApplyToSelection", false}},
           "Mirrors left and right."),
    Method("FlipVertically", 53, &Editor::FlipVertically, {{"ApplyToSelection", false}},
           "Mirrors top and bottom."),
    Method("ApplyGrayScale", 54, &Editor::ApplyGrayScale, {{"ApplyToSelection", false}},
           "Converts the colors to gray."),
    Method("FlattenAlpha", 55, &Editor::FlattenAlpha, {ColorArgument("Color", ipUseDefault)},
           "Replaces transparency by a color."),
    Method("ApplyDropShadow", 56, &Editor::ApplyDropShadow,
           {{"OffsetX", ipUseDefault},
            {"OffsetY", ipUseDefault},
            ColorArgument("ShadowColor", ipUseDefault),
            {"Opactity", ipUseDefault},
            {"BlurLevel", ipUseDefault},
            {"ApplyToSelection", false}},
           "Adds a drop shadow below the picture."),
    Method("ApplyMaskedDropShadow", 57, &Editor::ApplyMaskedDropShadow,
           {{"OffsetX", ipUseDefault},
            {"OffsetY", ipUseDefault},
            ColorArgument("ShadowColor", ipUseDefault),
            {"Opactity", ipUseDefault},
            {"BlurLevel", ipUseDefault},
            ColorArgument("MaskColor", ipUseDefault),
            {"AutomaticMask", false},
            {"ApplyToSelection", false}},
           "Adds a drop shadow below the pixels that do not have the mask color."),
    Method("ShowResizeDialog", 58, &Editor::ShowResizeDialog,
           "Lets the user resize the picture. False if canceled."),
    Method("ShowResizeCanvasDialog", 59, &Editor::ShowResizeCanvasDialog,
           "Lets the user resize the canvas. False if canceled."),
    Method("ShowDropShadowDialog", 60, &Editor::ShowDropShadowDialog,
           "Lets the user add a drop shadow. False if canceled."),
    Method("ShowMaskedDropShadowDialog", 61, &Editor::ShowMaskedDropShadowDialog,
           "Lets the user add a contoured drop shadow. False if canceled."),
    Method("ShowFlattenAlphaDialog", 62, &Editor::ShowFlattenAlphaDialog,
           "Lets the user replace transparency by a color. False if canceled."),
    Method("ShowRotateDialog", 63, &Editor::ShowRotateDialog,
           "Lets the user rotate the picture or the selection. Returns the clockwise angle, 0 if canceled."),
    Method("Undo", 64, &Editor::Undo, "Undoes the latest step."),
    Method("Redo", 65, &Editor::Redo, "Redoes the step that was undone last."),
    Method("ZoomIn", 66, &Editor::ZoomIn, "Enlarges the view by 0.1 below actual size and by 1 above it."),
    Method("ZoomOut", 67, &Editor::ZoomOut, "Reduces the view by 0.1 below actual size and by 1 above it."),
    Method("ZoomActualSize", 68, &Editor::ZoomActualSize,
           "Shows one picture pixel as one pixel of the screen."),
    Method("GetThumbnail", 69, &Editor::GetThumbnail,
           {{"Size", ipUseDefault},
            ColorArgument("BackColor", ipUseDefault),
            {"AddDropShadow", false},
            {"OffsetX", ipUseDefault},
            {"OffsetY", ipUseDefault},
            ColorArgument("ShadowColor", ipUseDefault),
            {"Opacity", ipUseDefault},
            {"BlurLevel", ipUseDefault}},
           "Makes a reduced copy of the picture; the size is in percent of its width."),
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
    Method("ShowGetThumnailDialog", 72, &Editor::ShowGetThumnailDialog,
           "Lets the user set up a thumbnail and makes it; Nothing if canceled."),
    Method("SaveImageThumbnailEx", 73, &Editor::SaveImageThumbnailEx, {"Filename"},
           "Lets the user set up a thumbnail and writes it; False if canceled."),
};

constexpr std::tuple kEvents{
    EventOf("ExitRequest", 1, &Editor::ExitRequest, "The user asked to close the editor."),
    EventOf("ImageOpen", 2, &Editor::ImageOpen, {"Filename"}, "A picture was opened."),
    EventOf("ImageSave", 3, &Editor::ImageSave, {"Filename"}, "The picture was saved."),
    EventOf("RequestOpenFilename", 4, &Editor::RequestOpenFilename, {"Filename", "CancelDefault"},
            "A name to open is needed. CancelDefault suppresses the file dialog."),
    EventOf("RequestSaveFilename", 5, &Editor::RequestSaveFilename, {"Filename", "CancelDefault"},
            "A name to save to is needed. CancelDefault suppresses the file dialog."),
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
