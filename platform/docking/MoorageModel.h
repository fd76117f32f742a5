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
  /// Raises RuntimeError 5 for a style that is none of the three.
  void SetStyle(Moorage& control, std::int32_t style) override;
};

/// The docking suite without its looks: the commands, bars, panels and dock windows of a stored layout, and
/// all that decides what a key, a click or a typed text does. A platform derives from it, adds the window,
/// shows what the models say, listens to the four events for what to show anew, and hands over what the user
/// does through the functions below "What the user does".
///
/// A menu that pops up and a form that is attached are the platform's own concern; everything else behaves
/// alike on every platform.
class MoorageModel : public Moorage {
 public:
  /// `layout` must be sound, as `readLayout` returns it.
  explicit MoorageModel(const StoredLayout& layout);

  CommandsModel& Commands() override { return commands_; }
  CommandBarsModel& CommandBars() override { return bars_; }
  DockWindowsModel& DockWindows() override { return dockWindows_; }
  DockFunctionsModel& DockFunctions() override { return functions_; }
  void Redraw(bool value) override;
  void SetComboText(Command& command, const std::string& text) override;
  void ShowPopup(Command& command) override;
  StatusPanelModel& StatusPanel(const std::string& name) override;

  /// What is to be shown anew. While `Redraw` is False nothing is raised; afterwards everything that has
  /// changed in between is, once each, in the order of its first change.
  Event<CommandModel&> CommandUpdated;  ///< its panel's progress and its lines included
  Event<CommandBarModel&> BarUpdated;
  Event<DockWindowModel&> DockWindowUpdated;
  Event<> StyleUpdated;

  /// The look of the bars: 0 icons alone, 1 icons beside short captions, 2 icons above short captions.
  std::int32_t style() const { return style_; }
  void style(std::int32_t value);

  const StoredLayout& layout() const { return layout_; }

  // What the user does.

  /// Chooses a button. Returns whether `CommandClick` was raised: not for a command that is disabled,
  /// invisible or no button.
  bool click(CommandModel& command);
  /// The pointer stands on the command's entry, or on none (nullptr). The one it left is told first.
  void highlight(CommandModel* command);
  /// A key went down: `shift` as in `HotKey::Shift`, `keyCode` as in `HotKey::KeyCode`. The first available
  /// command that has the key raises `CommandHotKeyPress` and, unless a handler cancels it, is clicked.
  /// Returns whether that happened; otherwise the key belongs to whoever has the focus.
  bool pressHotKey(std::int32_t shift, std::int32_t keyCode);
  /// Whether a command would be asked about that key.
  bool hearsHotKey(std::int32_t shift, std::int32_t keyCode) const;
  /// Typed and confirmed a text in a combo. A text that differs raises `CommandChange`; a handler that
  /// cancels it brings the old text back. Returns whether the text stands.
  bool typeComboText(CommandModel& command, const std::string& text);
  /// Chose a line, counted from 1, of a combo (typing its text) or of a list (making it the selected item
  /// and clicking). Returns what came of it as the functions above do; raises RuntimeError 9 outside.
  bool chooseItem(CommandModel& command, std::int32_t index);

  /// Called by the models after a change.
  void updated(CommandModel& command) { note(&command); }
  void updated(CommandBarModel& bar) { note(&bar); }
  void updated(DockWindowModel& window) { note(&window); }

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

  void note(const Changed& changed);
  void tell(const Changed& changed);

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
