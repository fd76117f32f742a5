#include "Keys.h"

#include <QKeySequence>
#include <array>

#include "Text.h"
#include "imaging/contract/Types.h"

namespace kestrel::qt {
namespace {

struct NamedKey {
  std::int32_t keyCode;
  Qt::Key key;
};

constexpr std::array kNamedKeys = {
    NamedKey{8, Qt::Key_Backspace}, NamedKey{9, Qt::Key_Tab},       NamedKey{13, Qt::Key_Return},
    NamedKey{13, Qt::Key_Enter},    NamedKey{16, Qt::Key_Shift},    NamedKey{17, Qt::Key_Control},
    NamedKey{18, Qt::Key_Alt},      NamedKey{27, Qt::Key_Escape},   NamedKey{32, Qt::Key_Space},
    NamedKey{33, Qt::Key_PageUp},   NamedKey{34, Qt::Key_PageDown}, NamedKey{35, Qt::Key_End},
    NamedKey{36, Qt::Key_Home},     NamedKey{37, Qt::Key_Left},     NamedKey{38, Qt::Key_Up},
    NamedKey{39, Qt::Key_Right},    NamedKey{40, Qt::Key_Down},     NamedKey{45, Qt::Key_Insert},
    NamedKey{46, Qt::Key_Delete},
};

// Keys of the numeric pad with key codes of their own.
constexpr std::array kNumericKeys = {
    NamedKey{106, Qt::Key_Asterisk}, NamedKey{107, Qt::Key_Plus},  NamedKey{109, Qt::Key_Minus},
    NamedKey{110, Qt::Key_Period},   NamedKey{110, Qt::Key_Comma}, NamedKey{111, Qt::Key_Slash},
};

constexpr std::int32_t kNumericZero = 96;
constexpr std::int32_t kFirstFunctionKey = 112;

std::int32_t keyCodeOf(const QKeyEvent& event) {
  const int key = event.key();
  if (event.modifiers() & Qt::KeypadModifier) {
    for (const NamedKey& numeric : kNumericKeys) {
      if (numeric.key == key) return numeric.keyCode;
    }
    if (key >= Qt::Key_0 && key <= Qt::Key_9) return kNumericZero + key - Qt::Key_0;
  }
  if ((key >= Qt::Key_0 && key <= Qt::Key_9) || (key >= Qt::Key_A && key <= Qt::Key_Z)) return key;
  if (key >= Qt::Key_F1 && key <= Qt::Key_F24) return kFirstFunctionKey + key - Qt::Key_F1;
  for (const NamedKey& named : kNamedKeys) {
    if (named.key == key) return named.keyCode;
  }
  return 0;
}

Qt::Key keyOf(std::int32_t keyCode) {
  if (keyCode >= kFirstFunctionKey && keyCode < kFirstFunctionKey + 24) {
    return static_cast<Qt::Key>(Qt::Key_F1 + keyCode - kFirstFunctionKey);
  }
  for (const NamedKey& named : kNamedKeys) {
    if (named.keyCode == keyCode) return named.key;
  }
  return static_cast<Qt::Key>(keyCode);
}

}  // namespace

KeyStroke keyStrokeOf(const QKeyEvent& event) { return {keyCodeOf(event), shiftMaskOf(event.modifiers())}; }

std::int32_t shiftMaskOf(Qt::KeyboardModifiers modifiers) {
  return (modifiers & Qt::ShiftModifier ? kShiftMask : 0) |
         (modifiers & Qt::ControlModifier ? kCtrlMask : 0) | (modifiers & Qt::AltModifier ? kAltMask : 0);
}

std::int32_t buttonMaskOf(Qt::MouseButtons buttons) {
  return (buttons & Qt::LeftButton ? kLeftButton : 0) | (buttons & Qt::RightButton ? kRightButton : 0) |
         (buttons & Qt::MiddleButton ? kMiddleButton : 0);
}

bool isContextMenuKey(const QKeyEvent& event) {
  return (event.key() == Qt::Key_Menu && event.modifiers() == Qt::NoModifier) ||
         (event.key() == Qt::Key_F10 && event.modifiers() == Qt::ShiftModifier);
}

QString hotKeyText(std::int32_t shift, std::int32_t keyCode) {
  Qt::KeyboardModifiers modifiers;
  modifiers.setFlag(Qt::ShiftModifier, (shift & kShiftMask) != 0);
  modifiers.setFlag(Qt::ControlModifier, (shift & kCtrlMask) != 0);
  modifiers.setFlag(Qt::AltModifier, (shift & kAltMask) != 0);
  const auto textOf = [](QKeyCombination keys) {
    return QKeySequence(keys).toString(QKeySequence::NativeText);
  };
  for (const NamedKey& numeric : kNumericKeys) {
    if (numeric.keyCode != keyCode) continue;
    const QString whole = textOf(QKeyCombination(modifiers | Qt::KeypadModifier, numeric.key));
    const QString name = textOf(numeric.key);
    // "Num++" is hard to read: a space instead of the last separator.
    return whole.left(whole.size() - name.size() - 1) + u' ' + name;
  }
  return textOf(QKeyCombination(modifiers, keyOf(keyCode)));
}

}  // namespace kestrel::qt
