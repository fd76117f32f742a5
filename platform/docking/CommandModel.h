#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "CommandBarModel.h"
#include "CommandItemsModel.h"
#include "HotKeysModel.h"
#include "StatusPanelModel.h"
#include "StoredLayout.h"
#include "imaging/contract/Moorage.h"

namespace kestrel::docking {

class MoorageModel;

/// One command with the data of its type: a menu has a bar, a combo text and lines, a list lines, a panel its
/// caption or progress. Reports every change to the suite.
class CommandModel : public Command {
 public:
  CommandModel(MoorageModel& suite, const StoredCommand& stored);

  const std::string& Name() const override { return stored_.key; }
  std::int32_t CommandType() const override { return stored_.type; }
  const std::string& Category() const override { return stored_.category; }
  std::string Caption() const override { return stored_.caption; }
  void Caption(const std::string& value) override { set(stored_.caption, value); }
  std::string ShortCaption() const override { return stored_.shortCaption; }
  std::string Description() const override { return stored_.description; }
  void Description(const std::string& value) override { set(stored_.description, value); }
  std::string ToolTip() const override { return toolTip_; }
  void ToolTip(const std::string& value) override { set(toolTip_, value); }
  const std::string& ImageName() const override { return stored_.image; }
  bool Enabled() const override { return enabled_; }
  void Enabled(bool value) override { set(enabled_, value); }
  bool Visible() const override { return stored_.visible; }
  void Visible(bool value) override { set(stored_.visible, value); }
  bool Checked() const override { return stored_.pressed; }
  HotKeysModel& HotKeys() override { return hotKeys_; }
  CommandBarModel& Bar() override;
  CommandItemsModel& Items() override;
  const CommandItem& SelectedItem() const override;

  void checked(bool value) { set(stored_.pressed, value); }
  /// Whether the user can invoke it now.
  bool available() const { return enabled_ && stored_.visible; }
  /// The caption without access key markers: "&&" becomes "&", single "&" are removed.
  std::string plainCaption() const;

  std::int32_t width() const { return stored_.width; }
  bool spring() const { return stored_.spring; }
  bool showsProgress() const { return stored_.progress; }
  StatusPanelModel& panel() { return panel_; }
  const StatusPanelModel& panel() const { return panel_; }

  const std::string& comboText() const { return stored_.text; }
  void comboText(const std::string& value) { set(stored_.text, value); }
  void select(const CommandItem& item) { selected_ = item; }

  void updated();

 private:
  template <typename T>
  void set(T& field, const T& value) {
    if (field == value) return;
    field = value;
    updated();
  }
  [[noreturn]] void refuse(const char* what) const;

  MoorageModel& suite_;
  StoredCommand stored_;
  std::string toolTip_;
  bool enabled_ = true;
  HotKeysModel hotKeys_;
  CommandBarModel bar_;
  CommandItemsModel items_;
  StatusPanelModel panel_;
  /// A copy: the program may clear the list while it uses the line.
  std::optional<CommandItem> selected_;
};

}  // namespace kestrel::docking
