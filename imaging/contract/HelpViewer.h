#pragma once

#include <cstdint>
#include <string>

namespace kestrel {

/// Shows the pages of a help book in a window of its own.
class HelpViewer {
 public:
  virtual ~HelpViewer() = default;
  /// The book: a compiled file of that name, or the folder named like its base name.
  virtual std::string HelpFile() const = 0;
  virtual void HelpFile(const std::string& value) = 0;
  /// Raises RuntimeError 53 with a sentence for the user if there is no such book or page.
  virtual void ShowTopic(const std::string& topic, std::int32_t context) = 0;
};

}  // namespace kestrel
