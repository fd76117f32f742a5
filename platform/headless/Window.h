#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "Desktop.h"
#include "imaging/contract/Types.h"

namespace kestrel::headless {

/// Common base of this platform's windows, below the contract class: rectangle in the parent, visible and
/// enabled flags, and a handle.
class Window {
 public:
  /// The parent (null for a top-level window) must outlive it.
  Window(Desktop& desktop, Window* parent, std::string name, std::int32_t index);
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;
  virtual ~Window();

  Desktop& desktop() const { return desktop_; }
  Window* parent() const { return parent_; }
  const std::vector<Window*>& children() const { return children_; }
  const std::string& name() const { return name_; }
  std::int32_t index() const { return index_; }
  WindowHandle handle() const { return handle_; }

  const Rectangle& place() const { return place_; }
  /// Negative sizes become 0.
  void place(const Rectangle& value);
  bool visible() const { return visible_; }
  void visible(bool value) { visible_ = value; }
  bool enabled() const { return enabled_; }
  void enabled(bool value) { enabled_ = value; }

  /// Whether it and all its containers are visible.
  bool isShown() const;
  /// Whether it and all its containers are enabled.
  bool isUsable() const;
  /// Its top left corner in screen pixels.
  Point origin() const;
  void bringToFront();

  /// Shows it in another window during that window's lifetime; null ends this.
  void host(Window* value) { host_ = value; }
  Window* container() const { return host_ ? host_ : parent_; }

  /// Called when its visible parent was shown or has another size.
  virtual void containerLaidOut() {}
  /// Called when it gets the keyboard focus.
  virtual void focused() {}

 protected:
  virtual void resized() {}
  /// Calls `containerLaidOut` of all children if this window is shown.
  void layOutChildren() const;

 private:
  Desktop& desktop_;
  Window* parent_;
  Window* host_ = nullptr;
  std::string name_;
  std::int32_t index_;
  WindowHandle handle_;
  Rectangle place_;
  bool visible_ = true;
  bool enabled_ = true;
  std::vector<Window*> children_;  // back to front
};

/// Implements the common members of `Control` for a contract class.
template <typename Contract>
class WindowOf : public Contract, public Window {
 public:
  /// `args` are the constructor arguments of the contract class.
  template <typename... Args>
  explicit WindowOf(Desktop& desktop, Window* parent, std::string name, std::int32_t index, Args&&... args)
      : Contract(std::forward<Args>(args)...), Window(desktop, parent, std::move(name), index) {}

  const std::string& Name() const override { return name(); }
  std::int32_t Index() const override { return index(); }

  std::int32_t Left() const override { return place().Left; }
  void Left(std::int32_t value) override { place({value, place().Top, place().Width, place().Height}); }
  std::int32_t Top() const override { return place().Top; }
  void Top(std::int32_t value) override { place({place().Left, value, place().Width, place().Height}); }
  std::int32_t Width() const override { return place().Width; }
  void Width(std::int32_t value) override { place({place().Left, place().Top, value, place().Height}); }
  std::int32_t Height() const override { return place().Height; }
  void Height(std::int32_t value) override { place({place().Left, place().Top, place().Width, value}); }
  void Move(std::int32_t left, std::int32_t top, std::int32_t width, std::int32_t height) override {
    place({left, top, width, height});
  }

  bool Visible() const override { return visible(); }
  void Visible(bool value) override { visible(value); }
  bool Enabled() const override { return enabled(); }
  void Enabled(bool value) override { enabled(value); }

  void ZOrder() override { bringToFront(); }
  WindowHandle hWnd() const override { return handle(); }
};

}  // namespace kestrel::headless
