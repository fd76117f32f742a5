#pragma once

#include <cstdint>

namespace kestrel::qt {

/// The busy pointer over all of the application's windows. Setting it again replaces it, 0 removes it: one
/// reset ends a busy phase, regardless of the number of sets.
class BusyPointer {
 public:
  static void set(std::int32_t pointer);
  static std::int32_t current();
};

/// RAII: shows the default pointer while the user is asked something during a busy phase.
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
