#pragma once

#include <memory>

namespace kestrel::os {

/// Notices that file systems are mounted or unmounted. Without a thread, and without anything to read: each
/// change is an exceptional condition of the descriptor (POLLPRI), once.
class MountWatch {
 public:
  MountWatch();
  MountWatch(const MountWatch&) = delete;
  MountWatch& operator=(const MountWatch&) = delete;
  ~MountWatch();

  /// Negative if the system has no mount table.
  int descriptor() const;

 private:
  struct Inside;

  std::unique_ptr<Inside> inside_;
};

}  // namespace kestrel::os
