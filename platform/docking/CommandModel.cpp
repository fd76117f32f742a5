#include "CommandModel.h"

#include <cstddef>

#include "MoorageModel.h"
#include "base/RuntimeError.h"

namespace kestrel::docking {

namespace {

StoredBar barOf(const StoredCommand& menu) {
  StoredBar bar;
  bar.name = menu.key;
  bar.kind = BarKind::MenuBar;
  bar.entries = menu.menu;
  return bar;
}

}  // namespace

CommandModel::CommandModel(MoorageModel& suite, const StoredCommand& stored)
    : suite_(suite),
      stored_(stored),
      hotKeys_(*this, stored.hotKeys),
      bar_(suite, barOf(stored)),
      items_([this] { updated(); }),
      panel_(*this) {}

CommandBarModel& CommandModel::Bar() {
  if (stored_.type != kCommandMenu) refuse("not a menu");
  return bar_;
}

CommandItemsModel& CommandModel::Items() {
  if (stored_.type != kCommandCombo && stored_.type != kCommandList) refuse("neither a combo nor a list");
  return items_;
}

const CommandItem& CommandModel::SelectedItem() const {
  if (!selected_)
    throw RuntimeError(err::kObjectNotSet, "No line of \"" + stored_.key + "\" has been chosen.");
  return *selected_;
}

std::string CommandModel::plainCaption() const {
  std::string plain;
  for (std::size_t i = 0; i < stored_.caption.size(); ++i) {
    const bool mark = stored_.caption[i] == '&';
    if (mark && ++i == stored_.caption.size()) break;
    plain += stored_.caption[i];
  }
  return plain;
}

void CommandModel::updated() { suite_.updated(*this); }

void CommandModel::refuse(const char* what) const {
  throw RuntimeError(err::kInvalidCall, "The command \"" + stored_.key + "\" is " + what + '.');
}

}  // namespace kestrel::docking
