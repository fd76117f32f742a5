#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "imaging/contract/Types.h"

namespace kestrel::docking {

/// The font of the bars.
struct StoredFont {
  std::string name = "Sans Serif";
  std::int16_t weight = 400;    ///< 400 regular, 700 bold
  std::int32_t height = 90000;  ///< in ten-thousandths of a point
  bool italic = false;
  friend bool operator==(const StoredFont&, const StoredFont&) = default;
};

/// A small picture: rows from top to bottom, three bytes per pixel, RGB.
struct StoredPicture {
  std::int32_t width = 0;
  std::int32_t height = 0;
  std::vector<std::uint8_t> rgb;
  friend bool operator==(const StoredPicture&, const StoredPicture&) = default;
};

/// A named image with its two pictures of 16 by 16 pixels.
struct StoredImage {
  static constexpr OLE_COLOR kMagenta = 0xFF00FF;

  std::string name;
  OLE_COLOR transparent = kMagenta;
  StoredPicture normal;
  StoredPicture disabled;
  friend bool operator==(const StoredImage&, const StoredImage&) = default;
};

struct StoredHotKey {
  std::int32_t shift = 0;  ///< 1 Shift, 2 Ctrl, 4 Alt
  std::int32_t keyCode = 0;
  friend bool operator==(const StoredHotKey&, const StoredHotKey&) = default;
};

/// One entry of a bar or menu: the key of its command, and whether a separator precedes it.
struct StoredEntry {
  std::string command;
  bool beginGroup = false;
  friend bool operator==(const StoredEntry&, const StoredEntry&) = default;
};

struct StoredCommand {
  std::int32_t type = 0;  ///< one of the kCommand... values of the contract
  std::string key;
  std::string caption;
  std::string shortCaption;
  std::string description;
  std::string category;
  std::string image;  ///< name of its image, empty for none
  std::vector<StoredHotKey> hotKeys;
  bool visible = true;
  bool pressed = false;
  std::string text;               ///< initial text of a combo
  std::int32_t width = 0;         ///< of a combo or a panel, in pixels; 0 for its natural width
  bool spring = false;            ///< a panel that takes the remaining width
  bool progress = false;          ///< a panel that shows progress
  std::vector<StoredEntry> menu;  ///< the entries of a menu
  friend bool operator==(const StoredCommand&, const StoredCommand&) = default;
};

enum class BarKind : std::int32_t { MenuBar = 0, ToolBar = 1, StatusBar = 2 };
enum class Edge : std::int32_t { Left = 0, Top = 1, Right = 2, Bottom = 3 };

struct StoredBar {
  std::string name;
  BarKind kind = BarKind::ToolBar;
  bool visible = true;
  Edge edge = Edge::Top;
  std::int32_t row = 0;  ///< counted inward from the edge
  std::vector<StoredEntry> entries;
  friend bool operator==(const StoredBar&, const StoredBar&) = default;
};

/// A strip along an edge that holds dock windows.
struct StoredPane {
  std::string name;
  Edge edge = Edge::Right;
  std::int32_t size = 0;  ///< pixels across the edge
  friend bool operator==(const StoredPane&, const StoredPane&) = default;
};

struct StoredDockWindow {
  std::string key;
  std::string caption;
  std::string pane;
  bool visible = true;
  friend bool operator==(const StoredDockWindow&, const StoredDockWindow&) = default;
};

/// The content of a layout block: the initial state of the docking suite.
struct StoredLayout {
  StoredFont font;
  std::vector<StoredImage> images;
  std::vector<std::string> categories;
  std::vector<StoredCommand> commands;
  std::vector<StoredBar> bars;
  std::vector<StoredPane> panes;
  std::vector<StoredDockWindow> dockWindows;
  friend bool operator==(const StoredLayout&, const StoredLayout&) = default;
};

}  // namespace kestrel::docking
