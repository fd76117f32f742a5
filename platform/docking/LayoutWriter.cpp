#include "LayoutWriter.h"

#include <string>
#include <string_view>

#include "ByteOrder.h"
#include "LayoutCheck.h"
#include "LayoutFormat.h"
#include "StableGuid.h"
#include "TagStream.h"
#include "WideText.h"
#include "base/RuntimeError.h"
#include "imaging/contract/Moorage.h"

namespace kestrel::docking {

namespace {

using namespace layout_format;
using Items = TagItem::Items;

TagItem property(std::int32_t id, TagItem::Value value) { return {id, 0, std::move(value)}; }
TagItem text(std::int32_t id, const std::string& value) { return {id, 0, value}; }
TagItem object(std::int32_t id, Items items, std::size_t index = 0) {
  return {id, static_cast<std::int32_t>(index), std::move(items)};
}

TagItem imageObject(const StoredImage& stored, std::size_t index, bool withPictures) {
  Items items = {text(image::kGuid, stableGuid("image", stored.name)), text(image::kName, stored.name),
                 property(image::kTransparent, stored.transparent)};
  if (withPictures) {
    items.push_back(property(image::kNormal, stored.normal));
    items.push_back(property(image::kDisabled, stored.disabled));
  }
  return object(image_group::kImage, std::move(items), index);
}

/// The images at 16 by 16; at the sizes painted from the SVG icons, their names only.
TagItem imageGroups(const StoredLayout& layout) {
  Items groups;
  for (const std::int32_t size : {16, 24, 32}) {
    Items items = {property(image_group::kWidth, size), property(image_group::kHeight, size)};
    for (std::size_t i = 0; i < layout.images.size(); ++i) {
      items.push_back(imageObject(layout.images[i], i, size == 16));
    }
    groups.push_back(object(image_group::kGroup, std::move(items), groups.size()));
  }
  return object(top::kImageGroups, std::move(groups));
}

TagItem categories(const StoredLayout& layout) {
  Items items;
  for (const std::string& name : layout.categories) {
    Items fields = {text(category::kGuid, stableGuid("category", name)), text(category::kName, name)};
    items.push_back(object(category::kCategory, std::move(fields), items.size()));
  }
  return object(top::kCategories, std::move(items));
}

/// Appends the entries of the bar or menu, each an object of the id that bars and menus share.
void appendEntries(Items& items, const std::string& owner, const std::vector<StoredEntry>& entries) {
  for (std::size_t i = 0; i < entries.size(); ++i) {
    const std::string own = owner + '/' + std::to_string(i);
    items.push_back(object(
        bar::kEntry,
        {text(entry::kCommand, stableGuid("command", entries[i].command)),
         text(entry::kGuid, stableGuid("entry", own)), property(entry::kBeginGroup, entries[i].beginGroup)},
        i));
  }
}

Items commandFields(const StoredCommand& stored) {
  Items items = {property(command::kType, stored.type),
                 text(command::kGuid, stableGuid("command", stored.key)),
                 text(command::kKey, stored.key),
                 property(command::kVisible, stored.visible),
                 text(command::kCaption, stored.caption),
                 text(command::kShortCaption, stored.shortCaption),
                 text(command::kDescription, stored.description)};
  if (!stored.category.empty())
    items.push_back(text(command::kCategory, stableGuid("category", stored.category)));
  if (!stored.image.empty()) items.push_back(text(command::kImage, stableGuid("image", stored.image)));
  for (std::size_t i = 0; i < stored.hotKeys.size(); ++i) {
    items.push_back(object(command::kHotKey,
                           {property(hot_key::kShift, stored.hotKeys[i].shift),
                            property(hot_key::kKeyCode, stored.hotKeys[i].keyCode)},
                           i));
  }
  return items;
}

TagItem commandObject(const StoredCommand& stored, std::size_t index) {
  Items items = commandFields(stored);
  if (stored.type == kCommandMenu) {
    Items menu;
    appendEntries(menu, stored.key, stored.menu);
    items.push_back(object(command::kPressedOrMenu, std::move(menu)));
  } else {
    items.push_back(property(command::kPressedOrMenu, stored.pressed));
  }
  if (stored.type == kCommandCombo) items.push_back(text(command::kText, stored.text));
  if (stored.type == kCommandCombo || stored.type == kCommandPanel) {
    items.push_back(property(command::kWidth, stored.width));
  }
  if (stored.type == kCommandPanel) {
    items.push_back(property(command::kSpring, stored.spring));
    items.push_back(property(command::kProgress, stored.progress));
  }
  return object(commands::kCommand, std::move(items), index);
}

TagItem commandsObject(const StoredLayout& layout) {
  Items items = {property(commands::kCount, static_cast<std::int32_t>(layout.commands.size())),
                 property(commands::kAllowUnmodified, true)};
  for (std::size_t i = 0; i < layout.commands.size(); ++i) {
    if (layout.commands[i].type == kCommandMenu) {
      items.push_back(property(commands::kMenuIndex, static_cast<std::int32_t>(i)));
    }
  }
  for (std::size_t i = 0; i < layout.commands.size(); ++i) {
    items.push_back(commandObject(layout.commands[i], i));
  }
  return object(top::kCommands, std::move(items));
}

TagItem bars(const StoredLayout& layout, std::int32_t id) {
  Items items;
  for (const StoredBar& stored : layout.bars) {
    if ((stored.kind == BarKind::StatusBar) != (id == top::kStatusBars)) continue;
    Items fields = {text(bar::kGuid, stableGuid("bar", stored.name)),
                    text(bar::kName, stored.name),
                    property(bar::kKind, static_cast<std::int32_t>(stored.kind)),
                    property(bar::kVisible, stored.visible),
                    property(bar::kEdge, static_cast<std::int32_t>(stored.edge)),
                    property(bar::kRow, stored.row)};
    appendEntries(fields, stored.name, stored.entries);
    items.push_back(object(bar::kBar, std::move(fields), items.size()));
  }
  return object(id, std::move(items));
}

TagItem panes(const StoredLayout& layout) {
  Items items;
  for (const StoredPane& stored : layout.panes) {
    Items fields = {text(pane::kGuid, stableGuid("pane", stored.name)), text(pane::kName, stored.name),
                    property(pane::kEdge, static_cast<std::int32_t>(stored.edge)),
                    property(pane::kSize, stored.size)};
    items.push_back(object(pane::kPane, std::move(fields), items.size()));
  }
  return object(top::kPanes, std::move(items));
}

TagItem dockWindows(const StoredLayout& layout) {
  Items items;
  for (const StoredDockWindow& stored : layout.dockWindows) {
    Items fields = {text(dock_window::kGuid, stableGuid("dock window", stored.key)),
                    text(dock_window::kKey, stored.key), property(dock_window::kVisible, stored.visible),
                    text(dock_window::kCaption, stored.caption),
                    text(dock_window::kPane, stableGuid("pane", stored.pane))};
    items.push_back(object(dock_window::kWindow, std::move(fields), items.size()));
  }
  return object(top::kDockWindows, std::move(items));
}

}  // namespace

std::vector<std::byte> writeLayout(const StoredLayout& layout) {
  if (const std::string wrong = inconsistencyIn(layout); !wrong.empty()) {
    throw RuntimeError(err::kInvalidCall, "The layout is inconsistent: " + wrong + ".");
  }
  std::vector<std::byte> stream;
  appendTags(stream, {property(top::kFont, layout.font), imageGroups(layout), categories(layout),
                      commandsObject(layout), bars(layout, top::kBars), bars(layout, top::kStatusBars),
                      panes(layout), dockWindows(layout)});

  std::vector<std::byte> block = wideFromUtf8(kMagic);
  append32(block, kVersion);
  append32(block, 0);
  append32(block, kHeaderField1);
  append32(block, kHeaderField2);
  append32(block, static_cast<std::int32_t>(kHeaderSize));
  block.insert(block.end(), stream.begin(), stream.end());
  const std::uint32_t sum = layoutChecksum(block);
  for (std::size_t i = 0; i < 4; ++i)
    block[kChecksumOffset + i] = static_cast<std::byte>(sum >> (8 * i) & 0xFF);
  return block;
}

}  // namespace kestrel::docking
