#include "HelpViewer.h"

#include <filesystem>

#include "base/RuntimeError.h"
#include "platform/os/Paths.h"

namespace kestrel::headless {

void HelpViewer::ShowTopic(const std::string& topic, std::int32_t /*context*/) {
  namespace fs = std::filesystem;
  const fs::path book = fs::path(folder_) / fs::path(helpFile_).stem();
  std::error_code error;
  if (helpFile_.empty() || !fs::is_directory(book, error)) {
    throw RuntimeError(err::kFileNotFound, "The help book \"" + helpFile_ + "\" was not found.");
  }
  if (!fs::is_regular_file(book / topic, error)) {
    throw RuntimeError(err::kFileNotFound,
                       "The help book \"" + helpFile_ + "\" has no page \"" + topic + "\".");
  }
  shown_.push_back(os::textOf(book / topic));
}

}  // namespace kestrel::headless
