#include <tuple>

#include "host/dispatch/Table.h"
#include "imaging/contract/Alpha.h"
#include "imaging/contract/DeviceContext.h"
#include "imaging/contract/Document.h"
#include "imaging/contract/Draw.h"
#include "imaging/contract/Effects.h"
#include "imaging/contract/ImgX.h"
#include "imaging/contract/Surface.h"
#include "imaging/contract/Writer.h"

namespace kestrel::dispatch {
namespace {

constexpr ArgumentRow kUndoName{"UndoName", ""};

// -- Document and Writer ----------------------------------------------------------------------------------

constexpr std::tuple kDocumentMembers{
    Method("FromFile", 1, &Document::FromFile, {"Filename", {"Page", 0}, kUndoName},
           "Loads a file, whose content decides the format. Page 0 is the first."),
    Method("FromPicture", 2, &Document::FromPicture, {"Picture", kUndoName}, "Loads a picture object."),
    Method("Paste", 3, &Document::Paste, {kUndoName},
           "Replaces the picture by the clipboard's. Raises error 521 if the clipboard holds none."),
    Method("CopyFrom", 4, &Document::CopyFrom, {"Source", {"Mode", 0}, kUndoName},
           "Replaces the picture by a copy of the one of another ImgX object."),
    Method("NewImage", 5, &Document::NewImage,
           {"Width", "Height", "Background", {"PixelFormat", kPixelFormatRgba}, kUndoName},
           "Makes a blank picture of the background color; it is transparent if that is Nothing."),
};
constexpr ClassDescription kDocument = MakeClass<Document, kDocumentMembers>(
    {.name = "Document",
     .help = "Replaces the whole picture. UndoName names the undo step; \"No Undo\" records none. After an "
             "error the previous picture is kept."});

constexpr std::tuple kWriterMembers{
    Method("ToFile", 1, &Writer::ToFile, {"Filename", "Format", {"Options", 0}, {"Overwrite", true}},
           "Writes the picture in the format of the code; 0 takes it from the extension. After an error an "
           "existing file is unchanged."),
    Method("ToClipboard", 2, &Writer::ToClipboard, "Puts the picture on the clipboard."),
    Method("ToPicture", 3, &Writer::ToPicture, "The picture as a picture object."),
};
constexpr ClassDescription kWriter = MakeClass<Writer, kWriterMembers>(
    {.name = "Writer", .help = "Writes the picture to a file, the clipboard or a picture object."});

// -- Draw -------------------------------------------------------------------------------------------------

constexpr std::tuple kDrawMembers{
    ReadOnly("Color", 1, &Draw::Color,
             "The color of the mouse tools and of Rectangle, which is changed through its Value."),
    Property("FillMode", 2, &Draw::FillMode, &Draw::FillMode, "6 fills a shape, -1 draws its outline only."),
    Property("PenSetting", 3, &Draw::PenSetting, &Draw::PenSetting,
             "The width of the pen in picture pixels, at least 1."),
    Method("Rectangle", 4, &Draw::Rectangle,
           {"StartPoint", "EndPoint", {"RadiusX", 0}, {"RadiusY", 0}, kUndoName},
           "Draws the rectangle between two points with Color and FillMode. The larger coordinates are "
           "exclusive. The radii round its corners."),
    Method("Image", 5, &Draw::Image, {"Source", "X", "Y", "MaskColor", "Opacity", "Blend", kUndoName},
           "Composites an image with its top left corner at (X, Y). Pixels of the mask color are skipped; "
           "Opacity is 0 to 1; Blend applies the alpha of the source."),
    Method("ImageWithAlpha", 6, &Draw::ImageWithAlpha, {"Source", "X", "Y", kUndoName},
           "Composites an image with its alpha."),
};
constexpr ClassDescription kDraw =
    MakeClass<Draw, kDrawMembers>({.name = "Draw", .help = "Draws on the picture."});

// -- Effects ----------------------------------------------------------------------------------------------

constexpr std::tuple kEffectsMembers{
    Method("Crop", 1, &Effects::Crop, {"Left", "Top", "Width", "Height", kUndoName},
           "Crops to the rectangle, clipped to the picture. Negative sizes extend left and up."),
    Method("Flip", 2, &Effects::Flip, {"Direction", kUndoName}, "0 left to right, 1 top to bottom."),
    Method("Resize", 3, &Effects::Resize, {"Width", "Height", "ResampleMethod", kUndoName},
           "Resamples to the size; height 0 keeps the aspect ratio. Methods: 0 bilinear, 1 bicubic, 2 pixel, "
           "3 decimate, 13 Lanczos."),
    Method("ResizeCanvas", 4, &Effects::ResizeCanvas,
           {"Width", "Height", "Colour", "OffsetX", "OffsetY", kUndoName},
           "Places the picture at the offset on a canvas of the size and color."),
    Method("Rotate", 5, &Effects::Rotate, {"Angle", "Colour", {"Quality", 0}, kUndoName},
           "Rotates clockwise by an angle in degrees and grows the canvas to hold the whole picture. The "
           "color fills the exposed corners, which are transparent if it is Nothing."),
    Method("DropShadow", 6, &Effects::DropShadow, {"OffsetX", "OffsetY", "Colour", "Blur", "Grow", kUndoName},
           "Adds a shadow below the picture. The alpha of the color is the opacity, Blur is 0 to 255. With "
           "Grow the picture grows to hold the shadow."),
    Method("ReplaceColor", 7, &Effects::ReplaceColor, {"From", "To", "Tolerance", {"Mode", 0}, kUndoName},
           "Replaces the pixels of a color, within the tolerance, by another color."),
    Method("ApplyPalette", 8, &Effects::ApplyPalette, {"Palette", "Dither", kUndoName},
           "Converts the colors to those of the palette; alpha is unchanged."),
};
constexpr ClassDescription kEffects = MakeClass<Effects, kEffectsMembers>(
    {.name = "Effects",
     .help = "Changes the whole picture. Raises error 91 without a picture. After an error the picture is "
             "unchanged."});

constexpr std::tuple kAlphaMembers{
    Method("Flatten", 1, &Alpha::Flatten, {"Colour", kUndoName},
           "Composites the picture over the color; the result is opaque."),
};
constexpr ClassDescription kAlpha =
    MakeClass<Alpha, kAlphaMembers>({.name = "Alpha", .help = "The picture's transparency."});

// -- Surfaces ---------------------------------------------------------------------------------------------

void DrawTo(Surface& surface, DeviceContext& target, std::int32_t x, std::int32_t y,
            std::int32_t rasterOperation) {
  surface.DrawTo(target, x, y, static_cast<std::uint32_t>(rasterOperation));
}

constexpr std::tuple kSurfaceMembers{
    Method(
        "DrawTo", 1, &DrawTo, {"hDC", "X", "Y", {"RasterOperation", static_cast<std::int32_t>(kSourceCopy)}},
        "Copies the picture, unscaled, with its top left corner at (X, Y), clipped to the target. The only "
        "raster operation is SRCCOPY, &HCC0020."),
};
constexpr ClassDescription kSurface =
    MakeClass<Surface, kSurfaceMembers>({.name = "Surface", .help = "Copies a picture to a device context."});

constexpr std::tuple kDeviceContextMembers{
    ReadOnly("Width", 1, &DeviceContext::Width, "The width in pixels."),
    ReadOnly("Height", 2, &DeviceContext::Height, "The height in pixels."),
};
constexpr ClassDescription kDeviceContext = MakeClass<DeviceContext, kDeviceContextMembers>(
    {.name = "DeviceContext",
     .help = "The back buffer of a view, for Surface.DrawTo. It exists until the event has ended."});

}  // namespace

template <>
const ClassDescription& Describe<Document>() {
  return kDocument;
}
template <>
const ClassDescription& Describe<Writer>() {
  return kWriter;
}
template <>
const ClassDescription& Describe<Draw>() {
  return kDraw;
}
template <>
const ClassDescription& Describe<Effects>() {
  return kEffects;
}
template <>
const ClassDescription& Describe<Alpha>() {
  return kAlpha;
}
template <>
const ClassDescription& Describe<Surface>() {
  return kSurface;
}
template <>
const ClassDescription& Describe<DeviceContext>() {
  return kDeviceContext;
}

Colour* Locate<Colour>::Find(Draw& draw, const std::string& /*key*/) { return &draw.Color(); }

}  // namespace kestrel::dispatch
