#pragma once

#include <string>
#include <vector>

#include "Control.h"
#include "base/Event.h"

namespace kestrel {

/// The paths of a folder before and after it got another name or place.
struct FolderRenaming {
  std::string From;
  std::string To;
};

/// Notices that subfolders of some folders appear, vanish or get another name, and that drives come and go.
/// Never visible.
class FolderNotices : public Control {
 public:
  /// Watches these folders instead of the former ones. Folders that do not exist are left out, and so are
  /// those of a network, which this must not wait for and which change unnoticed.
  virtual void Folders(const std::vector<std::string>& value) = 0;

  /// The watched folders whose subfolders may differ from those of before, spelled as they were assigned, and
  /// the subfolders that were renamed within them, in the order in which it happened. Changes in quick
  /// succession are raised together.
  Event<const std::vector<std::string>&, const std::vector<FolderRenaming>&> Changed;
  /// The system's drives may be others than before.
  Event<> DrivesChanged;
};

}  // namespace kestrel
