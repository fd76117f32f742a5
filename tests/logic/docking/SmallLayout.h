#pragma once

#include "imaging/contract/Moorage.h"
#include "platform/docking/StoredLayout.h"

namespace kestrel::docking {

/// A picture in which adjacent pixels differ.
inline StoredPicture stripes(std::uint8_t shade) {
  StoredPicture picture{16, 16, {}};
  for (int i = 0; i < 16 * 16 * 3; ++i) picture.rgb.push_back(static_cast<std::uint8_t>(shade + i));
  return picture;
}

/// A layout with one item of every kind.
inline StoredLayout smallLayout() {
  StoredLayout layout;
  layout.font = {"Sans Serif", 700, 82500, true};
  layout.images = {{"Open", StoredImage::kMagenta, stripes(0), stripes(9)}};
  layout.categories = {"File", "Built-in Menus"};

  StoredCommand open;
  open.type = kCommandButton;
  open.key = "btnOpen";
  open.caption = "&Open...";
  open.shortCaption = "Open";
  open.description = "Opens a file \xC3\xA4 \xE2\x82\xAC \xF0\x9F\x96\xBC";
  open.category = "File";
  open.image = "Open";
  open.hotKeys = {{kCtrlMask, 'O'}, {0, 112}};

  StoredCommand close;
  close.type = kCommandButton;
  close.key = "btnClose";
  close.caption = "&Close";
  close.hotKeys = {{0, 'C'}};
  close.pressed = true;

  StoredCommand hidden;
  hidden.type = kCommandButton;
  hidden.key = "btnHidden";
  hidden.visible = false;
  hidden.hotKeys = {{kCtrlMask, 'H'}};

  StoredCommand combo;
  combo.type = kCommandCombo;
  combo.key = "cboZoom";
  combo.text = "1:1";
  combo.width = 46;

  StoredCommand list;
  list.type = kCommandList;
  list.key = "mnuRecent";

  StoredCommand menu;
  menu.type = kCommandMenu;
  menu.key = "mnuFile";
  menu.caption = "&File";
  menu.category = "Built-in Menus";
  menu.menu = {{"btnOpen", false}, {"btnHidden", true}, {"mnuRecent", true}, {"btnClose", true}};

  StoredCommand status;
  status.type = kCommandPanel;
  status.key = "pnlStatus";
  status.spring = true;

  StoredCommand progress;
  progress.type = kCommandPanel;
  progress.key = "Progress";
  progress.width = 80;
  progress.progress = true;

  layout.commands = {open, close, hidden, combo, list, menu, status, progress};
  layout.bars = {
      {"Menu Bar", BarKind::MenuBar, true, Edge::Top, 0, {{"mnuFile", false}}},
      {"Standard", BarKind::ToolBar, false, Edge::Left, 1, {{"btnOpen", false}, {"cboZoom", true}}},
      {"Status Bar", BarKind::StatusBar, true, Edge::Bottom, 0, {{"pnlStatus", false}}}};
  layout.panes = {{"Right", Edge::Right, 200}};
  layout.dockWindows = {{"dkwZoom", "Zoom", "Right", true}, {"dkwOther", "Other", "Right", false}};
  return layout;
}

}  // namespace kestrel::docking
