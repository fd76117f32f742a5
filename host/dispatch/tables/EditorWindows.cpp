#include <tuple>

#include "host/dispatch/Table.h"
#include "imaging/contract/ImageView.h"
#include "imaging/contract/ImgXDialog.h"
#include "toolwindows/frmMaterials.h"
#include "toolwindows/frmZoom.h"

namespace kestrel::dispatch {
namespace {

constexpr std::tuple kImageViewMembers{
    ReadOnly("Image", 1, &ImageView::Image,
             "The picture's size, format and pixels; Nothing while there is no picture."),
    Property("Zoom", 2, &ImageView::Zoom, &ImageView::Zoom, "Screen pixels per picture pixel, 0.01 to 64."),
};
constexpr ClassDescription kImageView = MakeClass<ImageView, kImageViewMembers>(
    {.name = "ImageView",
     .help = "The view that shows the picture, with zoom, scrolling, a mouse tool and a selection."});

constexpr std::tuple kImgXDialogMembers{
    Property("Filename", 1, &ImgXDialog::Filename, &ImgXDialog::Filename,
             "The name of the file that the user chose."),
};
constexpr ClassDescription kImgXDialog = MakeClass<ImgXDialog, kImgXDialogMembers>(
    {.name = "ImgXDialog", .help = "The dialog that asks for a file to open or to save to."});

constexpr std::tuple kFrmZoomMembers{
    Method("RedrawZoomWindow", 1, &frmZoom::RedrawZoomWindow, "Shows the surroundings of the pointer."),
    Property("ZoomLevel", 2, &frmZoom::ZoomLevel, &frmZoom::ZoomLevel, "Screen pixels per picture pixel."),
};
constexpr ClassDescription kFrmZoom = MakeClass<frmZoom, kFrmZoomMembers>(
    {.name = "frmZoom", .help = "The tool window that magnifies the picture around the pointer."});

constexpr std::tuple kFrmMaterialsMembers{};
constexpr ClassDescription kFrmMaterials = MakeClass<frmMaterials, kFrmMaterialsMembers>(
    {.name = "frmMaterials", .help = "The tool window of the two material colors."});

}  // namespace

template <>
const ClassDescription& Describe<ImageView>() {
  return kImageView;
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
