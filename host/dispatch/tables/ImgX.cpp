#include <tuple>

#include "host/dispatch/FaceRows.h"
#include "host/dispatch/Table.h"
#include "imaging/contract/Image.h"
#include "imaging/contract/ImgX.h"
#include "imaging/contract/Picture.h"
#include "imaging/contract/Surface.h"
#include "settings/modProcessing.h"

namespace kestrel::dispatch {
namespace {

Reference::Pointer CreateImgX() { return Refer(modProcessing::Platform().CreateImgX()); }

constexpr auto kImgXMembers = std::tuple_cat(
    std::tuple{
        ReadOnly("Image", 1, &ImgX::Image,
                 "The picture's size, format and pixels; Nothing while there is no picture."),
        Property("JPEGQuality", 2, &ImgX::JPEGQuality, &ImgX::JPEGQuality,
                 "The quality of the next JPEG write, 1 to 100."),
        Color(Property("BackColor", 3, &ImgX::BackColor, &ImgX::BackColor,
                       "The color of new pictures that are given none; -1 is transparent.")),
        ReadOnly("Surface", 4, &ImgX::Surface, "Copies the picture to a device context."),
    },
    kFaceRows);
constexpr ClassDescription kImgX = MakeClass<ImgX, kImgXMembers>(
    {.name = "ImgX", .help = "A picture with its operations, without a view.", .create = &CreateImgX});

constexpr std::tuple kImageMembers{
    ReadOnly("Width", 1, &Image::Width, "The width in pixels."),
    ReadOnly("Height", 2, &Image::Height, "The height in pixels."),
    ReadOnly("Format", 3, &Image::Format,
             "The format code of the file that the picture was loaded from; 0 if it came from no file."),
    Method("GetPixel", 4, &Image::GetPixel, {"X", "Y"},
           "The color of one pixel, its alpha included. Raises error 5 outside the picture."),
    Method("Convert", 5, &Image::Convert, {{"Background", nullptr}, {"PixelFormat", kPixelFormatRgba}},
           "Prepares the picture for resampling. The only pixel format is 5."),
    ReadOnly("Pages", 6, &Image::Pages, "The number of pages in that file; 1 if it came from no file."),
    ReadOnly("DecodeErrors", 7, &Image::DecodeErrors,
             "A sentence for the user if the file was damaged and the picture is incomplete; else empty."),
};
constexpr ClassDescription kImage = MakeClass<Image, kImageMembers>(
    {.name = "Image", .help = "The current picture of a view or of an ImgX object."});

constexpr std::tuple kPictureMembers{
    ReadOnly("Width", 1, &Picture::Width, "The width in pixels."),
    ReadOnly("Height", 2, &Picture::Height, "The height in pixels."),
};
constexpr ClassDescription kPicture = MakeClass<Picture, kPictureMembers>(
    {.name = "Picture", .help = "An immutable picture that can be passed around, shown and loaded."});

}  // namespace

template <>
const ClassDescription& Describe<ImgX>() {
  return kImgX;
}
template <>
const ClassDescription& Describe<Image>() {
  return kImage;
}
template <>
const ClassDescription& Describe<Picture>() {
  return kPicture;
}

}  // namespace kestrel::dispatch
