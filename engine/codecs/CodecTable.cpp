#include "CodecTable.h"

#include <algorithm>
#include <string>

#include "engine/codecs/gif/Gif.h"
#include "engine/codecs/jpeg/Jpeg.h"
#include "engine/codecs/png/Png.h"
#include "engine/codecs/raster/Raster.h"
#include "engine/codecs/tiff/Tiff.h"
#include "engine/metafile/Emf.h"
#include "engine/metafile/Wmf.h"

namespace kestrel::engine {
namespace {

constexpr std::string_view kJpgNames[] = {"jpg", "jpeg", "jpe", "jfif"};
constexpr std::string_view kPngNames[] = {"png"};
constexpr std::string_view kTifNames[] = {"tif", "tiff"};
constexpr std::string_view kBmpNames[] = {"bmp", "dib", "rle"};
constexpr std::string_view kGifNames[] = {"gif"};
constexpr std::string_view kPcxNames[] = {"pcx"};
constexpr std::string_view kTgaNames[] = {"tga", "icb", "vda", "vst"};
constexpr std::string_view kPsdNames[] = {"psd", "psb"};
constexpr std::string_view kWbmpNames[] = {"wbmp", "wbp"};
constexpr std::string_view kTlaNames[] = {"tla"};
constexpr std::string_view kEmfNames[] = {"emf"};
constexpr std::string_view kWmfNames[] = {"wmf"};
constexpr std::string_view kPcdNames[] = {"pcd"};

constexpr Codec kCodecs[] = {
    {format::kJpg, "JPEG", kJpgNames, "no start marker", jpeg::probe, jpeg::decode, jpeg::encode,
     jpeg::decodeReduced},
    {format::kPng, "PNG", kPngNames, "no PNG signature", png::probe, png::decode, png::encode},
    {format::kGif, "GIF", kGifNames, "no GIF signature", gif::probe, gif::decode, gif::encode},
    {format::kTif, "TIFF", kTifNames, "no byte order mark", tiff::probe, tiff::decode, tiff::encode},
    {format::kBmp, "BMP", kBmpNames, "no bitmap header", bmp::probe, bmp::decode, bmp::encode},
    {format::kPsd, "PSD", kPsdNames, "no PSD signature", psd::probe, psd::decode, psd::encode},
    {format::kTla, "TLA", kTlaNames, "no TLA signature", tla::probe, tla::decode, tla::encode},
    {format::kPcd, "Photo CD", kPcdNames, "no Photo CD signature", pcd::probe, pcd::decode, nullptr},
    {format::kEmf, "EMF", kEmfNames, "no EMF header", emf::probe, emf::decode, emf::encode},
    {format::kWmf, "WMF", kWmfNames, "no WMF header", wmf::probe, wmf::decode, wmf::encode},
    {format::kPcx, "PCX", kPcxNames, "no PCX header", pcx::probe, pcx::decode, pcx::encode},
    {format::kWbmp, "WBMP", kWbmpNames, "no WBMP header", wbmp::probe, wbmp::decode, wbmp::encode},
    {format::kTga, "TGA", kTgaNames, "no TGA header", tga::probe, tga::decode, tga::encode},
};

}  // namespace

std::span<const Codec> codecTable() { return kCodecs; }

const Codec* codecOf(std::int32_t format) {
  const auto found = std::ranges::find(kCodecs, format, &Codec::format);
  return found != std::end(kCodecs) ? &*found : nullptr;
}

const Codec* codecOfContent(Bytes data) {
  const auto found = std::ranges::find_if(kCodecs, [&](const Codec& codec) { return codec.probe(data); });
  return found != std::end(kCodecs) ? &*found : nullptr;
}

const Codec* codecOfName(const std::filesystem::path& path) {
  std::string extension = path.extension().string();
  if (extension.empty()) return nullptr;
  extension.erase(0, 1);
  for (char& c : extension) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  const auto found = std::ranges::find_if(kCodecs, [&](const Codec& codec) {
    return std::ranges::find(codec.extensions, extension) != codec.extensions.end();
  });
  return found != std::end(kCodecs) ? &*found : nullptr;
}

}  // namespace kestrel::engine
