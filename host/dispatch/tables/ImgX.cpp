#include <tuple>

#include "host/dispatch/Table.h"
#include "imaging/contract/Image.h"
#include "imaging/contract/ImgX.h"
#include "imaging/contract/Picture.h"

namespace kestrel::dispatch {
namespace {

constexpr std::tuple kImgXMembers{
    ReadOnly("Image", 1, &ImgX::Image,
             "The picture's size, format and pixels; Nothing while there is no picture."),
    Property("JPEGQuality", 2, &ImgX::JPEGQuality, &ImgX::JPEGQuality,
             "The quality of the next JPEG write, 1 to 100."),
    Color(Property("BackColor", 3, &ImgX::BackColor, &ImgX::BackColor,
                   "The color of new pictures that are given none; -1 is transparent.")),
};
constexpr ClassDescription kImgX =
    MakeClass<ImgX, kImgXMembers>({.name = "ImgX", .help = "A picture with its operations, without a view."});

constexpr std::tuple kImageMembers{
    ReadOnly("Width", 1, &Image::Width, "The width in pixels."),
    ReadOnly("Height", 2, &Image::Height, "The height in pixels."),
    ReadOnly("Format", 3, &Image::Format,
             "The format code of the file that the picture was loaded from; 0 if it came from no file."),
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
