#pragma once

#include <string>
#include <vector>

#include "Control.h"
#include "base/Event.h"

namespace kestrel {

/// Notices that subfolders of some folders appear, vanish or get another name. Never visible.
class FolderNotices : public Control {
 public:
  /// Watches these folders instead of the former ones. Folders that do not exist are left out, and so are
  /// those of a network, which this must not wait for and which change unnoticed.
  virtual void Folders(const std::vector<std::string>& value) = 0;

  /// The watched folders whose subfolders may differ from those of before, spelled as they were assigned.
  /// Changes in quick succession are raised together.
  Event<const std::vector<std::string>&> Changed;
};

}  // namespace kestrel
