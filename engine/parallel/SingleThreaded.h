#pragma once

namespace kestrel::engine {

/// While it lives, `forRows` runs on the calling thread alone. For work in the background, which must not
/// take the other threads from the user's.
class [[nodiscard]] SingleThreaded {
 public:
  SingleThreaded();
  SingleThreaded(const SingleThreaded&) = delete;
  SingleThreaded& operator=(const SingleThreaded&) = delete;
  ~SingleThreaded();

 private:
  bool before_;
};

}  // namespace kestrel::engine
