#include <cstdint>
#include <tuple>

#include "editor/interface/IImageProcessingCtl.h"
#include "host/dispatch/ControlRows.h"
#include "host/dispatch/Table.h"
#include "imaging/contract/Form.h"
#include "imaging/contract/ImgXDialog.h"
#include "toolwindows/frmMaterials.h"
#include "toolwindows/frmZoom.h"

namespace kestrel::dispatch {
namespace {

// -- The file dialog --------------------------------------------------------------------------------------

constexpr std::tuple kImgXDialogMembers{
    Property("Filename", 1, &ImgXDialog::Filename, &ImgXDialog::Filename,
             "The name of the file that the user chose."),
    WriteOnly("OwnerWindow", 2, &ImgXDialog::OwnerWindow, "The window that the dialog belongs to."),
    Property(
        "Filter", 3, &ImgXDialog::Filter, &ImgXDialog::Filter,
        "Descriptions and patterns in turn, joined by \"|\"; the patterns of one entry joined by \";\"."),
    Property("Flags", 4, &ImgXDialog::Flags, &ImgXDialog::Flags,
             "The sum of 2 ask before a file is overwritten, 4 hide read-only, 2048 the folder must exist, "
             "4096 the file must exist."),
    Property("DefaultExt", 5, &ImgXDialog::DefaultExt, &ImgXDialog::DefaultExt,
             "Appended to a name that is typed without an extension; empty for none."),
    WriteOnly("CenterOnOwner", 6, &ImgXDialog::CenterOnOwner, "Whether it is centered on its owner."),
    WriteOnly("FilterIndex", 7, &ImgXDialog::FilterIndex,
              "The filter entry that is selected first, counted from 0."),
    WriteOnly("MaxFiles", 8, &ImgXDialog::MaxFiles, "The maximum number of files; 1 is single selection."),
    Method("ShowOpen", 9, &ImgXDialog::ShowOpen,
           "Asks for a file to open. True if the user accepted a name, which is then in Filename."),
    Method("ShowSave", 10, &ImgXDialog::ShowSave,
           "Asks for a file to save to. True if the user accepted a name, which is then in Filename."),
    Method("GetControlRect", 11, &ImgXDialog::GetControlRect, {"ControlId", "Left", "Top", "Width", "Height"},
           "During InitDialog: the pixel rectangle of a stock control of the dialog."),
    Method("MoveControl", 12, &ImgXDialog::MoveControl, {"WindowHandle", "X", "Y"},
           "During InitDialog: moves a window into the dialog, until the dialog closes."),
};
constexpr std::tuple kImgXDialogEvents{
    EventOf("InitDialog", 1, &ImgXDialog::InitDialog, {"DialogWidth", "DialogHeight"},
            "The dialog is about to be shown. A handler may change its size in pixels."),
};
constexpr ClassDescription kImgXDialog = MakeClass<ImgXDialog, kImgXDialogMembers, kImgXDialogEvents>(
    {.name = "ImgXDialog", .help = "The dialog that asks for a file to open or to save to."});

// -- The tool windows -------------------------------------------------------------------------------------

/// An editor does not know the windows of another one, so its end would leave them with an editor that is
/// gone.
void RequireOwn(bool isOwn, const char* window) {
  if (!isOwn) throw RuntimeError(err::kInvalidCall, "The window belongs to another editor.", window);
}

IImageProcessingCtl* ApplicationOfZoom(frmZoom& window) { return window.Application(); }
void SetApplicationOfZoom(frmZoom& window, IImageProcessingCtl* editor) {
  RequireOwn(!editor || editor->ZoomWindow() == &window, "frmZoom");
  window.Application(editor);
}
IImageProcessingCtl* ApplicationOfMaterials(frmMaterials& window) { return window.Application(); }
void SetApplicationOfMaterials(frmMaterials& window, IImageProcessingCtl* editor) {
  RequireOwn(!editor || editor->MaterialsWindow() == &window, "frmMaterials");
  window.Application(editor);
}

/// The member takes its arguments by reference and leaves them as they are.
void RedrawZoomWindowEx(frmZoom& window, std::int32_t& x, std::int32_t& y) {
  window.RedrawZoomWindowEx(x, y);
}

constexpr std::tuple kFrmZoomMembers{
    Method("RedrawZoomWindow", 1, &frmZoom::RedrawZoomWindow, "Shows the surroundings of the pointer."),
    Property("ZoomLevel", 2, &frmZoom::ZoomLevel, &frmZoom::ZoomLevel, "Screen pixels per picture pixel."),
    Method("RedrawZoomWindowEx", 3, &RedrawZoomWindowEx, {"X", "Y"},
           "Shows the surroundings of a picture pixel. Does nothing while the window is hidden."),
    Method("ClearZoomWindow", 4, &frmZoom::ClearZoomWindow, "Clears the window."),
    Property("Application", 5, &ApplicationOfZoom, &SetApplicationOfZoom,
             "The editor that the window belongs to; Nothing disconnects the window from it."),
    ReadOnly("Form", 6, &frmZoom::Form, "The window itself."),
};
constexpr ClassDescription kFrmZoom = MakeClass<frmZoom, kFrmZoomMembers>(
    {.name = "frmZoom", .help = "The tool window that magnifies the picture around the pointer."});

constexpr std::tuple kFrmMaterialsMembers{
    Property("Application", 1, &ApplicationOfMaterials, &SetApplicationOfMaterials,
             "The editor that the window belongs to; Nothing disconnects the window from it."),
    ReadOnly("Form", 2, &frmMaterials::Form, "The window itself."),
};
constexpr ClassDescription kFrmMaterials = MakeClass<frmMaterials, kFrmMaterialsMembers>(
    {.name = "frmMaterials", .help = "The tool window of the two material colors."});

// -- A window ---------------------------------------------------------------------------------------------

constexpr auto kFormMembers = std::tuple_cat(
    std::tuple{
        Property("Caption", 1, &Form::Caption, &Form::Caption, "The text of its title bar."),
        Property("WindowState", 2, &Form::WindowState, &Form::WindowState,
                 "0 normal, 1 minimized, 2 maximized."),
        ReadOnly("ScaleWidth", 3, &Form::ScaleWidth, "The inner width in pixels."),
        ReadOnly("ScaleHeight", 4, &Form::ScaleHeight, "The inner height in pixels."),
        Color(ReadOnly("BackColor", 5, &Form::BackColor, "The background color of the window.")),
        ReadOnly("NormalPlace", 6, &Form::NormalPlace,
                 "Where the window is while it is neither maximized nor minimized."),
    },
    kControlRows);
constexpr std::tuple kFormEvents{
    EventOf("Resize", 1, &Form::Resize, "The window has another size."),
};
constexpr ClassDescription kForm =
    MakeClass<Form, kFormMembers, kFormEvents>({.name = "Form", .help = "A window of the editor."});

}  // namespace

template <>
const ClassDescription& Describe<Form>() {
  return kForm;
}
template <>
const ClassDescription& Describe<ImgXDialog>() {
  return kImgXDialog;
}
template <>
const ClassDescription& Describe<frmZoom>() {
  return kFrmZoom;
}
template <>
const ClassDescription& Describe<frmMaterials>() {
  return kFrmMaterials;
}

}  // namespace kestrel::dispatch
