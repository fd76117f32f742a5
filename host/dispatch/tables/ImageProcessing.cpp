#include "host/ImageProcessing.h"

#include <memory>
#include <tuple>

#include "host/dispatch/EditorRows.h"
#include "host/dispatch/Table.h"
#include "imaging/contract/Image.h"
#include "imaging/contract/ImgX.h"
#include "imaging/contract/Moorage.h"
#include "settings/Options.h"

namespace kestrel::dispatch {
namespace {

using Shared = EditorRows<ImageProcessing>;

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
    Shared::Options(7),
    Shared::Format(8),
    Property("Tool", 9, &ImageProcessing::Tool, &ImageProcessing::Tool,
             "The selected tool. A write of another tool clears the selection."),
    Shared::ShowClose(10),
    Shared::Image(11),
    Shared::ImgX(12),
    Shared::Commands(13),
    Shared::CommandBars(14),
    Shared::Filename(15),
    Shared::OpenImage(16),
    Shared::SaveImage(17),
    Shared::SaveImageAs(18),
    Shared::SetSelection(19),
    Shared::SelectAll(20),
    Shared::Copy(21),
    Shared::Cut(22),
    Shared::Resize(23),
    Shared::ResizeCanvas(24),
    Shared::Rotate(25),
    Shared::FlipHorizontally(26),
    Shared::FlipVertically(27),
    Shared::ApplyGrayScale(28),
    Shared::FlattenAlpha(29),
    Shared::ApplyDropShadow(30),
    Shared::ApplyMaskedDropShadow(31),
    Shared::CropToSelection(32),
    Shared::Undo(33),
    Shared::Redo(34),
    Shared::ZoomIn(35),
    Shared::ZoomOut(36),
    Shared::ZoomActualSize(37),
    Shared::ShowFlattenAlphaDialog(38),
    Shared::ShowRotateDialog(39),
    Shared::ShowMaskedDropShadowDialog(40),
    Shared::ShowDropShadowDialog(41),
    Shared::ShowResizeCanvasDialog(42),
    Shared::ShowResizeDialog(43),
    Shared::ShowGetThumnailDialog(44),
    Method("ShowOptions", 45, &ImageProcessing::ShowOptions,
           "Lets the user edit the settings. The result is always False."),
    Shared::GetThumbnail(46),
    Method("SaveThumbnail", 47, &ImageProcessing::SaveThumbnail, {{"Filename", ""}, {"Size", ipUseDefault}},
           "Writes a thumbnail and returns the name of its file; empty if it could not be written."),
    Method("SaveImageThumbnailEx", 48, &ImageProcessing::SaveImageThumbnailEx, {{"Filename", ""}},
           "Lets the user set up a thumbnail and writes it; False if canceled."),
};

constexpr std::tuple kEvents{
    Shared::ImageOpen(1),
    Shared::ImageSave(2),
    Shared::RequestOpenFilename(3),
    Shared::RequestSaveFilename(4),
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
