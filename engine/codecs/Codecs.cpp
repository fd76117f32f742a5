#include "Codecs.h"

#include <string>

#include "CodecTable.h"
#include "FileStore.h"
#include "base/RuntimeError.h"
#include "engine/codecs/common/DecodeErrors.h"
#include "engine/codecs/metadata/Exif.h"
#include "platform/os/Paths.h"

namespace kestrel::engine {
namespace {

Decoded decodeAs(const Codec& codec, Bytes data, std::int32_t longestSide) {
  const bool whole = longestSide >= Bitmap::kMaxSide || codec.decodeReduced == nullptr;
  Decoded decoded = whole ? codec.decode(data) : codec.decodeReduced(data, longestSide);
  decoded.format = codec.format;
  if (decoded.stored.width == 0) {
    decoded.stored.width = decoded.bitmap.width();
    decoded.stored.height = decoded.bitmap.height();
  }
  return decoded;
}

const Codec& writingCodec(std::int32_t formatCode) {
  const Codec* const codec = codecOf(formatCode);
  if (codec == nullptr) {
    throw RuntimeError(err::kInvalidCall,
                       "A picture cannot be saved in format " + std::to_string(formatCode) + ".");
  }
  if (codec->encode == nullptr) {
    throw RuntimeError(err::kInvalidCall, std::string(codec->name) + " files can be read, not written.");
  }
  return *codec;
}

std::int32_t formatOfName(const std::filesystem::path& path) {
  if (const Codec* const codec = codecOfName(path)) return codec->format;
  throw RuntimeError(err::kInvalidCall, "The name \"" + os::textOf(path.filename()) +
                                            "\" has no extension of a known picture format.");
}

}  // namespace

Decoded decodeFile(const std::filesystem::path& path) { return decodeFileReduced(path, Bitmap::kMaxSide); }

Decoded decodeFileReduced(const std::filesystem::path& path, std::int32_t longestSide) {
  const FileContent content = readFile(path);
  const Bytes data = content.bytes();
  if (data.empty()) refusePicture("The file is empty.");
  if (const Codec* const codec = codecOfContent(data)) return decodeAs(*codec, data, longestSide);
  if (const Codec* const named = codecOfName(path)) {
    refusePicture("The file is not a " + std::string(named->name) + " image: " + std::string(named->mark) +
                  ".");
  }
  refusePicture("The file is not a picture of any known format.");
}

Decoded decode(Bytes data) {
  if (data.empty()) refusePicture("There is no data to read a picture from.");
  if (const Codec* const codec = codecOfContent(data)) return decodeAs(*codec, data, Bitmap::kMaxSide);
  refusePicture("The data is not a picture of any known format.");
}

void encodeFile(const Bitmap& bitmap, const Metadata& metadata, std::int32_t formatCode,
                const EncodeOptions& options, const std::filesystem::path& path) {
  const std::int32_t code = formatCode == format::kNone ? formatOfName(path) : formatCode;
  replaceFile(path, encode(bitmap, metadata, code, options));
}

std::vector<std::uint8_t> encode(const Bitmap& bitmap, const Metadata& metadata, std::int32_t formatCode,
                                 const EncodeOptions& options) {
  const Codec& codec = writingCodec(formatCode);
  if (bitmap.empty()) throw RuntimeError(err::kInvalidCall, "There is no picture to save.");
  if (options.jpegQuality < 1 || options.jpegQuality > 100) {
    throw RuntimeError(err::kInvalidCall, "The JPEG quality must be from 1 to 100.");
  }
  Metadata updated = metadata;
  describePicture(updated, bitmap.width(), bitmap.height());
  return codec.encode(bitmap, updated, options);
}

}  // namespace kestrel::engine
