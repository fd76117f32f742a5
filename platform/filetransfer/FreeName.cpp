#include "FreeName.h"

#include "platform/os/Paths.h"

namespace kestrel::transfer {
namespace {

namespace fs = std::filesystem;

/// Bytes of a name on all usual file systems.
constexpr std::size_t kLongestName = 255;

/// The text without its end; whole characters of UTF-8.
std::string cut(std::string text, std::size_t length) {
  constexpr unsigned char kContinuationMask = 0xC0, kContinuation = 0x80;
  if (text.size() <= length) return text;
  while (length > 0 && (static_cast<unsigned char>(text[length]) & kContinuationMask) == kContinuation)
    --length;
  text.resize(length);
  return text;
}

fs::path withEnd(const fs::path& path, const std::string& number, std::size_t reserved) {
  const std::string stem = os::textOf(path.stem());
  const std::string extension = os::textOf(path.extension());
  const std::size_t room = kLongestName - reserved - number.size();
  if (extension.size() >= room) {
    return path.parent_path() / os::pathOf(cut(os::textOf(path.filename()), room) + number);
  }
  return path.parent_path() / os::pathOf(cut(stem, room - extension.size()) + number + extension);
}

}  // namespace

fs::path numberedName(const fs::path& path, int number, std::size_t reserved) {
  return withEnd(path, " (" + std::to_string(number) + ")", reserved);
}

fs::path fittingName(const fs::path& path, std::size_t reserved) { return withEnd(path, {}, reserved); }

}  // namespace kestrel::transfer
