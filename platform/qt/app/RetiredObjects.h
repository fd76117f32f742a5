#pragma once

#include <QObject>
#include <memory>

#include "base/OpenCalls.h"

namespace kestrel::qt {

/// Keeps objects whose host has ended them until no stack frame can use them: until all calls to hosts and
/// users have returned, and the members that made them have returned to the event loop.
class RetiredObjects {
 public:
  /// `calls` must outlive this object.
  explicit RetiredObjects(OpenCalls& calls);

  void take(std::shared_ptr<void> object);
  /// Destroys all at once. None of their members may be on the stack.
  void clear();

 private:
  void release();

  OpenCalls& calls_;
  QObject kept_;  // the parent of their holders
  Connection watch_;
};

}  // namespace kestrel::qt
