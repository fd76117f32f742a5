#include "CodecTable.h"

#include <algorithm>
#include <string>

#include "Formats.h"

namespace kestrel::engine {
namespace {

constexpr std::string_view kJpgNames[] = {"jpg", "jpeg", "jpe", "jfif"};
constexpr std::string_view kPngNames[] = {"png"};
constexpr std::string_view kTifNames[] = {"tif", "tiff"};
constexpr std::string_view kBmpNames[] = {"bmp", "dib", "rle"};
constexpr std::string_view kGifNames[] = {"gif"};

constexpr Codec kCodecs[] = {
    {format::kJpg, "JPEG", kJpgNames, "no start marker", jpeg::probe, jpeg::decode, jpeg::encode},
    {format::kPng, "PNG", kPngNames, "no PNG signature", png::probe, png::decode, png::encode},
    {format::kGif, "GIF", kGifNames, "no GIF signature", gif::probe, gif::decode, gif::encode},
    {format::kTif, "TIFF", kTifNames, "no byte order mark", tiff::probe, tiff::decode, tiff::encode},
    {format::kBmp, "BMP", kBmpNames, "no bitmap header", bmp::probe, bmp::decode, bmp::encode},
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
