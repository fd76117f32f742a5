#pragma once

#include <cstdint>
#include <string>

#include "ControlContainer.h"
#include "Graphics.h"
#include "base/Event.h"

namespace kestrel {

/// Values of `Form::WindowState`.
inline constexpr std::int32_t kWindowNormal = 0;
inline constexpr std::int32_t kWindowMinimized = 1;
inline constexpr std::int32_t kWindowMaximized = 2;

/// A top-level window, or one shown inside a dock window, with the controls that its form describes. It is
/// built hidden by `Platform::CreateForm` and destroyed with this object.
///
/// Position and size are those of the client area, without the window frame and title bar. A position written
/// before the window is shown stays in effect when the window manager adds the frame.
class Form : public Control, public ControlContainer {
 public:
  virtual std::string Caption() const = 0;
  virtual void Caption(const std::string& value) = 0;
  /// Whether the window holds unsaved changes, for desktops that show it. The caption stays the same.
  virtual bool Modified() const = 0;
  virtual void Modified(bool value) = 0;
  /// Removes the window's icon.
  virtual void ClearIcon() = 0;
  virtual std::int32_t WindowState() const = 0;
  virtual void WindowState(std::int32_t value) = 0;
  /// Where the window is while it is neither maximised nor minimised: its present place, or else the one that
  /// it is restored to.
  virtual Rectangle NormalPlace() const = 0;

  /// Inner size in pixels.
  virtual std::int32_t ScaleWidth() const = 0;
  virtual std::int32_t ScaleHeight() const = 0;
  /// The background color of the window.
  virtual OLE_COLOR BackColor() const = 0;

  /// Shows the window. The first call raises `Load` before and `Activate` once the window is shown. Modal:
  /// returns when the window is hidden or unloaded; raises RuntimeError 400 if it is shown already.
  virtual void Show(bool modal = false, Control* owner = nullptr) = 0;
  virtual void Hide() = 0;
  /// Asks to unload: raises `QueryUnload`; unless that was canceled, closes the menus and windows open above
  /// the window, hides it and raises `Unloaded`. Does nothing for a window that is not loaded. A handler of
  /// `QueryUnload` may unload it too, which makes this call end without a further event.
  virtual void Unload() = 0;

  /// The drawing surface of the window itself.
  virtual kestrel::Graphics& Graphics() = 0;

  Event<> Load;
  Event<> Activate;
  Event<> Resize;
  /// Cancel, and the reason: 0 the window's own close box, 1 `Unload` was called.
  Event<bool&, std::int32_t> QueryUnload;
  Event<> Unloaded;
  /// Raised by `FormUtility::ShowDialog` for its result: whether the user accepted the dialog. False if no
  /// handler sets it.
  Event<bool&> QueryResult;
  Event<> Paint;
  Event<std::int32_t, std::int32_t> KeyDown;  ///< key code, Shift
};

}  // namespace kestrel
