#include "Moorage.h"

#include <algorithm>
#include <set>
#include <utility>

#include "Form.h"
#include "User.h"
#include "base/Numbers.h"

namespace kestrel::headless {

Moorage::Moorage(Desktop& desktop, Window* parent, std::string name, User& user,
                 const docking::StoredLayout& layout)
    : WindowOf(desktop, parent, std::move(name), -1, layout), user_(user) {
  barUpdated_ = BarUpdated.Connect([this](docking::CommandBarModel&) { arrange(); });
  dockWindowUpdated_ = DockWindowUpdated.Connect([this](docking::DockWindowModel&) { arrange(); });
}

bool Moorage::click(const std::string& command) { return click(Commands().Item(command)); }

bool Moorage::chooseItem(const std::string& command, std::int32_t index) {
  return chooseItem(Commands().Item(command), index);
}

bool Moorage::typeComboText(const std::string& command, const std::string& text) {
  return typeComboText(Commands().Item(command), text);
}

void Moorage::highlight(const std::string& command) {
  highlight(command.empty() ? nullptr : &Commands().Item(command));
}

void Moorage::showBar(const std::string& bar, bool shown) {
  CommandBars().Item(bar).show(shown, kReasonUser);
}

void Moorage::showDockWindow(const std::string& window, bool shown) {
  DockWindows().Item(window).show(shown, kReasonUser);
}

std::vector<BarMenuLine> Moorage::barMenuLines() const {
  std::vector<BarMenuLine> lines;
  BarMenuOpening(lines);
  return lines;
}

kestrel::Form* Moorage::attached(const std::string& dockWindow) const {
  const auto found = attached_.find(LowerCase(dockWindow));
  return found == attached_.end() ? nullptr : found->second;
}

void Moorage::openPopup(docking::CommandModel& menu) {
  const std::string key = user_.usePopup(menu.Name());
  if (key.empty()) return;
  const auto entries = menu.Bar().shownEntries();
  const auto chosen = std::find_if(entries.begin(), entries.end(), [&](const docking::ShownEntry& entry) {
    return EqualIgnoringCase(entry.command->Name(), key);
  });
  if (chosen == entries.end()) {
    user_.complain("The menu " + menu.Name() + " shows no entry " + key + ".");
  } else if (!click(*chosen->command)) {
    user_.complain("The entry " + key + " of the menu " + menu.Name() + " can't be chosen.");
  }
}

void Moorage::attachForm(docking::DockWindowModel& window, kestrel::Form& form) {
  attached_[LowerCase(window.Name())] = &form;
  if (auto* own = dynamic_cast<Form*>(&form)) own->embed(*this);
}

void Moorage::arrange() {
  std::set<std::pair<docking::Edge, std::int32_t>> rows;
  for (const auto& bar : CommandBars().all()) {
    if (bar->Visible()) rows.insert({bar->edge(), bar->row()});
  }
  std::map<docking::Edge, std::int32_t> taken;
  for (const auto& [edge, row] : rows) taken[edge] += kBarHeight;

  std::map<docking::Edge, std::int32_t> docked;
  for (const auto& window : DockWindows().all()) {
    if (window->Visible()) docked[window->edge()] = std::max(docked[window->edge()], window->size());
  }
  for (const auto& [edge, size] : docked) taken[edge] += size;

  const std::int32_t left = taken[docking::Edge::Left];
  const std::int32_t top = taken[docking::Edge::Top];
  const Rectangle area = {left, top, std::max(Width() - left - taken[docking::Edge::Right], 0),
                          std::max(Height() - top - taken[docking::Edge::Bottom], 0)};
  if (area == clientArea_) return;
  clientArea_ = area;
  ClientAreaChanged();
}

}  // namespace kestrel::headless
