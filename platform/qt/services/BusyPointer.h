#pragma once

#include <cstdint>

namespace kestrel::qt {

/// The busy pointer over all of the application's windows. Setting it again replaces it, 0 takes it away:
/// one reset ends a busy phase, however often it was announced.
class BusyPointer {
 public:
  static void set(std::int32_t pointer);
  static std::int32_t current();
};

/// Shows the ordinary pointer while the user is asked something in the middle of a busy phase.
class [[nodiscard]] BusyPause {
 public:
  BusyPause();
  BusyPause(const BusyPause&) = delete;
  BusyPause& operator=(const BusyPause&) = delete;
  ~BusyPause();

 private:
  std::int32_t paused_;
};

}  // namespace kestrel::qt
