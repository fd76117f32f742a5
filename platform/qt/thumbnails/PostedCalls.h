#pragma once

#include <QObject>
#include <QTimer>
#include <functional>
#include <memory>

#include "platform/thumbnailview/Services.h"

namespace kestrel::qt {

/// Runs functions that other threads hand over, on the thread that made this object: in their order, when no
/// input and no painting wait, and only for a part of a frame's time. What was not run at its end is dropped.
class PostedCalls final : public QObject {
  Q_OBJECT

 public:
  PostedCalls();
  ~PostedCalls() override;

  /// It may be called after the end of this object, too; then it does nothing.
  thumbnails::Post post() const;

 private:
  struct Queue;

  void run();

  std::shared_ptr<Queue> queue_;
  QTimer timer_;
};

}  // namespace kestrel::qt
