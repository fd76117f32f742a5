#include "MoorageModel.h"

#include <algorithm>
#include <utility>

#include "base/Numbers.h"
#include "base/RuntimeError.h"

namespace kestrel::docking {

namespace {

/// The suite's model that implements an object of the contract.
template <typename Model, typename Face>
Model& modelOf(Face& face) {
  if (auto* model = dynamic_cast<Model*>(&face)) return *model;
  throw RuntimeError(err::kInvalidCall, "The object does not belong to a docking suite.");
}

class ComboModel : public Combo {
 public:
  explicit ComboModel(const CommandModel& command) : command_(command) {}
  std::string Text() const override { return command_.comboText(); }

 private:
  const CommandModel& command_;
};

void requireType(const CommandModel& command, std::int32_t type, const char* name) {
  if (command.CommandType() != type) {
    throw RuntimeError(err::kInvalidCall, "The command \"" + command.Name() + "\" is not a " + name + '.');
  }
}

}  // namespace

void DockFunctionsModel::SetChecked(Command& command, bool pressed) {
  modelOf<CommandModel>(command).checked(pressed);
}

void DockFunctionsModel::AttachForm(DockWindow& window, Form& form) {
  auto& model = modelOf<DockWindowModel>(window);
  model.suite().attachForm(model, form);
}

void DockFunctionsModel::SetStyle(Moorage& control, std::int32_t style) {
  modelOf<MoorageModel>(control).style(style);
}

MoorageModel::MoorageModel(const StoredLayout& layout) : layout_(layout) {
  for (const StoredCommand& stored : layout_.commands) {
    commands_.add(std::make_unique<CommandModel>(*this, stored));
  }
  for (const auto& command : commands_.all()) {
    if (command->CommandType() == kCommandMenu) command->Bar().bind();
  }
  for (const StoredBar& stored : layout_.bars) {
    bars_.add(std::make_unique<CommandBarModel>(*this, stored)).bind();
  }
  for (const StoredDockWindow& stored : layout_.dockWindows) {
    const auto pane = std::find_if(
        layout_.panes.begin(), layout_.panes.end(),
        [&](const StoredPane& candidate) { return LowerCase(candidate.name) == LowerCase(stored.pane); });
    dockWindows_.add(std::make_unique<DockWindowModel>(*this, stored, *pane));
  }
}

void MoorageModel::Redraw(bool value) {
  redraw_ = value;
  if (!redraw_) return;
  for (const Changed& changed : std::exchange(pending_, {})) raiseUpdated(changed);
}

void MoorageModel::SetComboText(Command& command, const std::string& text) {
  auto& model = modelOf<CommandModel>(command);
  requireType(model, kCommandCombo, "combo");
  model.comboText(text);
}

void MoorageModel::ShowPopup(Command& command) {
  auto& model = modelOf<CommandModel>(command);
  requireType(model, kCommandMenu, "menu");
  openPopup(model);
}

StatusPanelModel& MoorageModel::StatusPanel(const std::string& name) {
  CommandModel& command = commands_.Item(name);
  requireType(command, kCommandPanel, "status panel");
  return command.panel();
}

void MoorageModel::style(std::int32_t value) {
  if (value < 0 || value > 2)
    throw RuntimeError(err::kInvalidCall, "The style of the bars must be 0, 1 or 2.");
  if (style_ == value) return;
  style_ = value;
  StyleUpdated();
}

bool MoorageModel::click(CommandModel& command) {
  if (command.CommandType() != kCommandButton || !command.available()) return false;
  CommandClick(command);
  return true;
}

void MoorageModel::highlight(CommandModel* command) {
  if (command == highlighted_) return;
  CommandModel* left = std::exchange(highlighted_, command);
  if (left) CommandHighlight(*left, kHighlightNone);
  if (command) CommandHighlight(*command, kHighlightHot);
}

MoorageModel::PressedHotKey MoorageModel::findHotKey(std::int32_t shift, std::int32_t keyCode) const {
  const bool allowUnmodified = commands_.HotKeyOptions().AllowUnmodified() != 0;
  for (const auto& command : commands_.all()) {
    HotKeyModel* const key = command->available() ? command->HotKeys().find(shift, keyCode) : nullptr;
    if (key && (allowUnmodified || !key->unmodified())) return {command.get(), key};
  }
  return {};
}

bool MoorageModel::hasHotKey(std::int32_t shift, std::int32_t keyCode) const {
  return findHotKey(shift, keyCode).command != nullptr;
}

bool MoorageModel::pressHotKey(std::int32_t shift, std::int32_t keyCode) {
  const PressedHotKey pressed = findHotKey(shift, keyCode);
  if (!pressed.command) return false;
  CancelValue cancel;
  CommandHotKeyPress(*pressed.command, *pressed.key, cancel);
  return !cancel.Value && click(*pressed.command);
}

bool MoorageModel::typeComboText(CommandModel& command, const std::string& text) {
  requireType(command, kCommandCombo, "combo");
  if (!command.available() || command.comboText() == text) return false;
  const std::string before = command.comboText();
  command.comboText(text);
  ComboModel combo(command);
  CancelValue cancel;
  CommandChange(command, combo, cancel);
  if (!cancel.Value) return true;
  // A handler that canceled may have set a text of its own, which is kept.
  if (command.comboText() == text) command.comboText(before);
  return false;
}

bool MoorageModel::chooseItem(CommandModel& command, std::int32_t index) {
  const CommandItem item = command.Items().Item(index);
  if (command.CommandType() == kCommandCombo) return typeComboText(command, item.Text);
  if (!command.available()) return false;
  command.select(item);
  CommandClick(command);
  return true;
}

void MoorageModel::noteChange(const Changed& changed) {
  if (redraw_) {
    raiseUpdated(changed);
  } else if (std::find(pending_.begin(), pending_.end(), changed) == pending_.end()) {
    pending_.push_back(changed);
  }
}

void MoorageModel::raiseUpdated(const Changed& changed) {
  if (auto* const* command = std::get_if<CommandModel*>(&changed)) CommandUpdated(**command);
  if (auto* const* bar = std::get_if<CommandBarModel*>(&changed)) BarUpdated(**bar);
  if (auto* const* window = std::get_if<DockWindowModel*>(&changed)) DockWindowUpdated(**window);
}

}  // namespace kestrel::docking
