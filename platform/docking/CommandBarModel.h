#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "StoredLayout.h"
#include "imaging/contract/Moorage.h"

namespace kestrel::docking {

class CommandBarModel;
class CommandModel;
class MoorageModel;

class BarEntryModel : public BarEntry {
 public:
  BarEntryModel(CommandBarModel& bar, CommandModel& command, bool beginGroup)
      : bar_(bar), command_(command), beginGroup_(beginGroup) {}

  const std::string& Key() const override;
  bool BeginGroup() const override { return beginGroup_; }
  void BeginGroup(bool value) override;

  CommandModel& command() const { return command_; }

 private:
  CommandBarModel& bar_;
  CommandModel& command_;
  bool beginGroup_;
};

class BarEntriesModel : public BarEntries {
 public:
  std::int32_t Count() const override { return static_cast<std::int32_t>(entries_.size()); }
  BarEntryModel& Item(std::int32_t index) override;
  BarEntryModel& Item(const std::string& key) override;

  void add(std::unique_ptr<BarEntryModel> entry) { entries_.push_back(std::move(entry)); }
  const std::vector<std::unique_ptr<BarEntryModel>>& all() const { return entries_; }

 private:
  std::vector<std::unique_ptr<BarEntryModel>> entries_;
};

/// An entry to show.
struct ShownEntry {
  CommandModel* command = nullptr;
  bool separatorBefore = false;
};

/// A bar, or the bar inside a menu command.
class CommandBarModel : public CommandBar {
 public:
  /// The `stored` of a menu's bar has only a name and entries: it has no place of its own.
  CommandBarModel(MoorageModel& suite, StoredBar stored) : suite_(suite), stored_(std::move(stored)) {}

  const std::string& Name() const override { return stored_.name; }
  bool Visible() const override { return stored_.visible; }
  void Visible(bool value) override { show(value, kReasonCode); }
  bool Listed() const override { return listed_; }
  void Listed(bool value) override { listed_ = value; }
  BarEntriesModel& Entries() override { return entries_; }

  /// Shows or hides it, unless a handler of the event raised before cancels.
  void show(bool value, std::int32_t reason);

  BarKind kind() const { return stored_.kind; }
  Edge edge() const { return stored_.edge; }
  std::int32_t row() const { return stored_.row; }

  /// Resolves the commands of the stored entries. Call once all commands exist.
  void bind();
  /// The entries with visible commands. A separator belongs to its entry and is omitted at the start.
  std::vector<ShownEntry> shownEntries() const;
  void updated();

 private:
  MoorageModel& suite_;
  StoredBar stored_;
  bool listed_ = true;
  BarEntriesModel entries_;
};

}  // namespace kestrel::docking
