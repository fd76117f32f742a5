// JPEG files of 24 megapixels to and from RGBA, beside libjpeg-turbo by its own interface and by TurboJPEG.

#include <turbojpeg.h>

#include <cstring>
#include <memory>
#include <stdexcept>
#include <string>

#include "Camera.h"
#include "Comparison.h"
#include "JpegFiles.h"
#include "ThumbnailPeers.h"
#include "engine/codecs/Codecs.h"
#include "engine/codecs/jpeg/Jpeg.h"

namespace kestrel::bench {
namespace {

using engine::Bitmap;
using engine::ConstPixels;
using engine::Pixels;

constexpr std::int32_t kWidth = 6000, kHeight = 4000;
constexpr int kReadQuality = 90, kWrittenQuality = 75;

using TurboHandle = std::shared_ptr<void>;

TurboHandle turbo(tjhandle handle) {
  if (handle == nullptr) throw std::runtime_error("TurboJPEG cannot be started");
  return TurboHandle(handle, tjDestroy);
}

void check(int result) {
  if (result != 0) throw std::runtime_error(tjGetErrorStr());
}

void requireEqual(const Bitmap& ours, const Bitmap& theirs) {
  const ConstPixels a = ours.pixels(), b = theirs.pixels();
  if (a.width != b.width || a.height != b.height) throw std::runtime_error("the decoders give other sizes");
  for (std::int32_t y = 0; y < a.height; ++y) {
    if (std::memcmp(a.row(y), b.row(y), std::size_t{4} * static_cast<std::size_t>(a.width)) != 0) {
      throw std::runtime_error("the decoders do not agree in row " + std::to_string(y));
    }
  }
}

std::vector<Contender> readers(Colors colors) {
  const auto file = std::make_shared<const std::vector<std::uint8_t>>(
      jpegOf(cameraPhotograph(kWidth, kHeight).pixels(), kReadQuality, colors));
  const auto kept = std::make_shared<Bitmap>(Bitmap::uninitialized(kWidth, kHeight));
  const TurboHandle handle = turbo(tjInitDecompress());
  std::vector<Contender> contenders{
      {"KestrelLib2", "the whole load: metadata, profile, orientation looked for; a new bitmap each time",
       [=] { engine::decode(*file); }},
      {"libjpeg-turbo", "its own interface, row by row straight to RGBA in a kept buffer",
       [=] { readJpeg(*file, kept->writable()); }},
      {"TurboJPEG", "to RGBA in a kept buffer, with a kept decompressor", [=] {
         const Pixels pixels = kept->writable();
         check(tjDecompress2(handle.get(), file->data(), file->size(), pixels.data, kWidth,
                             static_cast<int>(pixels.stride), kHeight, TJPF_RGBA, 0));
       }}};
  const Bitmap ours = engine::decode(*file).bitmap;
  for (std::size_t i = 1; i < contenders.size(); ++i) {
    contenders[i].run();
    requireEqual(ours, *kept);
  }
  return contenders;
}

/// At an eighth of the size: what thumbnails are made from.
std::vector<Contender> eighths(Colors colors) {
  constexpr std::int32_t kEighth = 8, kSmallWidth = kWidth / kEighth, kSmallHeight = kHeight / kEighth;
  const auto file = std::make_shared<const std::vector<std::uint8_t>>(
      jpegOf(cameraPhotograph(kWidth, kHeight).pixels(), kReadQuality, colors));
  const auto kept = std::make_shared<Bitmap>(Bitmap::uninitialized(kSmallWidth, kSmallHeight));
  const TurboHandle handle = turbo(tjInitDecompress());
  std::vector<Contender> contenders{
      {"KestrelLib2",
       "DC coefficients alone; metadata, profile, orientation looked for; a new bitmap each time",
       [=] { engine::jpeg::decodeReduced(*file, kSmallWidth); }},
      {"libjpeg-turbo", "scaled to 1/8 by its own interface, to RGBA in a kept buffer",
       [=] { readJpeg(*file, kept->writable(), kEighth); }},
      {"TurboJPEG", "scaled to 1/8, to RGBA in a kept buffer, with a kept decompressor", [=] {
         const Pixels pixels = kept->writable();
         check(tjDecompress2(handle.get(), file->data(), file->size(), pixels.data, kSmallWidth,
                             static_cast<int>(pixels.stride), kSmallHeight, TJPF_RGBA, 0));
       }}};
  // Where color is halved, the library interpolates it and ours repeats it.
  const Bitmap ours = engine::jpeg::decodeReduced(*file, kSmallWidth).bitmap;
  for (std::size_t i = 1; i < contenders.size() && colors == Colors::full; ++i) {
    contenders[i].run();
    requireEqual(ours, *kept);
  }
  return contenders;
}

std::vector<Contender> writers() {
  const Bitmap picture = cameraPhotograph(kWidth, kHeight);
  const auto write = keptJpegWriter(picture, kWrittenQuality, Colors::halved);
  const auto size = tjBufSize(kWidth, kHeight, TJSAMP_420);
  const auto kept = std::make_shared<std::vector<unsigned char>>(size);
  const TurboHandle handle = turbo(tjInitCompress());
  const std::size_t ours =
      engine::encode(picture, {}, engine::format::kJpg, {.jpegQuality = kWrittenQuality}).size();
  if (ours != write()) throw std::runtime_error("the encoders do not write files of the same size");
  return {{"KestrelLib2", "the whole save, each row looked through for transparency; a new buffer each time",
           [=] { engine::encode(picture, {}, engine::format::kJpg, {.jpegQuality = kWrittenQuality}); }},
          {"libjpeg-turbo", "its own interface, alpha ignored, into a kept buffer", [=] { write(); }},
          {"TurboJPEG", "alpha ignored, accurate transform, into a kept buffer, with a kept compressor", [=] {
             unsigned char* target = kept->data();
             unsigned long length = kept->size();
             const ConstPixels pixels = picture.pixels();
             check(tjCompress2(handle.get(), pixels.data, kWidth, static_cast<int>(pixels.stride), kHeight,
                               TJPF_RGBX, &target, &length, TJSAMP_420, kWrittenQuality,
                               TJFLAG_NOREALLOC | TJFLAG_ACCURATEDCT));
           }}};
}

}  // namespace

std::vector<Comparison> comparisons() {
  std::vector<Comparison> rows{
      {"JPEG decode, colour halved, quality 90", 1.05, [] { return readers(Colors::halved); }},
      {"JPEG decode, full colour, quality 90", 1.05, [] { return readers(Colors::full); }},
      {"JPEG decode at 1/8, colour halved, quality 90", 0.6, [] { return eighths(Colors::halved); }},
      {"JPEG decode at 1/8, full colour, quality 90", 0.6, [] { return eighths(Colors::full); }},
      {"JPEG encode, colour halved, quality 75", 1.05, writers}};
  for (Comparison& row : thumbnailComparisons()) rows.push_back(std::move(row));
  return rows;
}

}  // namespace kestrel::bench
