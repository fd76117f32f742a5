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

/// A top-level window, or one that is shown inside a dock window, with the controls that its form describes.
/// It is built by `Platform::CreateForm`, hidden, and is destroyed with this object.
///
/// Position and size are those of the client area, without the desktop's frame and title bar. A position that
/// is written before the window is shown holds whatever the window manager does when it adds the frame.
class Form : public Control, public ControlContainer {
 public:
  virtual std::string Caption() const = 0;
  virtual void Caption(const std::string& value) = 0;
  /// Takes the window's icon away.
  virtual void ClearIcon() = 0;
  virtual std::int32_t WindowState() const = 0;
  virtual void WindowState(std::int32_t value) = 0;
  /// Where the window is while it is neither maximised nor minimised: its present place, or else the one that
  /// it is restored to.
  virtual Rectangle NormalPlace() const = 0;

  /// Inner size in pixels.
  virtual std::int32_t ScaleWidth() const = 0;
  virtual std::int32_t ScaleHeight() const = 0;
  /// The background colour of its face.
  virtual OLE_COLOR BackColor() const = 0;

  /// Shows the window; the first time `Load` is raised before, and `Activate` once it is up. Modal: returns
  /// when the window is hidden or unloaded.
  virtual void Show(bool modal = false, Control* owner = nullptr) = 0;
  virtual void Hide() = 0;
  /// Asks to unload: raises `QueryUnload`; unless that was cancelled, hides the window and raises `Unloaded`.
  /// Does nothing for a window that is not loaded.
  virtual void Unload() = 0;

  /// Where the window itself can be painted on.
  virtual kestrel::Graphics& Graphics() = 0;

  Event<> Load;
  Event<> Activate;
  Event<> Resize;
  /// Cancel, and why: 0 the window's own close box, 1 `Unload` was called.
  Event<bool&, std::int32_t> QueryUnload;
  Event<> Unloaded;
  /// Asked by `FormUtility::ShowDialog` for its result, which is False where no handler sets it: whether the
  /// user accepted the dialog.
  Event<bool&> QueryResult;
  Event<> Paint;
  Event<std::int32_t, std::int32_t> KeyDown;  ///< key code, Shift
};

}  // namespace kestrel
