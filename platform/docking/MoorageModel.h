#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <variant>
#include <vector>

#include "CommandBarModel.h"
#include "CommandModel.h"
#include "DockWindowModel.h"
#include "KeyedModels.h"
#include "StoredLayout.h"
#include "base/Event.h"
#include "imaging/contract/Moorage.h"

namespace kestrel::docking {

class HotKeyOptionsModel : public HotKeyOptions {
 public:
  std::int32_t AllowUnmodified() const override { return allowUnmodified_; }
  void AllowUnmodified(std::int32_t value) override { allowUnmodified_ = value; }

 private:
  std::int32_t allowUnmodified_ = 1;
};

class CommandsModel : public KeyedModels<Commands, CommandModel> {
 public:
  HotKeyOptionsModel& HotKeyOptions() override { return hotKeyOptions_; }
  const HotKeyOptionsModel& HotKeyOptions() const { return hotKeyOptions_; }

 private:
  HotKeyOptionsModel hotKeyOptions_;
};

using CommandBarsModel = KeyedModels<CommandBars, CommandBarModel>;
using DockWindowsModel = KeyedModels<DockWindows, DockWindowModel>;

class DockFunctionsModel : public DockFunctions {
 public:
  void SetChecked(Command& command, bool pressed) override;
  void AttachForm(DockWindow& window, Form& form) override;
  /// Raises RuntimeError 5 for a style outside 0 to 2.
  void SetStyle(Moorage& control, std::int32_t style) override;
};

/// The docking suite without a user interface: the commands, bars, panels and dock windows of a stored
/// layout, and the handling of keys, clicks and typed texts. A platform derives from it, adds the window,
/// displays the models, updates the display on the four events, and passes user input to the functions below
/// "User input".
///
/// Popup menus and attached forms are implemented by the platform; everything else is the same on every
/// platform.
class MoorageModel : public Moorage {
 public:
  /// `layout` must be valid, as `readLayout` returns it.
  explicit MoorageModel(const StoredLayout& layout);

  CommandsModel& Commands() override { return commands_; }
  CommandBarsModel& CommandBars() override { return bars_; }
  DockWindowsModel& DockWindows() override { return dockWindows_; }
  DockFunctionsModel& DockFunctions() override { return functions_; }
  void Redraw(bool value) override;
  void SetComboText(Command& command, const std::string& text) override;
  void ShowPopup(Command& command) override;
  StatusPanelModel& StatusPanel(const std::string& name) override;

  /// Parts to redisplay. While `Redraw` is False nothing is raised; afterwards each changed part is raised
  /// once, in the order of the first change.
  Event<CommandModel&> CommandUpdated;  ///< its panel's progress and its lines included
  Event<CommandBarModel&> BarUpdated;
  Event<DockWindowModel&> DockWindowUpdated;
  Event<> StyleUpdated;

  /// The style of the bars: 0 icons only, 1 icons left of short captions, 2 icons above short captions.
  std::int32_t style() const { return style_; }
  void style(std::int32_t value);

  const StoredLayout& layout() const { return layout_; }

  // User input.

  /// Clicks a button. Returns whether `CommandClick` was raised: not for a command that is disabled,
  /// invisible or not a button.
  bool click(CommandModel& command);
  /// The pointer is over the command's entry, or over none (nullptr). The previous entry is notified first.
  void highlight(CommandModel* command);
  /// A key was pressed: `shift` as in `HotKey::Shift`, `keyCode` as in `HotKey::KeyCode`. The first available
  /// command with that hot key raises `CommandHotKeyPress` and, unless a handler cancels it, is clicked.
  /// Returns whether there was one; otherwise the key goes to the focused control.
  bool pressHotKey(std::int32_t shift, std::int32_t keyCode);
  /// Whether an available command has that hot key.
  bool hasHotKey(std::int32_t shift, std::int32_t keyCode) const;
  /// A text was typed and confirmed in a combo. A new text raises `CommandChange`; a handler that cancels it
  /// restores the old text. Returns whether the new text was kept.
  bool typeComboText(CommandModel& command, const std::string& text);
  /// A line, counted from 1, was chosen: of a combo (as if its text was typed) or of a list (which selects
  /// and clicks it). Returns the result of the corresponding function above; raises RuntimeError 9 outside.
  bool chooseItem(CommandModel& command, std::int32_t index);

  /// Called by the models after a change.
  void updated(CommandModel& command) { noteChange(&command); }
  void updated(CommandBarModel& bar) { noteChange(&bar); }
  void updated(DockWindowModel& window) { noteChange(&window); }

 protected:
  friend class DockFunctionsModel;

  /// Opens the menu at the pointer and returns when it is closed.
  virtual void openPopup(CommandModel& menu) = 0;
  virtual void attachForm(DockWindowModel& window, Form& form) = 0;

 private:
  struct PressedHotKey {
    CommandModel* command = nullptr;
    HotKeyModel* key = nullptr;
  };
  PressedHotKey findHotKey(std::int32_t shift, std::int32_t keyCode) const;

  using Changed = std::variant<CommandModel*, CommandBarModel*, DockWindowModel*>;

  void noteChange(const Changed& changed);
  void raiseUpdated(const Changed& changed);

  StoredLayout layout_;
  CommandsModel commands_;
  CommandBarsModel bars_;
  DockWindowsModel dockWindows_;
  DockFunctionsModel functions_;
  CommandModel* highlighted_ = nullptr;
  std::int32_t style_ = 0;
  bool redraw_ = true;
  std::vector<Changed> pending_;
};

}  // namespace kestrel::docking
