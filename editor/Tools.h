#pragma once

#include "editor/interface/Constants.h"
#include "imaging/contract/ImageView.h"

namespace kestrel {

/// One tool of the editor: its command, the view's mouse tool, and the pointer over the picture.
struct ToolRow {
  ImageProcessingToolConstants Tool;
  const char* Command;
  std::int32_t ViewTool;  ///< none where clicks are handled by the editor
  std::int32_t Pointer;
  bool Draws;  ///< hidden while `ShowDrawingTools` is off
};

/// In the order in which `SetControls` switches their commands.
inline constexpr ToolRow kTools[] = {
    {ipToolSelect, "btnDrawSelect", kViewToolSelect, kPointerDefault, false},
    {ipToolPan, "btnDrawPan", kViewToolPan, kPointerDefault, false},
    {ipToolZoom, "btnDrawZoom", kViewToolNone, kPointerCustom, false},
    {ipToolLine, "btnDrawLine", kViewToolLine, kPointerDefault, true},
    {ipToolRectangle, "btnDrawRectangle", kViewToolRectangle, kPointerDefault, true},
    {ipToolEllipse, "btnDrawEllipse", kViewToolEllipse, kPointerDefault, true},
    {ipToolFreehand, "btnDrawFreehand", kViewToolFreehand, kPointerDefault, true},
    {ipToolDropper, "btnDrawPicker", kViewToolNone, kPointerDefault, false},
};

}  // namespace kestrel
