#pragma once

#include <string>
#include <utility>
#include <vector>

#include "SmallLayout.h"
#include "platform/docking/MoorageModel.h"

namespace kestrel::docking {

/// The model with a minimal window that records its calls.
class TestMoorage : public MoorageModel {
 public:
  explicit TestMoorage(const StoredLayout& layout = smallLayout()) : MoorageModel(layout) {}

  std::vector<std::string> popups;
  std::vector<std::pair<std::string, Form*>> attached;

  Rectangle ClientArea() const override { return {}; }

  const std::string& Name() const override { return name_; }
  std::int32_t Index() const override { return -1; }
  std::int32_t Left() const override { return 0; }
  void Left(std::int32_t) override {}
  std::int32_t Top() const override { return 0; }
  void Top(std::int32_t) override {}
  std::int32_t Width() const override { return 0; }
  void Width(std::int32_t) override {}
  std::int32_t Height() const override { return 0; }
  void Height(std::int32_t) override {}
  void Move(std::int32_t, std::int32_t, std::int32_t, std::int32_t) override {}
  bool Visible() const override { return true; }
  void Visible(bool) override {}
  bool Enabled() const override { return true; }
  void Enabled(bool) override {}
  void ZOrder() override {}
  WindowHandle hWnd() const override { return 0; }

 protected:
  void openPopup(CommandModel& menu) override { popups.push_back(menu.Name()); }
  void attachForm(DockWindowModel& window, Form& form) override {
    attached.emplace_back(window.Name(), &form);
  }

 private:
  std::string name_ = "mrgUI";
};

/// The number of the RuntimeError that the action raises, 0 if none.
template <typename Action>
std::int32_t errorOf(Action action) {
  try {
    action();
    return 0;
  } catch (const RuntimeError& error) {
    return error.Number();
  }
}

}  // namespace kestrel::docking
