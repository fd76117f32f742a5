#include "settings/Options.h"

#include <memory>
#include <tuple>

#include "host/dispatch/Table.h"

namespace kestrel::dispatch {
namespace {

constexpr std::tuple kMembers{
    Property("JPEGQuality", 1, &Options::JPEGQuality, &Options::JPEGQuality,
             "The quality of JPEG files, 1 to 100."),
    Color(Property("MaterialBackColor", 2, &Options::MaterialBackColor, &Options::MaterialBackColor,
                   "The background color of the materials; -1 means no fill.")),
    Color(Property("MaterialForeColor", 3, &Options::MaterialForeColor, &Options::MaterialForeColor,
                   "The foreground color of the materials.")),
    Property("ThumbnailSize", 4, &Options::ThumbnailSize, &Options::ThumbnailSize,
             "The size of thumbnails, in the unit of ThumbnailSizeType."),
    Color(Property("ThumbnailBackgroundColor", 5, &Options::ThumbnailBackgroundColor,
                   &Options::ThumbnailBackgroundColor, "The color behind transparent parts of thumbnails.")),
    Property("ThumbnailAutomaticUpdate", 6, &Options::ThumbnailAutomaticUpdate,
             &Options::ThumbnailAutomaticUpdate, "Whether a save writes the thumbnail file too."),
    Property("ThumbnailAddDropShadow", 7, &Options::ThumbnailAddDropShadow, &Options::ThumbnailAddDropShadow,
             "Whether thumbnails have a drop shadow."),
    Property("ThumbnailAutoCheck", 8, &Options::ThumbnailAutoCheck, &Options::ThumbnailAutoCheck,
             "Whether the save dialog proposes to write the thumbnail file if there is one."),
    Property("ZoomLevel", 9, &Options::ZoomLevel, &Options::ZoomLevel,
             "The magnification of the Zoom window."),
    Property("UndoLevels", 10, &Options::UndoLevels, &Options::UndoLevels,
             "The number of undo steps of a new editor."),
    Property("ResizeCanvasLockAspectRatio", 11, &Options::ResizeCanvasLockAspectRatio,
             &Options::ResizeCanvasLockAspectRatio, "Canvas size dialog: whether the aspect ratio is kept."),
    Property("ResizeCanvasWidth", 12, &Options::ResizeCanvasWidth, &Options::ResizeCanvasWidth,
             "Canvas size dialog: the width in pixels."),
    Property("ResizeCanvasPlacement", 13, &Options::ResizeCanvasPlacement, &Options::ResizeCanvasPlacement,
             "Canvas size dialog: the place of the picture on the canvas, 0 to 8 by rows."),
    Property("ResizeCanvasHeight", 14, &Options::ResizeCanvasHeight, &Options::ResizeCanvasHeight,
             "Canvas size dialog: the height in pixels."),
    Color(Property("ResizeCanvasColor", 15, &Options::ResizeCanvasColor, &Options::ResizeCanvasColor,
                   "Canvas size dialog: the color of the new area.")),
    Color(Property("FlattenAlphaColor", 16, &Options::FlattenAlphaColor, &Options::FlattenAlphaColor,
                   "The color that replaces transparency.")),
    Color(Property("PasteSpecialMaskColor", 17, &Options::PasteSpecialMaskColor,
                   &Options::PasteSpecialMaskColor, "The color that is transparent in a special paste.")),
    Property("ResizeLockAspectRatio", 18, &Options::ResizeLockAspectRatio, &Options::ResizeLockAspectRatio,
             "Resize dialog: whether the aspect ratio is kept."),
    Property("ResizeWidth", 19, &Options::ResizeWidth, &Options::ResizeWidth,
             "Resize dialog: the width in pixels."),
    Property("ResizeHeight", 20, &Options::ResizeHeight, &Options::ResizeHeight,
             "Resize dialog: the height in pixels."),
    Property("ResizeScale", 21, &Options::ResizeScale, &Options::ResizeScale,
             "Resize dialog: the scale in percent."),
    Property("ResizeMode", 22, &Options::ResizeMode, &Options::ResizeMode,
             "Resize dialog: the resampling method."),
    Color(Property("DropShadowColor", 23, &Options::DropShadowColor, &Options::DropShadowColor,
                   "The color of drop shadows.")),
    Property("DropShadowAutomaticMask", 24, &Options::DropShadowAutomaticMask,
             &Options::DropShadowAutomaticMask,
             "Whether the mask color of a contoured drop shadow is taken from the picture."),
    Color(Property("DropShadowMaskColor", 25, &Options::DropShadowMaskColor, &Options::DropShadowMaskColor,
                   "The mask color of a contoured drop shadow.")),
    Property("DropShadowHorizontalOffset", 26, &Options::DropShadowHorizontalOffset,
             &Options::DropShadowHorizontalOffset, "The horizontal offset of drop shadows in pixels."),
    Property("DropShadowVerticalOffset", 27, &Options::DropShadowVerticalOffset,
             &Options::DropShadowVerticalOffset, "The vertical offset of drop shadows in pixels."),
    Property("DropShadowBlur", 28, &Options::DropShadowBlur, &Options::DropShadowBlur,
             "The blur of drop shadows, 0 to 255."),
    Property("DropShadowOpacity", 29, &Options::DropShadowOpacity, &Options::DropShadowOpacity,
             "The opacity of drop shadows in percent."),
    Property("RotateAngle", 30, &Options::RotateAngle, &Options::RotateAngle,
             "Rotate dialog: the angle in degrees."),
    Property("RotateDirection", 31, &Options::RotateDirection, &Options::RotateDirection,
             "Rotate dialog: the direction."),
    Color(Property("BackgroundGridColor1", 32, &Options::BackgroundGridColor1, &Options::BackgroundGridColor1,
                   "The first color of the grid behind transparent pictures.")),
    Color(Property("BackgroundGridColor2", 33, &Options::BackgroundGridColor2, &Options::BackgroundGridColor2,
                   "The second color of the grid behind transparent pictures.")),
    Property("BackgroundGridSize", 34, &Options::BackgroundGridSize, &Options::BackgroundGridSize,
             "The size of the grid's squares in pixels."),
    Property("ThumbnailSizeType", 35, &Options::ThumbnailSizeType, &Options::ThumbnailSizeType,
             "The unit of ThumbnailSize."),
};

Reference::Pointer Create() { return Refer(std::make_shared<Options>()); }

constexpr ClassDescription kClass = MakeClass<Options, kMembers>({
    .name = "Options",
    .help = "The user's settings, which all editors of the process share.",
    .create = &Create,
});

}  // namespace

template <>
const ClassDescription& Describe<Options>() {
  return kClass;
}

}  // namespace kestrel::dispatch
