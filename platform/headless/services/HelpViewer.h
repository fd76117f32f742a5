#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "imaging/contract/HelpViewer.h"

namespace kestrel::headless {

/// Checks that pages exist in the help books of a folder, and records them.
class HelpViewer final : public kestrel::HelpViewer {
 public:
  /// `folder` contains the books, each a folder named like the book's file without its extension.
  HelpViewer(std::string folder, std::vector<std::string>& shown)
      : folder_(std::move(folder)), shown_(shown) {}

  std::string HelpFile() const override { return helpFile_; }
  void HelpFile(const std::string& value) override { helpFile_ = value; }
  void ShowTopic(const std::string& topic, std::int32_t context) override;

 private:
  std::string folder_;
  std::vector<std::string>& shown_;
  std::string helpFile_;
};

}  // namespace kestrel::headless
