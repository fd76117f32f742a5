#pragma once

#include <chrono>
#include <string>
#include <string_view>

namespace kestrel::thumbnails {

/// Finds items by the first letters of their names, typed one after the other.
class TypeAhead {
 public:
  using Time = std::chrono::steady_clock::time_point;
  /// A longer pause begins a new name.
  static constexpr std::chrono::milliseconds kPause{1000};

  /// What to look for after a character was typed.
  struct Search {
    std::string prefix;  ///< folded by `FoldCase`
    /// Begin with the item after the focus item: at the first letter, and when one letter is repeated, which
    /// goes through the names that begin with it.
    bool fromNext = false;
  };

  Search type(std::string_view text, Time now);
  /// Whether a name has been begun. Then a space belongs to it.
  bool typing(Time now) const;
  /// Begins a new name.
  void reset() { typed_.clear(); }

 private:
  std::string typed_;
  Time last_;
};

}  // namespace kestrel::thumbnails
