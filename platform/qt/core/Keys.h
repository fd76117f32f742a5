#pragma once

#include <QKeyEvent>
#include <QString>
#include <cstdint>

namespace kestrel::qt {

/// A key as the logic names it.
struct KeyStroke {
  std::int32_t keyCode = 0;  ///< virtual key number; 0 for a key that has none
  std::int32_t shift = 0;    ///< mask of modifiers
};

KeyStroke keyStrokeOf(const QKeyEvent& event);
std::int32_t shiftMaskOf(Qt::KeyboardModifiers modifiers);
std::int32_t buttonMaskOf(Qt::MouseButtons buttons);

/// How menus show a hot key, in the words of the user's language ("Ctrl+O", "Num +").
QString hotKeyText(std::int32_t shift, std::int32_t keyCode);

}  // namespace kestrel::qt
