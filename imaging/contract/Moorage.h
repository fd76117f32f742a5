#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "Control.h"
#include "Form.h"
#include "Types.h"
#include "base/Event.h"

namespace kestrel {

/// Values of `Command::CommandType`.
inline constexpr std::int32_t kCommandButton = 0;
inline constexpr std::int32_t kCommandCombo = 2;
inline constexpr std::int32_t kCommandMenu = 4;
inline constexpr std::int32_t kCommandList = 8;
inline constexpr std::int32_t kCommandPanel = 9;

/// Values of the HighlightState of `Moorage::CommandHighlight`.
inline constexpr std::int32_t kHighlightNone = 0;
inline constexpr std::int32_t kHighlightHot = 1;

/// One hot key of a command: a mask of modifiers and a key code (the virtual key number: letters and digits
/// are their capitals' character codes, F1 is 112, numeric + and - are 107 and 109).
class HotKey {
 public:
  virtual ~HotKey() = default;
  virtual std::int32_t Shift() const = 0;
  virtual std::int32_t KeyCode() const = 0;
  /// Removes it from its command for good; the object is invalid afterwards.
  virtual void Remove() = 0;
};

class HotKeys {
 public:
  virtual ~HotKeys() = default;
  virtual std::int32_t Count() const = 0;
  /// Counted from 1; raises RuntimeError 9 outside.
  virtual HotKey& Item(std::int32_t index) = 0;
};

/// One line of a combo or list command.
struct CommandItem {
  std::string Text;
  std::string Key;
};

/// The lines of a combo or list command, counted from 1.
class CommandItems {
 public:
  virtual ~CommandItems() = default;
  virtual std::int32_t Count() const = 0;
  /// Raises RuntimeError 9 outside.
  virtual const CommandItem& Item(std::int32_t index) const = 0;
  virtual void Add(const std::string& text, const std::string& key = {}) = 0;
  virtual void Clear() = 0;
};

/// One entry of a bar or a menu.
class BarEntry {
 public:
  virtual ~BarEntry() = default;
  /// The key of the command it shows.
  virtual const std::string& Key() const = 0;
  /// Puts a separator before the entry.
  virtual bool BeginGroup() const = 0;
  virtual void BeginGroup(bool value) = 0;
};

class BarEntries {
 public:
  virtual ~BarEntries() = default;
  virtual std::int32_t Count() const = 0;
  /// Counted from 1; raises RuntimeError 9 outside.
  virtual BarEntry& Item(std::int32_t index) = 0;
  /// The entry of the command of that key, ignoring case; raises RuntimeError 5 if there is none.
  virtual BarEntry& Item(const std::string& key) = 0;
};

/// A menu bar, tool bar or status bar, or the bar inside a menu command.
class CommandBar {
 public:
  virtual ~CommandBar() = default;
  virtual const std::string& Name() const = 0;
  virtual bool Visible() const = 0;
  virtual void Visible(bool value) = 0;
  /// Whether the menu of bars lists it, for the user to show or hide; true by default.
  virtual bool Listed() const = 0;
  virtual void Listed(bool value) = 0;
  virtual BarEntries& Entries() = 0;
};

/// The combo box of a combo command, as passed to its change event.
class Combo {
 public:
  virtual ~Combo() = default;
  virtual std::string Text() const = 0;
};

/// An action of the user interface: invoked by menu, tool bar or hot key.
class Command {
 public:
  virtual ~Command() = default;

  /// Its key, as the layout spells it ("btnFileOpen").
  virtual const std::string& Name() const = 0;
  virtual std::int32_t CommandType() const = 0;
  virtual const std::string& Category() const = 0;

  virtual std::string Caption() const = 0;
  virtual void Caption(const std::string& value) = 0;
  virtual std::string ShortCaption() const = 0;
  virtual std::string Description() const = 0;
  virtual void Description(const std::string& value) = 0;
  virtual std::string ToolTip() const = 0;
  virtual void ToolTip(const std::string& value) = 0;
  /// The name of its image, empty if it has none.
  virtual const std::string& ImageName() const = 0;

  virtual bool Enabled() const = 0;
  virtual void Enabled(bool value) = 0;
  virtual bool Visible() const = 0;
  virtual void Visible(bool value) = 0;
  /// The pressed state; changed by `DockFunctions::SetChecked`.
  virtual bool Checked() const = 0;

  virtual kestrel::HotKeys& HotKeys() = 0;

  /// The bar of a menu command; raises RuntimeError 5 for any other type.
  virtual CommandBar& Bar() = 0;
  /// The lines of a combo or list command; raises RuntimeError 5 for any other type.
  virtual CommandItems& Items() = 0;
  /// The line of a list command that was last chosen; raises RuntimeError 91 if there is none.
  virtual const CommandItem& SelectedItem() const = 0;
};

/// Options of all hot keys.
class HotKeyOptions {
 public:
  virtual ~HotKeyOptions() = default;
  /// 1 enables hot keys without Ctrl or Alt, 0 disables them.
  virtual std::int32_t AllowUnmodified() const = 0;
  virtual void AllowUnmodified(std::int32_t value) = 0;
};

class Commands {
 public:
  virtual ~Commands() = default;
  virtual std::int32_t Count() const = 0;
  /// Counted from 1, in the order of the layout; raises RuntimeError 9 outside.
  virtual Command& Item(std::int32_t index) = 0;
  /// By key, ignoring case; raises RuntimeError 5 if there is none.
  virtual Command& Item(const std::string& key) = 0;
  virtual kestrel::HotKeyOptions& HotKeyOptions() = 0;

