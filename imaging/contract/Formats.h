#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace kestrel {

/// The codes that name file formats everywhere. 0 is no format yet.
namespace format {
inline constexpr std::int32_t kNone = 0;
inline constexpr std::int32_t kJpg = 1;
inline constexpr std::int32_t kPng = 2;
inline constexpr std::int32_t kTif = 3;
inline constexpr std::int32_t kPcx = 4;
inline constexpr std::int32_t kTga = 5;
inline constexpr std::int32_t kBmp = 6;
inline constexpr std::int32_t kWmf = 7;
inline constexpr std::int32_t kEmf = 8;
inline constexpr std::int32_t kPsd = 9;
inline constexpr std::int32_t kWbmp = 10;
inline constexpr std::int32_t kGif = 11;
inline constexpr std::int32_t kTla = 12;
inline constexpr std::int32_t kPcd = 13;
}  // namespace format

/// What a format keeps of a picture's transparency. What it doesn't keep is composited over white.
enum class KeptAlpha : std::uint8_t {
  kNone,   ///< every pixel becomes opaque
  kOnOff,  ///< a pixel becomes transparent or opaque
  kAll,
};

/// One file format. All formats can be read.
struct FileFormat {
  std::int32_t Code;
  std::string_view Name;  ///< as in "a JPEG image"
  /// Lower case, without a point; the first is the usual one. Unused places are empty.
  std::array<std::string_view, 4> Extensions;
  bool Writable;
  /// How many of the extensions, from the first on, choose the format of a save. The others are only read.
  std::size_t SaveExtensions;
  KeptAlpha Alpha;  ///< in files that are written

  /// Whether `extension`, in lower case and without a point, is one of the format's.
  constexpr bool HasExtension(std::string_view extension) const {
    for (const std::string_view known : Extensions) {
      if (!known.empty() && known == extension) return true;
    }
    return false;
  }
};

/// One row for each format, by code.
inline constexpr FileFormat kFileFormats[] = {
    {format::kJpg, "JPEG", {"jpg", "jpeg", "jpe", "jfif"}, true, 2, KeptAlpha::kNone},
    {format::kPng, "PNG", {"png"}, true, 1, KeptAlpha::kAll},
    {format::kTif, "TIFF", {"tif", "tiff"}, true, 1, KeptAlpha::kAll},
    {format::kPcx, "PCX", {"pcx"}, true, 1, KeptAlpha::kNone},
    {format::kTga, "TGA", {"tga", "icb", "vda", "vst"}, true, 1, KeptAlpha::kAll},
    {format::kBmp, "BMP", {"bmp", "dib", "rle"}, true, 1, KeptAlpha::kAll},
    {format::kWmf, "WMF", {"wmf"}, true, 1, KeptAlpha::kNone},
    {format::kEmf, "EMF", {"emf"}, true, 1, KeptAlpha::kNone},
    {format::kPsd, "PSD", {"psd", "psb"}, true, 1, KeptAlpha::kAll},
    {format::kWbmp, "WBMP", {"wbmp", "wbp"}, true, 1, KeptAlpha::kNone},
    {format::kGif, "GIF", {"gif"}, true, 1, KeptAlpha::kOnOff},
    {format::kTla, "TLA", {"tla"}, true, 1, KeptAlpha::kAll},
    {format::kPcd, "Photo CD", {"pcd"}, false, 0, KeptAlpha::kNone},
};

/// The format with this code, or null.
constexpr const FileFormat* FormatOf(std::int32_t code) {
  for (const FileFormat& format : kFileFormats) {
    if (format.Code == code) return &format;
  }
  return nullptr;
}

/// The quality of JPEG files, 1 to 100, unless the user has set another.
inline constexpr std::int32_t kDefaultJpegQuality = 75;

// The filters of the file dialogs.

inline constexpr char kOpenFilter[] =
    "All Supported Picture (*.bmp;*.jpg;*.png;*.tif;*.pcx;*.psd;*.tga;*.wbp;*.wmf;*.emf;*.tla)|"
    "*.jpg;*.bmp;*.png;*.gif;*.psd;*.tif;*.pcx;*.tga;*.wbmp;*.wmf;*.emf;*.tla|"
    "Windows Bitmap (*.bmp)|*.bmp;*.dib;*.rle|"
    "Joint Photographic Experts Group (*.jpg)|*.jpg;*.jpeg|"
    "Portable Network Graphics (*.png)|*.png|"
    "Graphics Interchange Format (*.gif)|*.gif|"
    "Kodak Photo CD (*.pcd)|*.pcd|"
    "Photoshop (*.psd)|*.psd|"
    "Tagged Image File (*.tif)|*.tif|"
    "ZSoft PaintBrush (*.pcx)|*.pcx|"
    "Truevision Targa (*.tga)|*.tga|"
    "Wireless Bitmap (*.wbmp)|*.wbmp|"
    "Windows Meta File (*.wmf)|*.wmf|"
    "Windows Enhanced Meta File (*.emf)|*.emf|"
    "All Files (*.*)|*.*";

inline constexpr char kSaveFilter[] =
    "All Supported Pictures (*.bmp;*.jpg;*.png;*.tif;*.psd;*.pcx;*.tga)|"
    "*.bmp;*.jpg;*.png;*.jpeg;*.tif;*.tiff;*.dib;*.rle;*.psd;*.pcx;*.tga|"
    "Windows Bitmap (*.bmp)|*.bmp;*.dib;*.rle|"
    "Joint Photographic Experts Group (*.jpg)|*.jpg;*.jpeg|"
    "Portable Network Graphics (*.png)|*.png|"
    "Graphics Interchange Format (*.gif)|*.gif|"
    "Tagged Image File (*.tif)|*.tif|"
    "Photoshop (*.psd)|*.psd|"
    "ZSoft PaintBrush (*.pcx)|*.pcx|"
    "Truevision Targa (*.tga)|*.tga|"
    "All Files (*.*)|*.*";

}  // namespace kestrel
