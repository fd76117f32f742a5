#include "CacheEntry.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <limits>
#include <string_view>

#include "engine/codecs/png/PngThumbnail.h"

namespace kestrel::thumbnails {
namespace {

using engine::KeyedText;

constexpr std::string_view kUri = "Thumb::URI", kTime = "Thumb::MTime", kSize = "Thumb::Size",
                           kMimeType = "Thumb::Mimetype", kWidth = "Thumb::Image::Width",
                           kHeight = "Thumb::Image::Height", kSoftware = "Software";
/// The standard's time has whole seconds. A file that is saved twice in one second has a thumbnail of its
/// first version there.
constexpr std::string_view kNanoseconds = "X-Kestrel::MTimeNanoseconds";
/// Number and time of change of the file, for one that was replaced by another of equal time and size.
constexpr std::string_view kFile = "X-Kestrel::File";
constexpr std::string_view kReason = "X-Kestrel::Reason";

constexpr std::int64_t kPerSecond = 1'000'000'000;

struct Time {
  std::int64_t seconds, nanoseconds;
};

/// As the system keeps it: nanoseconds count up from the second, before 1970 too.
Time timeOf(const FileVersion& file) {
  std::int64_t seconds = file.modified / kPerSecond, nanoseconds = file.modified % kPerSecond;
  if (nanoseconds < 0) {
    nanoseconds += kPerSecond;
    --seconds;
  }
  return {seconds, nanoseconds};
}

const std::string* find(const std::vector<KeyedText>& texts, std::string_view key) {
  const auto found = std::ranges::find(texts, key, &KeyedText::key);
  return found == texts.end() ? nullptr : &found->text;
}

template <typename Number>
std::optional<Number> numberOf(const std::string* text) {
  Number number = 0;
  if (text == nullptr) return std::nullopt;
  const char* const end = text->data() + text->size();
  const auto [rest, error] = std::from_chars(text->data(), end, number);
  // Some programs write a time with a fraction.
  if (error != std::errc{} || (rest != end && *rest != '.')) return std::nullopt;
  return number;
}

/// True if the entry has no such number.
template <typename Number>
bool agrees(const std::vector<KeyedText>& texts, std::string_view key, Number expected) {
  const std::string* const text = find(texts, key);
  return text == nullptr || numberOf<Number>(text) == expected;
}

std::string fileTextOf(const FileVersion& file) {
  return std::to_string(file.inode) + ' ' + std::to_string(file.changed);
}

/// True if the entry does not have them.
bool isSameFile(const std::vector<KeyedText>& texts, const FileVersion& file) {
  const std::string* const text = find(texts, kFile);
  if (text == nullptr) return true;
  const std::string now = fileTextOf(file);
  const std::size_t before = text->find(' '), current = now.find(' ');
  if (before == std::string::npos) return false;
  return text->substr(0, before) == now.substr(0, current) || text->substr(before) == now.substr(current);
}

Size pictureSizeOf(const std::vector<KeyedText>& texts) {
  const auto width = numberOf<std::int32_t>(find(texts, kWidth));
  const auto height = numberOf<std::int32_t>(find(texts, kHeight));
  if (!width || !height || *width < 1 || *height < 1) return {};
  return {*width, *height};
}

/// By the name, as desktops do.
std::string_view mimeTypeOf(const std::filesystem::path& path) {
  struct MimeType {
    std::int32_t format;
    std::string_view name;
  };
  namespace format = kestrel::format;
  constexpr MimeType kMimeTypes[] = {
      {format::kJpg, "image/jpeg"},
      {format::kPng, "image/png"},
      {format::kTif, "image/tiff"},
      {format::kPcx, "image/vnd.zbrush.pcx"},
      {format::kTga, "image/x-tga"},
      {format::kBmp, "image/bmp"},
      {format::kWmf, "image/wmf"},
      {format::kEmf, "image/emf"},
      {format::kPsd, "image/vnd.adobe.photoshop"},
      {format::kWbmp, "image/vnd.wap.wbmp"},
      {format::kGif, "image/gif"},
      {format::kPcd, "image/x-photo-cd"},
  };
  std::string extension = path.extension().native();
  if (extension.empty()) return {};
  extension.erase(0, 1);
  for (char& c : extension) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  for (const auto& [code, name] : kMimeTypes) {
    if (FormatOf(code)->HasExtension(extension)) return name;
  }
  return {};
}

}  // namespace

std::optional<CacheEntry> readEntry(engine::Bytes data, const std::string& uri, const FileVersion& file) {
  auto facts = engine::png::readFacts(data);
  if (!facts) return std::nullopt;
  const std::vector<KeyedText>& texts = facts->texts;
  const std::string* const entryUri = find(texts, kUri);
  const Time time = timeOf(file);
  if (entryUri == nullptr || *entryUri != uri || find(texts, kTime) == nullptr ||
      !agrees(texts, kTime, time.seconds) || !agrees(texts, kNanoseconds, time.nanoseconds) ||
      !agrees(texts, kSize, file.size) || !isSameFile(texts, file)) {
    return std::nullopt;
  }
  CacheEntry entry;
  entry.width = facts->width;
  entry.height = facts->height;
  entry.pictureSize = pictureSizeOf(texts);
  if (const std::string* const reason = find(texts, kReason)) entry.reason = *reason;
  return entry;
}

std::vector<std::uint8_t> writeEntry(const engine::Bitmap& bitmap, const std::string& uri,
                                     const FileVersion& file, Size pictureSize, const std::string& reason) {
  std::vector<KeyedText> texts;
  const auto add = [&](std::string_view key, std::string text) {
    if (!text.empty()) texts.push_back({std::string(key), std::move(text), false, {}, {}});
  };
  const Time time = timeOf(file);
  add(kUri, uri);
  add(kTime, std::to_string(time.seconds));
  add(kNanoseconds, std::to_string(time.nanoseconds));
  add(kSize, std::to_string(file.size));
  add(kFile, fileTextOf(file));
  add(kMimeType, std::string(mimeTypeOf(file.path)));
  if (pictureSize.Width > 0 && pictureSize.Height > 0) {
    add(kWidth, std::to_string(pictureSize.Width));
    add(kHeight, std::to_string(pictureSize.Height));
  }
  add(kSoftware, "KestrelLib2");
  add(kReason, reason);
  if (!reason.empty()) texts.back().international = true;
  return engine::png::encodeWithAlpha(bitmap, texts);
}

}  // namespace kestrel::thumbnails
