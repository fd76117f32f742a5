#include "CommandBarModel.h"

#include <cstddef>

#include "CommandModel.h"
#include "MoorageModel.h"
#include "base/Numbers.h"
#include "base/RuntimeError.h"

namespace kestrel::docking {

const std::string& BarEntryModel::Key() const { return command_.Name(); }

void BarEntryModel::BeginGroup(bool value) {
  if (beginGroup_ == value) return;
  beginGroup_ = value;
  bar_.updated();
}

BarEntryModel& BarEntriesModel::Item(std::int32_t index) {
  if (index < 1 || index > Count()) {
    throw RuntimeError(err::kSubscript, "The bar has no entry " + std::to_string(index) + '.');
  }
  return *entries_[static_cast<std::size_t>(index - 1)];
}

BarEntryModel& BarEntriesModel::Item(const std::string& key) {
  const std::string wanted = LowerCase(key);
  for (const auto& entry : entries_) {
    if (LowerCase(entry->Key()) == wanted) return *entry;
  }
  throw RuntimeError(err::kInvalidCall, "The bar has no entry \"" + key + "\".");
}

void CommandBarModel::show(bool value, std::int32_t reason) {
  if (stored_.visible == value) return;
  CancelValue cancel;
  (value ? suite_.CommandBarShowing : suite_.CommandBarHiding)(*this, reason, cancel);
  if (cancel.Value || stored_.visible == value) return;
  stored_.visible = value;
  updated();
}

void CommandBarModel::bind() {
  for (const StoredEntry& entry : stored_.entries) {
    CommandModel& command = suite_.Commands().Item(entry.command);
    entries_.add(std::make_unique<BarEntryModel>(*this, command, entry.beginGroup));
  }
}

std::vector<ShownEntry> CommandBarModel::shownEntries() const {
  std::vector<ShownEntry> shown;
  for (const auto& entry : entries_.all()) {
    if (!entry->command().Visible()) continue;
    shown.push_back({&entry->command(), entry->BeginGroup() && !shown.empty()});
  }
  return shown;
}

void CommandBarModel::updated() { suite_.updated(*this); }

}  // namespace kestrel::docking
