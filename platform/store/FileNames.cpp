#include "FileNames.h"

#include <algorithm>
#include <vector>

namespace kestrel::store {
namespace {

constexpr const char* kEllipsis = "...";

std::size_t nameStart(const std::string& path) {
  const std::size_t separator = path.find_last_of("/\\");
  return separator == path.npos ? 0 : separator + 1;
}

/// The position of the extension's point, or the end of the path if there is none.
std::size_t pointOf(const std::string& path) {
  const std::size_t point = path.find_last_of('.');
  return point == path.npos || point < nameStart(path) ? path.size() : point;
}

bool isContinuation(char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U; }

std::size_t characters(const std::string& text) {
  return static_cast<std::size_t>(
      std::count_if(text.begin(), text.end(), [](char c) { return !isContinuation(c); }));
}

std::string firstCharacters(const std::string& text, std::size_t count) {
  std::size_t end = 0;
  while (end < text.size() && (count > 0 || isContinuation(text[end]))) {
    if (!isContinuation(text[end])) --count;
    ++end;
  }
  return text.substr(0, end);
}

/// The steps of a path, each but the last with its trailing separator.
std::vector<std::string> stepsOf(const std::string& path, const std::string& separator) {
  std::vector<std::string> steps;
  std::size_t start = 0;
  for (std::size_t end = path.find(separator); end != path.npos; end = path.find(separator, start)) {
    steps.push_back(path.substr(start, end + separator.size() - start));
    start = end + separator.size();
  }
  steps.push_back(path.substr(start));
  return steps;
}

}  // namespace

std::string FileNames::PathWithoutExtension(const std::string& Path) { return Path.substr(0, pointOf(Path)); }

std::string FileNames::GetExtension(const std::string& Path, std::int32_t /*Options*/) {
  const std::size_t point = pointOf(Path);
  return point == Path.size() ? std::string() : Path.substr(point + 1);
}

std::string FileNames::GetFileName(const std::string& Path) { return Path.substr(nameStart(Path)); }

std::string FileNames::CompactPath(const std::string& Path, std::int32_t Length,
                                   const std::string& Separator) {
  const auto limit = static_cast<std::size_t>(std::max(Length, 0));
  if (characters(Path) <= limit || Separator.empty()) return Path;

  const std::vector<std::string> steps = stepsOf(Path, Separator);
  const std::string gap = kEllipsis + Separator;
  // Keep the root, then as many of the last steps as fit.
  std::string tail = steps.back();
  if (steps.size() > 1) {
    const std::string& root = steps.front();
    if (characters(root + gap + tail) <= limit) {
      for (std::size_t i = steps.size() - 1; i-- > 1 && characters(root + gap + steps[i] + tail) <= limit;) {
        tail = steps[i] + tail;
      }
      return root + gap + tail;
    }
  }
  if (characters(tail) <= limit) return tail;
  const std::size_t ellipsis = std::min(limit, characters(kEllipsis));
  return firstCharacters(tail, limit - ellipsis) + std::string(ellipsis, '.');
}

}  // namespace kestrel::store
