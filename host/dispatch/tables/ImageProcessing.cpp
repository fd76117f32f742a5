#include "host/ImageProcessing.h"

#include <memory>
#include <tuple>

#include "host/dispatch/Table.h"
#include "imaging/contract/Image.h"
#include "imaging/contract/ImgX.h"
#include "imaging/contract/Moorage.h"
#include "settings/Options.h"

namespace kestrel::dispatch {
namespace {

constexpr std::tuple kMembers{
    Method("Initialize", 1, &ImageProcessing::Initialize,
           "Completes the start-up. A host calls it once after it has created the object."),
    Method("Terminate", 2, &ImageProcessing::Terminate, "Destroys the window. Further calls do nothing."),
    Property(
        "Title", 3, &ImageProcessing::Title, &ImageProcessing::Title,
        "The title in the window's caption, behind the name of the file; empty: the application's title."),
    ReadOnly("Visible", 4, &ImageProcessing::Visible, "Whether the window is visible."),
    Method("Show", 5, &ImageProcessing::Show, {{"Modal", false}},
           "Shows the window. Modal: returns when it is hidden."),
    ReadOnly("Control", 6, &ImageProcessing::Control, "Returns access to the processing control"),
    ReadOnly("Options", 7, &ImageProcessing::Options, "The settings that all editors of the process share."),
    Property("Format", 8, &ImageProcessing::Format, &ImageProcessing::Format,
             "The format code of the open file. A write changes the extension of Filename."),
    Property("Tool", 9, &ImageProcessing::Tool, &ImageProcessing::Tool,
             "The selected tool. A write of another tool clears the selection."),
    Property("ShowClose", 10, &ImageProcessing::ShowClose, &ImageProcessing::ShowClose,
             "Whether the command Close is shown."),
    ReadOnly("Image", 11, &ImageProcessing::Image,
             "The picture's size, format and pixels; Nothing while there is no picture."),
    ReadOnly("ImgX", 12, &ImageProcessing::ImgX, "The picture with its operations."),
    ReadOnly("Commands", 13, &ImageProcessing::Commands, "The commands of menus, bars and hot keys."),
    ReadOnly("CommandBars", 14, &ImageProcessing::CommandBars, "The menu bar, tool bars and status bar."),
    ReadOnly("Filename", 15, &ImageProcessing::Filename,
             "The name of the open file; empty while there is none."),
    Method("OpenImage", 16, &ImageProcessing::OpenImage, {{"Filename", ""}},
           "Opens a file. Without a name the host is asked for one, then the user. True if a picture was "
           "opened."),
    Method("SaveImage", 17, &ImageProcessing::SaveImage,
           "Saves the picture under its name. True if the file was written."),
    Method("SaveImageAs", 18, &ImageProcessing::SaveImageAs, {{"Filename", ""}},
           "Saves the picture under another name. Without a name the host is asked for one, then the user. "
           "True if the file was written."),
    Method("SetSelection", 19, &ImageProcessing::SetSelection, {"Left", "Top", "Width", "Height"},
           "Selects a rectangle in picture pixels; sizes may be negative."),
    Method("SelectAll", 20, &ImageProcessing::SelectAll, "Selects the whole picture."),
    Method("Copy", 21, &ImageProcessing::Copy, {{"UseSelection", false}},
           "Copies the picture, or the selection, to the clipboard."),
    Method("Cut", 22, &ImageProcessing::Cut, {{"UseSelection", false}},
           "Copies the selection, or the picture without one, and fills the area with the drawing color."),
    Method("Resize", 23, &ImageProcessing::Resize, {"Width", {"Height", 0}, {"ResampleMethod", 0}},
           "Resamples the picture to a size; height 0 keeps the aspect ratio."),
    Method("ResizeCanvas", 24, &ImageProcessing::ResizeCanvas,
           {"Width", "Height", {"OffsetX", 0}, {"OffsetY", 0}, ColorArgument("BackColor", ipUseDefault)},
           "Places the picture on a canvas of another size."),
    Method("Rotate", 25, &ImageProcessing::Rotate,
           {"Angle", ColorArgument("BackColor", ipUseDefault), {"ApplyToSelection", false}},
           "Rotates clockwise by an angle in degrees."),
    Method("FlipHorizontally", 26, &ImageProcessing::FlipHorizontally, {{"ApplyToSelection", false}},
           "Mirrors left and right."),
    Method("FlipVertically", 27, &ImageProcessing::FlipVertically, {{"ApplyToSelection", false}},
           "Mirrors top and bottom."),
    Method("ApplyGrayScale", 28, &ImageProcessing::ApplyGrayScale, {{"ApplyToSelection", false}},
           "Converts the colors to gray."),
    Method("FlattenAlpha", 29, &ImageProcessing::FlattenAlpha, {ColorArgument("Color", ipUseDefault)},
           "Replaces transparency by a color."),
    Method("ApplyDropShadow", 30, &ImageProcessing::ApplyDropShadow,
           {{"OffsetX", ipUseDefault},
            {"OffsetY", ipUseDefault},
            ColorArgument("ShadowColor", ipUseDefault),
            {"Opactity", ipUseDefault},
            {"BlurLevel", ipUseDefault},
            {"ApplyToSelection", false}},
           "Adds a drop shadow below the picture."),
    Method("ApplyMaskedDropShadow", 31, &ImageProcessing::ApplyMaskedDropShadow,
           {{"OffsetX", ipUseDefault},
            {"OffsetY", ipUseDefault},
            ColorArgument("ShadowColor", ipUseDefault),
            {"Opactity", ipUseDefault},
            {"BlurLevel", ipUseDefault},
            ColorArgument("MaskColor", ipUseDefault),
            {"AutomaticMask", false},
            {"ApplyToSelection", false}},
           "Adds a drop shadow below the pixels that do not have the mask color."),
    Method("CropToSelection", 32, &ImageProcessing::CropToSelection, "Crops the picture to the selection."),
    Method("Undo", 33, &ImageProcessing::Undo, "Undoes the latest step."),
    Method("Redo", 34, &ImageProcessing::Redo, "Redoes the step that was undone last."),
    Method("ZoomIn", 35, &ImageProcessing::ZoomIn,
           "Enlarges the view by 0.1 below actual size and by 1 above it."),
    Method("ZoomOut", 36, &ImageProcessing::ZoomOut,
           "Reduces the view by 0.1 below actual size and by 1 above it."),
    Method("ZoomActualSize", 37, &ImageProcessing::ZoomActualSize,
           "Shows one picture pixel as one pixel of the screen."),
    Method("ShowFlattenAlphaDialog", 38, &ImageProcessing::ShowFlattenAlphaDialog,
           "Lets the user replace transparency by a color. False if canceled."),
    Method("ShowRotateDialog", 39, &ImageProcessing::ShowRotateDialog,
           "Lets the user rotate the picture or the selection. Returns the clockwise angle, 0 if canceled."),
    Method("ShowMaskedDropShadowDialog", 40, &ImageProcessing::ShowMaskedDropShadowDialog,
           "Lets the user add a contoured drop shadow. False if canceled."),
    Method("ShowDropShadowDialog", 41, &ImageProcessing::ShowDropShadowDialog,
           "Lets the user add a drop shadow. False if canceled."),
    Method("ShowResizeCanvasDialog", 42, &ImageProcessing::ShowResizeCanvasDialog,
           "Lets the user resize the canvas. False if canceled."),
    Method("ShowResizeDialog", 43, &ImageProcessing::ShowResizeDialog,
           "Lets the user resize the picture. False if canceled."),
    Method("ShowGetThumnailDialog", 44, &ImageProcessing::ShowGetThumnailDialog,
           "Lets the user set up a thumbnail and makes it; Nothing if canceled."),
    Method("ShowOptions", 45, &ImageProcessing::ShowOptions,
           "Lets the user edit the settings. The result is always False."),
    Method("GetThumbnail", 46, &ImageProcessing::GetThumbnail,
           {{"Size", ipUseDefault},
            ColorArgument("BackColor", ipUseDefault),
            {"AddDropShadow", false},
            {"OffsetX", ipUseDefault},
            {"OffsetY", ipUseDefault},
            ColorArgument("ShadowColor", ipUseDefault),
            {"Opacity", ipUseDefault},
            {"BlurLevel", ipUseDefault}},
           "Makes a reduced copy of the picture; the size is in percent of its width."),
    Method("SaveThumbnail", 47, &ImageProcessing::SaveThumbnail, {{"Filename", ""}, {"Size", ipUseDefault}},
           "Writes a thumbnail and returns the name of its file; empty if it could not be written."),
    Method("SaveImageThumbnailEx", 48, &ImageProcessing::SaveImageThumbnailEx, {{"Filename", ""}},
           "Lets the user set up a thumbnail and writes it; False if canceled."),
};

constexpr std::tuple kEvents{
    EventOf("ImageOpen", 1, &ImageProcessing::ImageOpen, {"Filename"}, "A picture was opened."),
    EventOf("ImageSave", 2, &ImageProcessing::ImageSave, {"Filename"}, "The picture was saved."),
    EventOf("RequestOpenFilename", 3, &ImageProcessing::RequestOpenFilename, {"Filename", "CancelDefault"},
            "A name to open is needed. CancelDefault suppresses the file dialog."),
    EventOf("RequestSaveFilename", 4, &ImageProcessing::RequestSaveFilename, {"Filename", "CancelDefault"},
            "A name to save to is needed. CancelDefault suppresses the file dialog."),
    EventOf("WindowClosed", 5, &ImageProcessing::WindowClosed,
            "The window is asked to close, also if it then stays open because of unsaved changes."),
};

Reference::Pointer Create() { return Refer(std::make_shared<ImageProcessing>()); }

/// After `Terminate` the object exists without its window and all that belongs to it.
void CheckWindow(void* object) { static_cast<ImageProcessing*>(object)->Control(); }

constexpr ClassDescription kClass = MakeClass<ImageProcessing, kMembers, kEvents>({
    .name = "ImageProcessing",
    .help = "The image editor in a window of its own.",
    .create = &Create,
    .checkHandedOut = &CheckWindow,
});

}  // namespace

template <>
const ClassDescription& Describe<ImageProcessing>() {
  return kClass;
}

}  // namespace kestrel::dispatch
