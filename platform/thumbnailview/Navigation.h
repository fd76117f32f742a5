#pragma once

#include <cstdint>

#include "Arrangement.h"

namespace kestrel::thumbnails {

/// Keys that the view handles itself.
enum class Key {
  kLeft,
  kRight,
  kUp,
  kDown,
  kHome,
  kEnd,
  kPageUp,
  kPageDown,
  kSpace,  ///< also as part of a name that is being typed
  kEnter,
  kDelete,
  kEscape,
  kSelectAll,  ///< Ctrl+A
};

/// The item that a key moves the focus to from `item`; `item` itself at an end of the list, -1 for a key that
/// does not move.
std::int32_t keyTarget(const Arrangement& arrangement, Key key, std::int32_t item);

}  // namespace kestrel::thumbnails
