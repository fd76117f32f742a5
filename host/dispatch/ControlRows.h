#pragma once

#include <tuple>

#include "Rows.h"
#include "imaging/contract/Control.h"

namespace kestrel::dispatch {

/// The rows that all controls share, to be appended to a control's own. Their numbers begin at 101 in each
/// class.
inline constexpr std::tuple kControlRows{
    ReadOnly("Name", 101, &Control::Name, "The name of the control on its form."),
    ReadOnly("Index", 102, &Control::Index, "The index in its control array; -1 if it is not in one."),
    Property("Left", 103, &Control::Left, &Control::Left, "The left edge in pixels of the container."),
    Property("Top", 104, &Control::Top, &Control::Top, "The top edge in pixels of the container."),
    Property("Width", 105, &Control::Width, &Control::Width, "The width in pixels."),
    Property("Height", 106, &Control::Height, &Control::Height, "The height in pixels."),
    Method("Move", 107, &Control::Move, {"Left", "Top", "Width", "Height"},
           "Sets position and size, in pixels of the container."),
    Property("Visible", 108, &Control::Visible, &Control::Visible,
             "The control's own setting; the container may still be hidden."),
    Property("Enabled", 109, &Control::Enabled, &Control::Enabled, "Whether the user can operate it."),
    Method("ZOrder", 110, &Control::ZOrder, "Brings it in front of its siblings."),
    ReadOnly("hWnd", 111, &Control::hWnd, "The handle of its window."),
};

}  // namespace kestrel::dispatch
