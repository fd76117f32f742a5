#include "Candidates.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "base/Numbers.h"
#include "imaging/contract/Formats.h"
#include "platform/os/Paths.h"

namespace kestrel::thumbnails {

bool isCandidate(const std::filesystem::path& name) {
  const std::string text = os::textOf(name);
  const std::size_t point = text.rfind('.');
  // A name that begins with a point is hidden, among them the companion files that some systems write.
  if (point == std::string::npos || text.front() == '.') return false;
  const std::string extension = LowerCase(std::string_view(text).substr(point + 1));
  return std::any_of(std::begin(kFileFormats), std::end(kFileFormats),
                     [&](const FileFormat& format) { return format.HasExtension(extension); });
}

}  // namespace kestrel::thumbnails
