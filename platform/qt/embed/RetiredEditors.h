#pragma once

#include <QObject>
#include <memory>

#include "base/OpenCalls.h"

namespace kestrel::qt {

/// Keeps the insides of editors that their hosts have destroyed until no frame on the stack can use them:
/// until all calls to hosts and users have returned, and the members that made them have returned to the
/// event loop.
class RetiredEditors {
 public:
  /// The calls must outlive this.
  explicit RetiredEditors(OpenCalls& calls);

  void take(std::unique_ptr<QObject> inside);

 private:
  void release();

  OpenCalls& calls_;
  QObject kept_;  // their parent
  Connection watch_;
};

}  // namespace kestrel::qt
