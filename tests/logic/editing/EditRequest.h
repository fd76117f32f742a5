#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace kestrel {

/// What a user or a host can do arguments an editor.
enum class Action {
  kTool,   ///< number
  kDrag,   ///< from x, y to x, y, in pixels of the picture
  kClick,  ///< x, y, button
  kMirror,
  kFlip,
  kGrayScale,
  kRotateRight,
  kRotateLeft,
  kRotateDialog,  ///< angle as entered, left
  kCrop,
  kCopy,
  kCut,
  kBeginPaste,
  kCommitPaste,
  kEscape,
  kSelectAll,
  kSelectNone,
  kSelect,  ///< left, top, width, height
  kUndo,
  kRedo,
  kUndoLevels,          ///< levels
  kForeColor,           ///< color
  kBackColor,           ///< color
  kResize,              ///< width, height, method
  kResizeCanvas,        ///< width, height, offset x, offset y, color
  kResizeDialog,        ///< width, height, percent, entry of the list of methods
  kCanvasDialog,        ///< width, height, placement, color
  kRotate,              ///< angle, color, on the selection
  kFlatten,             ///< color
  kShadow,              ///< offset x, offset y, color, opacity, blur, on the selection
  kMaskedShadow,        ///< offset x, offset y, color, opacity, blur, automatic
  kShadowDialog,        ///< offset x, offset y, color, opacity, blur
  kMaskedShadowDialog,  ///< offset x, offset y, color, opacity, blur, mask color or -1 for automatic
  kFlattenDialog,       ///< color
  kBeginPasteSpecial,   ///< scroll position x, y, mask color
  kThumbnail,           ///< percentage, by the dialog
  kExport,
  kZoomInAndReset,
};

/// An action arguments its arguments.
struct EditRequest {
  Action action = Action::kUndo;
  std::array<std::int32_t, 6> arguments{};

  std::string text() const {
    std::string result = "action " + std::to_string(static_cast<int>(action));
    for (const std::int32_t value : arguments) result += ' ' + std::to_string(value);
    return result;
  }
};

}  // namespace kestrel
