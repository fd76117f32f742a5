#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "Window.h"
#include "platform/docking/MoorageModel.h"

namespace kestrel::headless {

class Form;
class User;

/// The docking suite without a display: bars and docked windows have typical sizes, and the rest is the
/// client area.
class Moorage final : public WindowOf<docking::MoorageModel> {
 public:
  Moorage(Desktop& desktop, Window* parent, std::string name, User& user,
          const docking::StoredLayout& layout);

  Rectangle ClientArea() const override { return clientArea_; }

  // User input, by the keys of commands, bars and windows, ignoring case.
  using docking::MoorageModel::chooseItem;
  using docking::MoorageModel::click;
  using docking::MoorageModel::highlight;
  using docking::MoorageModel::typeComboText;
  /// Returns whether the click was executed: not for a command that is disabled or invisible.
  bool click(const std::string& command);
  bool chooseItem(const std::string& command, std::int32_t index);
  bool typeComboText(const std::string& command, const std::string& text);
  /// An empty key moves the pointer off all commands.
  void highlight(const std::string& command);
  /// Closes or opens a bar or a dock window as the user does.
  void showBar(const std::string& bar, bool shown);
  void showDockWindow(const std::string& window, bool shown);
  /// The lines that the container adds to the context menu of the bars.
  std::vector<BarMenuLine> barMenuLines() const;

  /// The form inside a dock window, null while there is none.
  kestrel::Form* attached(const std::string& dockWindow) const;

  static constexpr std::int32_t kBarHeight = 26;

 private:
  void resized() override { arrange(); }
  void openPopup(docking::CommandModel& menu) override;
  void attachForm(docking::DockWindowModel& window, kestrel::Form& form) override;
  void arrange();

  User& user_;
  Rectangle clientArea_;
  std::map<std::string, kestrel::Form*> attached_;
  Connection barUpdated_;
  Connection dockWindowUpdated_;
};

}  // namespace kestrel::headless
