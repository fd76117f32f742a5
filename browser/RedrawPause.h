#pragma once

#include "diagnostics/Trailer.h"
#include "imaging/contract/TreeView.h"

namespace kestrel {

/// Suspends the painting of a tree during its lifetime.
class RedrawPause {
 public:
  explicit RedrawPause(TreeView& tree) : tree_(tree) { tree_.Redraw(false); }
  ~RedrawPause() { QDK_RESUME_NEXT(tree_.Redraw(true)); }
  RedrawPause(const RedrawPause&) = delete;
  RedrawPause& operator=(const RedrawPause&) = delete;

 private:
  TreeView& tree_;
};

}  // namespace kestrel