  Command& operator()(const std::string& key) { return Item(key); }
};

class CommandBars {
 public:
  virtual ~CommandBars() = default;
  virtual std::int32_t Count() const = 0;
  virtual CommandBar& Item(std::int32_t index) = 0;
  /// By name, ignoring case; raises RuntimeError 5 if there is none.
  virtual CommandBar& Item(const std::string& name) = 0;

  CommandBar& operator()(const std::string& name) { return Item(name); }
};

/// A window docked at an edge, or floating.
class DockWindow {
 public:
  virtual ~DockWindow() = default;
  virtual const std::string& Name() const = 0;
  virtual std::string Caption() const = 0;
  /// Showing and hiding raises `DockWindowShowing` and `DockWindowHiding`, which may cancel it.
  virtual bool Visible() const = 0;
  virtual void Visible(bool value) = 0;
};

class DockWindows {
 public:
  virtual ~DockWindows() = default;
  virtual std::int32_t Count() const = 0;
  virtual DockWindow& Item(std::int32_t index) = 0;
  /// By key, ignoring case; raises RuntimeError 5 if there is none.
  virtual DockWindow& Item(const std::string& key) = 0;

  DockWindow& operator()(const std::string& key) { return Item(key); }
};

/// A field of the status bar.
class StatusPanel {
 public:
  virtual ~StatusPanel() = default;
  virtual std::string Caption() const = 0;
  virtual void Caption(const std::string& value) = 0;
  virtual bool Visible() const = 0;
  virtual void Visible(bool value) = 0;

  /// Of a progress panel.
  virtual void ProgressMin(std::int32_t value) = 0;
  virtual void ProgressMax(std::int32_t value) = 0;
  virtual void ProgressValue(std::int32_t value) = 0;
};

/// A line that a container adds to the context menu of the bars.
struct BarMenuLine {
  std::string Caption;
  bool Enabled = true;
  std::function<void()> Chosen;
};

class Moorage;

/// Operations of the docking suite across its parts.
class DockFunctions {
 public:
  virtual ~DockFunctions() = default;
  /// The pressed state of a command, on all bars and menus.
  virtual void SetChecked(Command& command, bool pressed) = 0;
  /// Shows a form inside a dock window. The owner of the form does not change.
  virtual void AttachForm(DockWindow& window, Form& form) = 0;
  /// The style of the bars: 0 icons only, 1 icons left of short captions, 2 icons above short captions.
  virtual void SetStyle(Moorage& control, std::int32_t style) = 0;
};

/// Values of the Reason of the hiding and showing events.
inline constexpr std::int32_t kReasonCode = 0;  ///< a program wrote `Visible`
inline constexpr std::int32_t kReasonUser = 1;  ///< the user closed or opened it

/// The docking suite around a client area: command bars, menus, status panels, dock windows, hot keys.
/// It reads its stored layout when it is created.
class Moorage : public Control {
 public:
  /// The area that the bars and docked windows leave free, in the control's own pixels.
  virtual Rectangle ClientArea() const = 0;

  virtual kestrel::Commands& Commands() = 0;
  virtual kestrel::CommandBars& CommandBars() = 0;
  virtual kestrel::DockWindows& DockWindows() = 0;
  virtual kestrel::DockFunctions& DockFunctions() = 0;

  /// False suspends repainting of the bars, True resumes.
  virtual void Redraw(bool value) = 0;
  /// Sets the text of a combo command. Does not raise `CommandChange`, which reports input of the user.
  virtual void SetComboText(Command& command, const std::string& text) = 0;
  /// Opens the command's menu at the pointer and returns when it is closed.
  virtual void ShowPopup(Command& command) = 0;
  /// By key, ignoring case; raises RuntimeError 5 if there is none.
  virtual kestrel::StatusPanel& StatusPanel(const std::string& name) = 0;

  /// The user chose a command, by menu, bar or hot key.
  Event<Command&> CommandClick;
  Event<Command&, Combo&, CancelValue&> CommandChange;
  Event<Command&, std::int32_t> CommandHighlight;  ///< HighlightState: 1 under the pointer
  Event<Command&, HotKey&, CancelValue&> CommandHotKeyPress;
  Event<CommandBar&, std::int32_t, CancelValue&> CommandBarHiding;  ///< Reason
  Event<CommandBar&, std::int32_t, CancelValue&> CommandBarShowing;
  Event<DockWindow&, std::int32_t, CancelValue&> DockWindowHiding;
  Event<DockWindow&, std::int32_t, CancelValue&> DockWindowShowing;
  Event<> ClientAreaChanged;
  /// The context menu of the bars opens: handlers append lines, which it shows last.
  Event<std::vector<BarMenuLine>&> BarMenuOpening;
};

}  // namespace kestrel
