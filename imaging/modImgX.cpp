#include "modImgX.h"

#include <algorithm>
#include <utility>

#include "base/Arithmetic.h"
#include "base/Numbers.h"
#include "base/Required.h"
#include "diagnostics/Trailer.h"
#include "imaging/contract/Formats.h"

namespace kestrel::modImgX {
namespace {

bool Between(std::int64_t low, std::int64_t value, std::int64_t high) {
  return low <= value && value <= high;
}

/// The first pixel of a section along one axis: a negative size extends back from the position; clamped to
/// the picture's start.
std::int32_t SectionStart(std::int32_t position, std::int32_t size) {
  const std::int64_t start = std::int64_t{position} + std::min(size, 0);
  return static_cast<std::int32_t>(std::max<std::int64_t>(start, 0));
}

bool HasTransparency(const PixelRows& Pixels) {
  for (std::int32_t y = 0; y < Pixels.Height; ++y) {
    const std::uint8_t* const row = Pixels.Data + static_cast<std::size_t>(y) * Pixels.Stride;
    unsigned common = 255;
    for (std::int32_t x = 0; x < Pixels.Width; ++x) common &= row[4 * x + 3];
    if (common != 255) return true;
  }
  return false;
}

bool HasPartialTransparency(const PixelRows& Pixels) {
  for (std::int32_t y = 0; y < Pixels.Height; ++y) {
    const std::uint8_t* const row = Pixels.Data + static_cast<std::size_t>(y) * Pixels.Stride;
    for (std::int32_t x = 0; x < Pixels.Width; ++x) {
      const std::uint8_t alpha = row[4 * x + 3];
      if (alpha != 0 && alpha != 255) return true;
    }
  }
  return false;
}

}  // namespace

std::string GetImageExtension(std::int32_t Format) {
  std::string Result;
  try {
    if (const FileFormat* const row = FormatOf(Format)) Result = row->Extensions[0];
  } catch (...) {
    QDK_TRAILER(GetImageExtension, QDK_PARAMETERS(Format), QDK_LOCALS(Result));
  }
  return Result;
}

bool IsValidSaveFormat(std::int32_t Format) {
  const FileFormat* const row = FormatOf(Format);
  return row != nullptr && row->Writable;
}

std::int32_t GetSaveFormatFromFilename(const std::string& Filename, FileHelpers& Files) {
  std::int32_t Result = format::kBmp;
  std::string Extension;
  try {
    Extension = LowerCase(Files.GetExtension(Filename, 0));
    for (const FileFormat& row : kFileFormats) {
      const auto first = row.Extensions.begin();
      const auto end = first + static_cast<std::ptrdiff_t>(row.SaveExtensions);
      if (std::find(first, end, Extension) != end) Result = row.Code;
    }
  } catch (...) {
    QDK_TRAILER(GetSaveFormatFromFilename, QDK_PARAMETERS(Filename), QDK_LOCALS(Result, Extension));
  }
  return Result;
}

bool LosesTransparency(const Image& Source, std::int32_t Format) {
  const FileFormat* const row = FormatOf(Format);
  if (row == nullptr || row->Alpha == KeptAlpha::kAll) return false;
  const PixelRows pixels = Source.Pixels();
  return row->Alpha == KeptAlpha::kNone ? HasTransparency(pixels) : HasPartialTransparency(pixels);
}

std::string FixDuplicateExtension(const std::string& Filename) {
  std::size_t SlashPosition = 0, DotPosition = 0, Dot2Position = 0;
  try {
    SlashPosition = Filename.find('\\');
    if (SlashPosition == std::string::npos) return Filename;
    DotPosition = Filename.find('.', SlashPosition);
    if (DotPosition == std::string::npos) return Filename;
    Dot2Position = Filename.find('.', DotPosition + 1);
    return Filename.substr(0, Dot2Position);
  } catch (...) {
    QDK_TRAILER(FixDuplicateExtension, QDK_PARAMETERS(Filename),
                QDK_LOCALS(SlashPosition, DotPosition, Dot2Position));
  }
  return {};
}

bool SavePictureToFile(ImgX& Work, const Picture& Source, const std::string& Filename, std::int32_t Format,
                       std::int32_t JPEGQuality) {
  Work.JPEGQuality(JPEGQuality);
  Work.Document().FromPicture(Source);
  Work.Writer().ToFile(Filename, Format, 0, true);
  return true;
}

bool ValidSelection(const ImageView* Control) {
  return Control != nullptr && Control->SelectionVisible() && Control->SelectionWidth() != 0 &&
         Control->SelectionHeight() != 0;
}

bool InImageRegion(ImageView& Control, std::int32_t X, std::int32_t Y) {
  const kestrel::Image* image = Control.Image();
  if (image == nullptr) return false;
  const std::int64_t PixelX = std::int64_t{X} + Control.ScrollLeft() - 1;
  const std::int64_t PixelY = std::int64_t{Y} + Control.ScrollTop() - 1;
  return Between(0, PixelX, image->Width()) && Between(0, PixelY, image->Height());
}

bool InImageSelection(ImageView& Control, std::int32_t X, std::int32_t Y, bool Pixels) {
  std::int64_t PixelX = 0;
  std::int64_t PixelY = 0;
  if (!Pixels) {
    PixelX = std::int64_t{X} + Control.ScrollLeft() - 1;
    PixelY = std::int64_t{Y} + Control.ScrollTop() - 1;
  }
  const std::int64_t left = Control.SelectionLeft();
  const std::int64_t top = Control.SelectionTop();
  return Between(left, PixelX, left + Control.SelectionWidth()) &&
         Between(top, PixelY, top + Control.SelectionHeight());
}

void CreateSection(ImageView& Source, ImgX& Dest) {
  const std::int32_t left = Source.SelectionLeft();
  const std::int32_t top = Source.SelectionTop();
  const std::int32_t width = Source.SelectionWidth();
  const std::int32_t height = Source.SelectionHeight();
  Dest.Document().CopyFrom(*Source.ImgX(), 0, "");
  Dest.Effects().Crop(left, top, width, height, "");
}

void ApplySection(ImgX& Source, ImageView& Dest, const std::string& UndoName) {
  const std::int32_t left = SectionStart(Dest.SelectionLeft(), Dest.SelectionWidth());
  const std::int32_t top = SectionStart(Dest.SelectionTop(), Dest.SelectionHeight());
  Dest.Draw().ImageWithAlpha(Required(Source.Image()), left, top, UndoName);
  Dest.SelectionVisible(false);
}

void ApplyPalette(ImgX& Image, std::int32_t PaletteType) {
  Palette palette;
  palette.Type(PaletteType);
  Image.Effects().ApplyPalette(palette, true, "");
}

void DrawBox(Draw& Draw, std::int32_t Left, std::int32_t Top, std::int32_t Width, std::int32_t Height,
             OLE_COLOR ForeColor, OLE_COLOR BackColor) {
  const Point StartPoint{Left, Top};
  const Point EndPoint{CheckedAdd(Left, Width), CheckedAdd(Top, Height)};
  if (BackColor != kNoColor) {
    Draw.Color().Value(BackColor);
    Draw.FillMode(kFillSolid);
    Draw.Rectangle(StartPoint, EndPoint, 0, 0, "");
    Draw.FillMode(kFillNone);
  }
  if (ForeColor != kNoColor) {
    Draw.Color().Value(ForeColor);
    Draw.Rectangle(StartPoint, EndPoint, 0, 0, "");
  }
}

void DrawBackgroundTile(ImgX& Tile, std::int32_t Size, OLE_COLOR Color1, OLE_COLOR Color2) {
  const std::int32_t side = CheckedAdd(Size, Size);
  Tile.Document().NewImage(side, side, nullptr, kPixelFormatRgba, "");
  DrawBox(Tile.Draw(), 0, 0, side, side, kNoColor, Color1);
  DrawBox(Tile.Draw(), 0, 0, Size, Size, kNoColor, Color2);
  DrawBox(Tile.Draw(), Size, Size, Size, Size, kNoColor, Color2);
}

void SetupBackground(ImageView& Control, std::int32_t Size, OLE_COLOR Color1, OLE_COLOR Color2) {
  Control.DoubleBuffer(true);
  const auto tile = Control.ImgX();
  DrawBackgroundTile(*tile, Size, Color1, Color2);
  Control.BackgroundImage(tile->Image());
}

}  // namespace kestrel::modImgX
