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
#include "platform/os/Paths.h"

namespace kestrel::engine {
namespace {

constexpr Codec codec(std::int32_t code, std::string_view mark, decltype(Codec::probe) probe,
                      decltype(Codec::decode) decode, decltype(Codec::encode) encode,
                      decltype(Codec::decodeReduced) decodeReduced = nullptr) {
  return {code, FormatOf(code)->Name, mark, probe, decode, encode, decodeReduced};
}

constexpr Codec kCodecs[] = {
    codec(format::kJpg, "no start marker", jpeg::probe, jpeg::decode, jpeg::encode, jpeg::decodeReduced),
    codec(format::kPng, "no PNG signature", png::probe, png::decode, png::encode),
    codec(format::kGif, "no GIF signature", gif::probe, gif::decode, gif::encode),
    codec(format::kTif, "no byte order mark", tiff::probe, tiff::decode, tiff::encode),
    codec(format::kBmp, "no bitmap header", bmp::probe, bmp::decode, bmp::encode),
    codec(format::kPsd, "no PSD signature", psd::probe, psd::decode, psd::encode),
    codec(format::kTla, "no TLA signature", tla::probe, tla::decode, tla::encode),
    codec(format::kPcd, "no Photo CD signature", pcd::probe, pcd::decode, nullptr),
    codec(format::kEmf, "no EMF header", emf::probe, emf::decode, emf::encode),
    codec(format::kWmf, "no WMF header", wmf::probe, wmf::decode, wmf::encode),
    codec(format::kPcx, "no PCX header", pcx::probe, pcx::decode, pcx::encode),
    codec(format::kWbmp, "no WBMP header", wbmp::probe, wbmp::decode, wbmp::encode),
    codec(format::kTga, "no TGA header", tga::probe, tga::decode, tga::encode),
};

constexpr bool isComplete() {
  for (const FileFormat& file : kFileFormats) {
    const auto found = std::ranges::find(kCodecs, file.Code, &Codec::format);
    if (found == std::end(kCodecs) || (found->encode != nullptr) != file.Writable) return false;
  }
  return std::size(kCodecs) == std::size(kFileFormats);
}
static_assert(isComplete(), "Each format has one codec, which can write what the table of formats says.");

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
  std::string extension = os::textOf(path.extension());
  if (extension.empty()) return nullptr;
  extension.erase(0, 1);
  for (char& c : extension) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  for (const FileFormat& file : kFileFormats) {
    if (file.HasExtension(extension)) return codecOf(file.Code);
  }
  return nullptr;
}

}  // namespace kestrel::engine
