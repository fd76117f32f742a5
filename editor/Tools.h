#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>

#include "editor/interface/Constants.h"
#include "imaging/contract/ImageView.h"

namespace kestrel {

/// One tool of the editor: its command, the view's mouse tool, and the pointer over the picture.
struct ToolRow {
  ImageProcessingToolConstants Tool;
  const char* Command;
  std::int32_t ViewTool;  ///< none where clicks are handled by the editor
  std::int32_t Pointer;
  bool Draws;           ///< hidden while `ShowDrawingTools` is off
  std::int32_t Button;  ///< place in the order in which `Tool` presses and releases the buttons
};

/// In the order in which `SetControls` switches their commands.
inline constexpr ToolRow kTools[] = {
    {ipToolSelect, "btnDrawSelect", kViewToolSelect, kPointerDefault, false, 1},
    {ipToolPan, "btnDrawPan", kViewToolPan, kPointerDefault, false, 0},
    {ipToolZoom, "btnDrawZoom", kViewToolNone, kPointerCustom, false, 6},
    {ipToolLine, "btnDrawLine", kViewToolLine, kPointerDefault, true, 2},
    {ipToolRectangle, "btnDrawRectangle", kViewToolRectangle, kPointerDefault, true, 3},
    {ipToolEllipse, "btnDrawEllipse", kViewToolEllipse, kPointerDefault, true, 4},
    {ipToolFreehand, "btnDrawFreehand", kViewToolFreehand, kPointerDefault, true, 5},
    {ipToolDropper, "btnDrawPicker", kViewToolNone, kPointerDefault, false, 7},
};

/// The same rows in the order of the buttons.
inline constexpr auto kToolButtons = [] {
  std::array<ToolRow, std::size(kTools)> rows{};
  std::ranges::copy(kTools, rows.begin());
  std::ranges::sort(rows, {}, &ToolRow::Button);
  return rows;
}();

}  // namespace kestrel
