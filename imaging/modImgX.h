#pragma once

#include <cstdint>
#include <string>

#include "imaging/contract/FileHelpers.h"
#include "imaging/contract/ImageView.h"
#include "imaging/contract/ImgX.h"

/// Image helpers shared by several classes. They hold no state. Engine errors propagate to the caller
/// unreported.
namespace kestrel::modImgX {

/// The extension of a format code, without a point; empty for an unknown code.
std::string GetImageExtension(std::int32_t Format);

/// Whether files of the format can be written: codes 1 to 12.
bool IsValidSaveFormat(std::int32_t Format);

/// The format code of a file name's extension. Extensions outside the table mean a bitmap, also ".tiff" and
/// ".pcd".
std::int32_t GetSaveFormatFromFilename(const std::string& Filename, FileHelpers& Files);

/// Whether a file of that format keeps less of the picture's transparency than there is. The rest is
/// composited over white.
bool LosesTransparency(const Image& Source, std::int32_t Format);

/// Removes a second extension from a name to which the file dialog has appended its own. The search starts at
/// the first backslash, so a point in a folder's name counts as the first extension.
std::string FixDuplicateExtension(const std::string& Filename);

/// Writes a picture to a file through the given new `ImgX` object. Always true; failures are raised.
bool SavePictureToFile(ImgX& Work, const Picture& Source, const std::string& Filename, std::int32_t Format,
                       std::int32_t JPEGQuality);

/// Whether there is a selection: visible, with both sizes nonzero. Negative sizes are valid.
bool ValidSelection(const ImageView* Control);

/// Whether a point of the view is in the picture. The bounds are inclusive: the column and row after the last
/// ones count. Ignores the zoom.
bool InImageRegion(ImageView& Control, std::int32_t X, std::int32_t Y);

/// Whether a point of the view is in the selection, its edges included. With `Pixels` the picture's point (0,
/// 0) is tested and X and Y are ignored.
bool InImageSelection(ImageView& Control, std::int32_t X, std::int32_t Y, bool Pixels);

/// Copies the selected pixels into `Dest`. The source is unchanged.
void CreateSection(ImageView& Source, ImgX& Dest);

/// Composites a section at the top left corner of the pixels that `CreateSection` copied, and clears the
/// selection. A section of another size keeps that corner. The undo step has the given name; "No Undo" makes
/// the drawing part of the undo point before it.
void ApplySection(ImgX& Source, ImageView& Dest, const std::string& UndoName = {});

/// Converts the picture to the palette of that type.
void ApplyPalette(ImgX& Image, std::int32_t PaletteType);

/// Draws a box with a fill, an outline over it, or both; a color of -1 omits its part. Changes `Draw.Color`;
/// a fill leaves `Draw.FillMode` at -1. Raises RuntimeError 6 if an edge exceeds 32 bits.
void DrawBox(Draw& Draw, std::int32_t Left, std::int32_t Top, std::int32_t Width, std::int32_t Height,
             OLE_COLOR ForeColor, OLE_COLOR BackColor);

/// Makes `Tile` one tile of the checkerboard behind transparent pixels: 2 x Size wide and high, `Color1` in
/// the top right and bottom left quarters, `Color2` in the other two. Raises RuntimeError 6 if the tile's
/// size exceeds 32 bits.
void DrawBackgroundTile(ImgX& Tile, std::int32_t Size, OLE_COLOR Color1, OLE_COLOR Color2);

/// Sets the checkerboard that a view shows through transparent pixels; `Size` is the side of one square in
/// pixels.
void SetupBackground(ImageView& Control, std::int32_t Size, OLE_COLOR Color1, OLE_COLOR Color2);

}  // namespace kestrel::modImgX
