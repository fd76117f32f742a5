#include "ChangeCollector.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace kestrel::os {

using Kind = FolderChange::Kind;

void ChangeCollector::created(const std::string& name, bool canBeOpen, Time now) {
  if (!canBeOpen) return completed(name, now);
  unfinished_.insert_or_assign(name, Unfinished{now + kUnwritten, false});
}

void ChangeCollector::written(const std::string& name, Time now) {
  const auto [entry, isNew] = unfinished_.try_emplace(name, Unfinished{now, true});
  entry->second.deadline = now + kPause;
}

void ChangeCollector::completed(const std::string& name, Time now) {
  unfinished_.erase(name);
  add({Kind::kChanged, name, {}}, now);
}

void ChangeCollector::attributesChanged(const std::string& name, Time now) {
  // Who writes a file may set its attributes before its end.
  if (!unfinished_.contains(name)) add({Kind::kChanged, name, {}}, now);
}

void ChangeCollector::gone(const std::string& name, Time now) {
  const auto entry = unfinished_.find(name);
  const bool known = entry == unfinished_.end() || entry->second.known;
  if (entry != unfinished_.end()) unfinished_.erase(entry);
  if (known) add({Kind::kGone, name, {}}, now);
}

void ChangeCollector::renamed(const std::string& oldName, const std::string& name, Time now) {
  unfinished_.erase(name);
  const auto entry = unfinished_.find(oldName);
  if (entry == unfinished_.end()) return add({Kind::kRenamed, name, oldName}, now);
  const Unfinished writing = entry->second;
  unfinished_.erase(entry);
  // Programs rename what they have finished. Who goes on writing closes the file under its new name.
  if (!writing.known) return add({Kind::kChanged, name, {}}, now);
  add({Kind::kRenamed, name, oldName}, now);
  unfinished_.insert_or_assign(name, writing);
}

void ChangeCollector::overflowed(Time now) {
  batch_.changes.clear();
  latest_.clear();
  batch_.overflow = true;
  touch(now);
}

void ChangeCollector::folderGone(Time now) {
  batch_.folderGone = true;
  touch(now);
}

std::optional<ChangeCollector::Time> ChangeCollector::due() const {
  std::optional<Time> time;
  if (first_) time = batch_.folderGone ? *first_ : std::min(*first_ + kLongest, last_ + kQuiet);
  for (const auto& [name, entry] : unfinished_)
    time = time ? std::min(*time, entry.deadline) : entry.deadline;
  return time;
}

std::optional<FolderChanges> ChangeCollector::take(Time now) {
  std::vector<std::string> paused;
  for (const auto& [name, entry] : unfinished_)
    if (entry.deadline <= now) paused.push_back(name);
  for (const std::string& name : paused) completed(name, now);

  const bool complete = first_ && (batch_.folderGone || now >= *first_ + kLongest || now >= last_ + kQuiet);
  if (!complete) return std::nullopt;
  first_.reset();
  latest_.clear();
  return std::exchange(batch_, {});
}

void ChangeCollector::add(FolderChange change, Time now) {
  touch(now);
  if (batch_.overflow) return;
  const std::string name = change.name.native();
  const auto before = latest_.find(name);
  if (before != latest_.end() && change.kind != Kind::kRenamed) {
    // The later of two equal changes adds nothing. A content that changed after a renaming does.
    if (batch_.changes[before->second].kind == change.kind) return;
  }
  if (batch_.changes.size() == kMostChanges) return overflowed(now);
  if (change.kind == Kind::kRenamed) latest_.erase(change.oldName.native());
  latest_.insert_or_assign(name, batch_.changes.size());
  batch_.changes.push_back(std::move(change));
}

void ChangeCollector::touch(Time now) {
  if (!first_) first_ = now;
  last_ = now;
}

}  // namespace kestrel::os
