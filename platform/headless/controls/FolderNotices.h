#pragma once

#include <string>
#include <vector>

#include "../Window.h"
#include "imaging/contract/FolderNotices.h"

namespace kestrel::headless {

/// Notices nothing by itself: the user of the platform raises the events.
class FolderNotices final : public WindowOf<kestrel::FolderNotices> {
 public:
  using WindowOf::WindowOf;

  void Folders(const std::vector<std::string>& value) override { folders_ = value; }

  const std::vector<std::string>& folders() const { return folders_; }

 private:
  std::vector<std::string> folders_;
};

}  // namespace kestrel::headless
