#pragma once

#include <string>
#include <utility>
#include <vector>

#include "base/RuntimeError.h"
#include "imaging/contract/Form.h"
#include "imaging/contract/WindowFunctions.h"

namespace kestrel::fakes {

/// A window without a desktop: stores the values set.
class FakeForm : public Form {
 public:
  explicit FakeForm(std::string name, Rectangle place = {}) : name_(std::move(name)), place_(place) {}

  Rectangle place() const { return place_; }

  const std::string& Name() const override { return name_; }
  std::int32_t Index() const override { return -1; }
  std::int32_t Left() const override { return place_.Left; }
  void Left(std::int32_t value) override { place_.Left = value; }
  std::int32_t Top() const override { return place_.Top; }
  void Top(std::int32_t value) override { place_.Top = value; }
  std::int32_t Width() const override { return place_.Width; }
  void Width(std::int32_t value) override { place_.Width = value; }
  std::int32_t Height() const override { return place_.Height; }
  void Height(std::int32_t value) override { place_.Height = value; }
  void Move(std::int32_t left, std::int32_t top, std::int32_t width, std::int32_t height) override {
    place_ = {left, top, width, height};
  }
  bool Visible() const override { return visible_; }
  void Visible(bool value) override { visible_ = value; }
  bool Enabled() const override { return enabled_; }
  void Enabled(bool value) override { enabled_ = value; }
  void ZOrder() override {}
  WindowHandle hWnd() const override { return 1; }

  Control* Find(std::string_view, std::int32_t) override { return nullptr; }
  std::int32_t UBound(std::string_view) const override { return -1; }

  std::string Caption() const override { return caption_; }
  void Caption(const std::string& value) override { caption_ = value; }
  bool Modified() const override { return false; }
  void Modified(bool) override {}
  void ClearIcon() override {}
  std::int32_t WindowState() const override { return state_; }
  void WindowState(std::int32_t value) override {
    if (state_ == kWindowNormal) normal_ = place_;
    state_ = value;
  }
  Rectangle NormalPlace() const override { return state_ == kWindowNormal ? place_ : normal_; }
  std::int32_t ScaleWidth() const override { return place_.Width; }
  std::int32_t ScaleHeight() const override { return place_.Height; }
  OLE_COLOR BackColor() const override { return 0; }
  void Show(bool, Control*) override { visible_ = true; }
  void Hide() override { visible_ = false; }
  void Unload() override { visible_ = false; }
  kestrel::Graphics& Graphics() override {
    throw RuntimeError(err::kInvalidCall, "The window can't be painted on.");
  }

 private:
  std::string name_;
  std::string caption_;
  Rectangle place_;
  Rectangle normal_;
  std::int32_t state_ = kWindowNormal;
  bool visible_ = false;
  bool enabled_ = true;
};

/// A desktop with the given screens.
class FakeScreens : public WindowFunctions {
 public:
  std::vector<Rectangle> screens;
  Margins frame;

  void AddWindowStyle(WindowHandle, std::int32_t) override {}
  bool IsWindowVisible(WindowHandle) override { return false; }
  Point GetCursorPos() override { return {}; }
  Point ScreenToClient(WindowHandle, const Point& screen) override { return screen; }
  void LockWindowUpdate(WindowHandle) override {}
  std::int32_t ScreenCount() override { return static_cast<std::int32_t>(screens.size()); }
  Rectangle ScreenArea(std::int32_t index) override { return screens.at(static_cast<std::size_t>(index)); }
  Margins FrameOf(WindowHandle) override { return frame; }
};

}  // namespace kestrel::fakes
