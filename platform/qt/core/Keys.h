#pragma once

#include <QKeyEvent>
#include <QString>
#include <cstdint>

namespace kestrel::qt {

/// A key in the logic's terms.
struct KeyStroke {
  std::int32_t keyCode = 0;  ///< virtual key code; 0 for a key without one
  std::int32_t shift = 0;    ///< mask of modifiers
};

KeyStroke keyStrokeOf(const QKeyEvent& event);
std::int32_t shiftMaskOf(Qt::KeyboardModifiers modifiers);
std::int32_t buttonMaskOf(Qt::MouseButtons buttons);

/// The context-menu key, or the keys for it on a keyboard that has none.
bool isContextMenuKey(const QKeyEvent& event);

/// The text of a hot key in menus, in the user's language ("Ctrl+O", "Num +").
QString hotKeyText(std::int32_t shift, std::int32_t keyCode);

}  // namespace kestrel::qt
