#pragma once

#include <cstdint>
#include <span>

#include "ImageProcessingCtl.h"

namespace kestrel {

/// What a command needs, and which switches hide it. A set of bits.
enum CommandFlags : std::uint32_t {
  kAlwaysUsable = 0,
  kNeedsPicture = 1 << 0,
  /// Disabled during an interactive paste, respectively crop: the command would overwrite the floating image,
  /// which is kept in the scratch picture, or take away the rectangle that the mode works with.
  kWaitsForPaste = 1 << 1,
  kWaitsForCrop = 1 << 2,
  kNeedsUndoStep = 1 << 3,
  kNeedsRedoStep = 1 << 4,
  /// Hidden by `UseSimpleTools`.
  kFullTools = 1 << 5,

  kEditsPicture = kNeedsPicture | kWaitsForPaste | kWaitsForCrop,
};

/// One command of the editor. Its dispatch key is its name without the three-letter prefix, in any case.
struct ImageProcessingCtl::CommandRow {
  const char* Name;
  std::uint32_t Flags;
  /// Null for a command that does nothing when it is chosen. Members that only rows call have no trailer:
  /// their failures are those of the dispatcher, `mrgUI_CommandClick`.
  void (*Action)(ImageProcessingCtl& Editor, Command& Command);

  bool Has(CommandFlags flag) const { return (Flags & flag) != 0; }
};

}  // namespace kestrel
