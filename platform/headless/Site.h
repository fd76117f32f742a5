#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "ControlSet.h"
#include "Window.h"
#include "imaging/contract/Site.h"

namespace kestrel::headless {

/// The container of one control, operated by a test: the test makes the site with the windows of the
/// control's surface, raises one of the two property events, sets sizes, sends keys, shows and hides it.
class Site final : public WindowOf<kestrel::Site> {
 public:
  /// With a parent the site is on a form of the platform, which then acts as the container.
  Site(Desktop& desktop, Window* parent, std::string name, bool userMode);

  Control* Find(std::string_view name, std::int32_t index = -1) override {
    return controls_.find(name, index);
  }
  std::int32_t UBound(std::string_view name) const override { return controls_.upperBound(name); }

  bool UserMode() const override { return userMode_; }
  void PropertyChanged(const std::string& name) override { changedProperties_.push_back(name); }
  void Refresh() override { ++refreshes_; }
  void TabStop(bool value) override { tabStop_ = value; }
  bool AcceptsFiles() const override { return acceptsFiles_; }
  std::int32_t ScaleWidth() const override { return Width(); }
  std::int32_t ScaleHeight() const override { return Height(); }

  /// Adds a window of the control's surface.
  void add(std::unique_ptr<Window> window) { controls_.add(std::move(window)); }

  /// Raises `ReadProperties` with the values, or `InitProperties` if there are none.
  void initialize(const std::vector<std::pair<std::string, bool>>& stored);

  using WindowOf::Visible;
  /// Shows or hides the control and raises `Show` or `Hide`.
  void Visible(bool value) override;

  /// Raises `Show` when the container is shown for the first time.
  void containerLaidOut() override;

  /// Presses and releases a key while the control has the focus. A character of 0 raises no `KeyPress`.
  void pressKey(std::int32_t keyCode, std::int32_t shift, std::int32_t character = 0);

  /// Whether the user may drop files; true at first.
  void acceptFiles(bool value);
  /// Drops files of which this is the first. False if the control does not take it.
  bool dropFile(const std::string& name);

  // Notifications from the control to its container.
  const std::vector<std::string>& changedProperties() const { return changedProperties_; }
  std::int32_t refreshes() const { return refreshes_; }
  bool tabStop() const { return tabStop_; }

 private:
  void resized() override { Resize(); }

  ControlSet controls_;
  bool userMode_;
  bool shown_ = false;
  bool tabStop_ = true;
  bool acceptsFiles_ = true;
  std::vector<std::string> changedProperties_;
  std::int32_t refreshes_ = 0;
};

}  // namespace kestrel::headless
