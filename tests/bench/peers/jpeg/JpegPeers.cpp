// JPEG files of 24 megapixels to and from RGBA, compared with libjpeg-turbo through both of its interfaces.

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
  for (std::int32_t y = 0; y < kHeight; ++y) {
    if (std::memcmp(a.row(y), b.row(y), std::size_t{4} * kWidth) != 0) {
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
      {"KestrelLib2", "the whole load with metadata, profile and orientation; a new bitmap each time",
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

std::vector<Contender> writers() {
  const Bitmap picture = cameraPhotograph(kWidth, kHeight);
  const auto write = keptJpegWriter(picture, kWrittenQuality, Colors::halved);
  const auto size = tjBufSize(kWidth, kHeight, TJSAMP_420);
  const auto kept = std::make_shared<std::vector<unsigned char>>(size);
  const TurboHandle handle = turbo(tjInitCompress());
  const std::size_t ours =
      engine::encode(picture, {}, engine::format::kJpg, {.jpegQuality = kWrittenQuality}).size();
  if (ours != write()) throw std::runtime_error("the encoders do not write files of the same size");
  return {{"KestrelLib2", "the whole save, each row checked for transparency; a new buffer each time",
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
      {"JPEG decode, 4:2:0, quality 90", 1.05, [] { return readers(Colors::halved); }},
      {"JPEG decode, 4:4:4, quality 90", 1.05, [] { return readers(Colors::full); }},
      {"JPEG encode, 4:2:0, quality 75", 1.05, writers}};
  for (Comparison& row : thumbnailComparisons()) rows.push_back(std::move(row));
  return rows;
}

}  // namespace kestrel::bench
