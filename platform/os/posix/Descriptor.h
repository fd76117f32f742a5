#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <utility>

#include "platform/os/Files.h"
#include "platform/os/OpenFolder.h"

namespace kestrel::os {

/// The failure that an errno means.
FileFailure failureOf(int code);
/// The same of a call that gives an entry its name.
FileFailure failureToName(int code);

/// A file descriptor that closes itself.
class Descriptor {
 public:
  explicit Descriptor(int number = -1) : number_(number) {}
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }
  ~Descriptor() {
    if (number_ >= 0) ::close(number_);
  }

  int number() const { return number_; }
  bool isOpen() const { return number_ >= 0; }

  int release() { return std::exchange(number_, -1); }

 private:
  int number_;
};

/// Where the path starts, as the system's calls take it.
inline int descriptorOf(const EntryPath& entry) {
  return entry.folder < 0 ? AT_FDCWD : static_cast<int>(entry.folder);
}

}  // namespace kestrel::os
