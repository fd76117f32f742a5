#pragma once

#include <QObject>
#include <memory>

#include "base/OpenCalls.h"

namespace kestrel::qt {

/// Keeps the implementations of destroyed editors and browsers until no stack frame can use them: until all
/// calls to hosts and users have returned, and the members that made them have returned to the event loop.
class RetiredControls {
 public:
  /// `calls` must outlive this object.
  explicit RetiredControls(OpenCalls& calls);

  void take(std::unique_ptr<QObject> inside);

 private:
  void release();

  OpenCalls& calls_;
  QObject kept_;  // their parent
  Connection watch_;
};

}  // namespace kestrel::qt
