#pragma once

#include <cstdint>
#include <string>

#include "imaging/contract/FileHelpers.h"
#include "imaging/contract/ImageView.h"
#include "imaging/contract/ImgX.h"

/// The small image helpers that several classes share. They hold no state. Those that call the engine report
/// nothing themselves: its errors go straight to the caller.
namespace kestrel::modImgX {

/// The extension of a format code, without a point; empty for a code that is none.
std::string GetImageExtension(std::int32_t Format);

/// Whether files of the format can be written: codes 1 to 12.
bool IsValidSaveFormat(std::int32_t Format);

/// The format code that a file name's extension stands for. Whatever is not in the table is a bitmap, ".tiff"
/// and ".pcd" too.
std::int32_t GetSaveFormatFromFilename(const std::string& Filename, FileHelpers& Files);

/// Takes a second extension off a name that the file dialog has put its own extension behind. It looks from
/// the first backslash on, so that a folder with a point in its name counts as the first extension.
std::string FixDuplicateExtension(const std::string& Filename);

/// Writes a picture to a file through the given fresh `ImgX` object. Always true; failures are raised.
bool SavePictureToFile(ImgX& Work, const Picture& Source, const std::string& Filename, std::int32_t Format,
                       std::int32_t JPEGQuality);

/// Whether there is a selection: shown, and neither of its sizes 0. Negative sizes pass.
bool ValidSelection(const ImageView* Control);

/// Whether a point of the view lies in the picture. The bounds are inclusive, so that the column and row
/// right behind the last ones count; the zoom has no say.
bool InImageRegion(ImageView& Control, std::int32_t X, std::int32_t Y);

/// Whether a point of the view lies in the selection, its edges included. With `Pixels` the point (0, 0) of
/// the picture is tested, whatever X and Y are.
bool InImageSelection(ImageView& Control, std::int32_t X, std::int32_t Y, bool Pixels);

/// Puts a copy of the selected pixels into `Dest`. The source stays as it is.
void CreateSection(ImageView& Source, ImgX& Dest);

/// Draws a section, honouring its alpha, back at the top left corner of the pixels that `CreateSection` took,
/// and takes the selection away. A section of another size keeps that corner. The drawing is a step of the
/// undo name's; "No Undo" makes it part of the undo point before it.
void ApplySection(ImgX& Source, ImageView& Dest, const std::string& UndoName = {});

/// Converts the picture to the palette of that type.
void ApplyPalette(ImgX& Image, std::int32_t PaletteType);

/// A box with a fill, an outline over it, or both; a colour of -1 leaves its part out. Changes `Draw.Color`;
/// a fill leaves `Draw.FillMode` at -1. Raises RuntimeError 6 where an edge lies beyond 32 bits.
void DrawBox(Draw& Draw, std::int32_t Left, std::int32_t Top, std::int32_t Width, std::int32_t Height,
             OLE_COLOR ForeColor, OLE_COLOR BackColor);

/// Makes `Tile` one tile of the checkered ground behind transparent pixels: 2 x Size wide and high, `Color1`
/// in the top right and bottom left quarters, `Color2` in the other two. Raises RuntimeError 6 where the tile
/// would be larger than 32 bits can say.
void DrawBackgroundTile(ImgX& Tile, std::int32_t Size, OLE_COLOR Color1, OLE_COLOR Color2);

/// Gives a view the two-coloured checker that shows through transparent pixels, with squares of the size.
void SetupBackground(ImageView& Control, std::int32_t Size, OLE_COLOR Color1, OLE_COLOR Color2);

}  // namespace kestrel::modImgX
