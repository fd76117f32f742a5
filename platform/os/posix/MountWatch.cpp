#include "../MountWatch.h"

#include <fcntl.h>

#include "Descriptor.h"

namespace kestrel::os {

struct MountWatch::Inside {
  Descriptor table{::open("/proc/self/mountinfo", O_RDONLY | O_CLOEXEC)};
};

MountWatch::MountWatch() : inside_(std::make_unique<Inside>()) {}

MountWatch::~MountWatch() = default;

int MountWatch::descriptor() const { return inside_->table.number(); }

}  // namespace kestrel::os
